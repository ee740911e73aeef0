// The permissions of a file that becomes another user's or another group's: nobody may do more than before.

#include "file_rights.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

/// Somebody who may or may not be the old owner, the one who saves, and of the two groups.
struct Person {
    bool bOldOwner;
    bool bSaver;
    bool bInOldGroup;
    bool bInNewGroup;
};

std::vector<Person> Everybody() {
    std::vector<Person> people;
    for (unsigned kind = 0; kind < 16; ++kind) {
        people.push_back({(kind & 1U) != 0, (kind & 2U) != 0, (kind & 4U) != 0, (kind & 8U) != 0});
    }
    return people;
}

mode_t Rights(mode_t mode, bool bOwner, bool bInGroup) {
    return (bOwner ? mode >> 6U : bInGroup ? mode >> 3U : mode) & 7U;
}

constexpr mode_t kReadAndWrite = 6;

} // namespace

TEST(FileRights, AreKeptWholeWithOwnerAndGroup) {
    for (mode_t mode = 0; mode <= 07777; ++mode) {
        ASSERT_EQ(platform::SharedMode(mode, true, true), mode);
    }
}

TEST(FileRights, OfNobodyGrowWhoeverBecomesTheOwnerAndWhateverTheGroup) {
    for (mode_t mode = 0; mode <= 0777; ++mode) {
        for (const bool bOwnerKept : {false, true}) {
            for (const bool bGroupKept : {false, true}) {
                const mode_t after = platform::SharedMode(mode, bOwnerKept, bGroupKept);
                for (const Person& person : Everybody()) {
                    if ((bOwnerKept && person.bSaver != person.bOldOwner) ||
                        (!bOwnerKept && person.bSaver && person.bOldOwner) ||
                        (bGroupKept && person.bInOldGroup != person.bInNewGroup)) {
                        continue; // there is no such person
                    }
                    const mode_t had = Rights(mode, person.bOldOwner, person.bInOldGroup);
                    if (person.bSaver && (had & kReadAndWrite) != kReadAndWrite) {
                        continue; // does not get as far as a save
                    }
                    const mode_t has = Rights(after, person.bSaver, person.bInNewGroup);
                    ASSERT_EQ(has & ~had, 0u) << std::oct << mode << " became " << after;
                }
            }
        }
    }
}

TEST(FileRights, LetTheSaverReadAndWriteWhatBecameTheirs) {
    for (mode_t mode = 0; mode <= 0777; ++mode) {
        ASSERT_EQ(platform::SharedMode(mode, false, true) & 0700U, 0600u);
    }
}

TEST(FileRights, OfAnotherOwnerOrGroupAreNotLentToWhoRunsTheFile) {
    EXPECT_EQ(platform::SharedMode(07755, true, false), 05755u);
    EXPECT_EQ(platform::SharedMode(07755, false, true), 03655u);
    EXPECT_EQ(platform::SharedMode(07755, false, false), 01655u);
}

TEST(FileRights, ShrinkToWhatBothGroupsHad) {
    EXPECT_EQ(platform::SharedMode(0640, true, false), 0600u);
    EXPECT_EQ(platform::SharedMode(0664, true, false), 0644u);
    EXPECT_EQ(platform::SharedMode(0604, true, false), 0600u);
    EXPECT_EQ(platform::SharedMode(0464, false, true), 0644u);
}
