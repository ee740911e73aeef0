// The permissions of a file that becomes another user's or another group's: nobody may do more than before.

#include "file_rights.h"

#include "scratch_folder.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <optional>
#include <string>
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

TEST(FileRights, MayGiveMoreByEachOfTheirParts) {
    const platform::FileRights known{1, 2, 10, 20, 0640, "list", true};
    EXPECT_FALSE(known.MayGiveMoreThan(known));
    platform::FileRights fewer = known;
    fewer.mode = 0600;
    EXPECT_FALSE(fewer.MayGiveMoreThan(known));
    EXPECT_TRUE(known.MayGiveMoreThan(fewer));
    std::vector<platform::FileRights> others(6, known);
    others[0].owner = 11;
    others[1].group = 21;
    others[2].mode = 0644;
    others[3].accessList = "another";
    others[4].accessList.reset();
    others[5].bListRead = false;
    for (const platform::FileRights& other : others) {
        EXPECT_TRUE(other.MayGiveMoreThan(known)) << &other - others.data();
        EXPECT_TRUE(other.AreOfSameFile(known));
    }
    EXPECT_TRUE(known.MayGiveMoreThan(others[5])) << "whose list nobody could read";
    platform::FileRights elsewhere = known;
    elsewhere.device = 3;
    EXPECT_FALSE(elsewhere.AreOfSameFile(known));
    elsewhere = known;
    elsewhere.file = 3;
    EXPECT_FALSE(elsewhere.AreOfSameFile(known));
}

namespace {

class CarriedRights : public ::testing::Test {
protected:
    platform::CFile NewFile(const char* name, mode_t mode) const {
        const std::string path = m_folder.Path() / name;
        platform::CFile file(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        EXPECT_EQ(::fchmod(file.Descriptor(), mode), 0);
        return file;
    }
    static struct stat Status(const platform::CFile& file) {
        struct stat status {};
        EXPECT_EQ(::fstat(file.Descriptor(), &status), 0);
        return status;
    }

    /// The permissions that the new file gets.
    mode_t Carried(std::optional<platform::FileRights>& known) {
        EXPECT_TRUE(platform::CarryRightsOver(m_original, m_new, nullptr, known));
        return Status(m_new).st_mode & 07777;
    }

    const CScratchFolder m_folder;
    const platform::CFile m_original = NewFile("original", 0644);
    const platform::CFile m_new = NewFile("new", 0600);
};

} // namespace

TEST_F(CarriedRights, AreThoseThatTheFileHasNowWhereItIsStillTheSame) {
    std::optional<platform::FileRights> known = platform::RightsOf(m_original, nullptr);
    ASSERT_TRUE(known.has_value());
    EXPECT_EQ(known->mode & 07777, 0644u);
    EXPECT_EQ(known->owner, Status(m_original).st_uid);
    EXPECT_EQ(known->group, Status(m_original).st_gid);
    EXPECT_TRUE(known->bListRead);
    EXPECT_FALSE(known->accessList.has_value());
    known->mode = 0600; // the owner has opened it to others since
    EXPECT_EQ(Carried(known), 0644u);
    EXPECT_EQ(known->mode & 07777, 0644u);
    EXPECT_EQ(known->device, Status(m_new).st_dev);
    EXPECT_EQ(known->file, Status(m_new).st_ino);
}

TEST_F(CarriedRights, OfAnotherFileInItsPlaceAreNoneThatItHadNot) {
    const platform::FileRights before = *platform::RightsOf(m_new, nullptr); // not the original
    struct {
        mode_t original;
        mode_t known;
        bool bSameGroup;
        bool bSameList;
        mode_t carried;
    } const cases[] = {
        {0644, 0644, true, true, 0644},  {0644, 0640, true, true, 0640},  {0640, 0644, true, true, 0640},
        {0640, 0640, false, true, 0600}, {0644, 0644, true, false, 0600},
    };
    for (const auto& wanted : cases) {
        ASSERT_EQ(::fchmod(m_original.Descriptor(), wanted.original), 0);
        std::optional<platform::FileRights> known = before;
        known->mode = S_IFREG | wanted.known;
        known->group += wanted.bSameGroup ? 0 : 1;
        if (!wanted.bSameList) {
            known->accessList = "a list";
        }
        EXPECT_EQ(Carried(known), wanted.carried) << std::oct << wanted.original << ' ' << wanted.known;
        EXPECT_EQ(known->mode & 07777, wanted.known);
        EXPECT_EQ(known->file, Status(m_new).st_ino);
    }
    std::optional<platform::FileRights> none;
    ASSERT_EQ(::fchmod(m_original.Descriptor(), 0644), 0);
    EXPECT_EQ(Carried(none), 0644u);
    EXPECT_FALSE(none.has_value());
}

TEST_F(CarriedRights, OfAnotherOwnerOrGroupLeaveTheNewFileWithItsOwn) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    ASSERT_EQ(::fchown(m_new.Descriptor(), 1234, 4321), 0);
    std::optional<platform::FileRights> known = platform::RightsOf(m_new, nullptr);
    EXPECT_EQ(Carried(known), 0600u);
    EXPECT_EQ(Status(m_new).st_uid, 1234u);
    EXPECT_EQ(Status(m_new).st_gid, 4321u);
}

TEST_F(CarriedRights, CannotBeReadOfWhatIsNotOpen) {
    CReason reason;
    EXPECT_FALSE(platform::RightsOf(platform::CFile(), &reason).has_value());
    EXPECT_STREQ(reason.m_pCall, "fstat");
    CReason again;
    std::optional<platform::FileRights> none;
    EXPECT_FALSE(platform::CarryRightsOver(platform::CFile(), m_new, &again, none));
    EXPECT_STREQ(again.m_pCall, "fstat");
}
