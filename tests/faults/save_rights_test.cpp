// Rights that a save cannot carry over to the new file: what is lost that kept others out takes the rights of others
// with it, and nothing else does.

#include "access_list.h"
#include "fault_document.h"
#include "store/xml_object.h"
#include "system_calls.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

using namespace std::string_literals;

class SaveRights : public FaultTest {
protected:
    /// The permissions that a save leaves of `before` while the judge decides. The file has no access control list.
    mode_t Left(mode_t before, const CSystemCallWatch::Judge& judge) {
        RestoreCopy();
        ::removexattr(CopyPath().c_str(), kAccessList);
        EXPECT_EQ(::chmod(CopyPath().c_str(), before), 0);
        {
            const CSystemCallWatch watch(judge);
            EXPECT_EQ(Save(), 0);
            m_calls = watch.Calls();
        }
        EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
        return Status().st_mode & 07777;
    }

    struct stat Status() const {
        struct stat status {};
        EXPECT_EQ(::stat(CopyPath().c_str(), &status), 0);
        return status;
    }

    /// How many calls of that name there were for an attribute.
    std::size_t Calls(const std::string& name, const std::string& attribute) const {
        return static_cast<std::size_t>(std::count_if(m_calls.begin(), m_calls.end(), [&](const SystemCall& call) {
            return call.name == name && call.target == attribute;
        }));
    }

    std::vector<SystemCall> m_calls; // of the last save
};

TEST_F(SaveRights, OfOthersGoWithAnAttributeThatKeptThemOut) {
    struct {
        const char* call;
        const char* attribute;
        int error;
        mode_t left;
    } const cases[] = {
        {"fgetxattr", "security.label", EACCES, 0600}, {"fsetxattr", "security.label", EPERM, 0600},
        {"fgetxattr", "user.note", EACCES, 0644},      {"fsetxattr", "user.note", EPERM, 0644},
        {"fgetxattr", "trusted.note", EACCES, 0644},   {"fsetxattr", "trusted.note", EPERM, 0644},
    };
    for (const auto& lost : cases) {
        const mode_t left = Left(0644, [&](std::size_t, const SystemCall& call) {
            Fate fate;
            if (call.name == "flistxattr") {
                fate.answer = "user.first\0"s + lost.attribute + "\0user.last\0"s;
            } else if (call.name == lost.call && call.target == lost.attribute) {
                fate.error = lost.error;
            } else if (call.name == "fgetxattr" && call.target != kAccessList) {
                fate.answer = "value";
            }
            return fate;
        });
        EXPECT_EQ(left, lost.left) << lost.call << " of " << lost.attribute;
        EXPECT_EQ(Calls("fsetxattr", "user.last"), 1u) << "what follows is kept all the same";
    }
}

TEST_F(SaveRights, OfOthersStayWhereThereAreNoAttributes) {
    struct {
        const char* call;
        int error;
        mode_t left;
    } const cases[] = {
        {"flistxattr", ENOTSUP, 0644},   {"flistxattr", ENODATA, 0644},   {"flistxattr", EACCES, 0600},
        {"fgetxattr", ENOTSUP, 0644},    {"fgetxattr", ENODATA, 0644},    {"fgetxattr", EACCES, 0600},
        {"fremovexattr", ENODATA, 0644}, {"fremovexattr", ENOTSUP, 0644}, {"fremovexattr", EACCES, 0600},
    };
    for (const auto& lacking : cases) {
        const mode_t left = Left(0644, [&](std::size_t, const SystemCall& call) {
            const bool bOther = call.name == "fgetxattr" && call.target != kAccessList;
            return Fate{call.name == lacking.call && !bOther ? lacking.error : 0};
        });
        EXPECT_EQ(left, lacking.left) << lacking.call << ": " << std::strerror(lacking.error);
    }
}

TEST_F(SaveRights, AreAsTheyAreWhenTheyAreCopied) {
    // Attributes come, go and change between the call for their size and the one for themselves.
    int lists = 0;
    int values = 0;
    const mode_t left = Left(0644, [&](std::size_t, const SystemCall& call) {
        Fate fate;
        if (call.name == "flistxattr") {
            fate.answer = ++lists == 1 ? "user.note\0user.gone\0"s : "user.note\0"s;
        } else if (call.name == "fgetxattr" && call.target == "user.note") {
            fate.answer = ++values == 1 ? "a long note" : "a note";
        } else if (call.name == "fgetxattr") {
            fate.error = ENODATA;
        }
        return fate;
    });
    EXPECT_EQ(left, 0644u);
    std::string note;
    for (const SystemCall& call : m_calls) {
        EXPECT_FALSE(call.name == "fgetxattr" && call.target.empty());
        note = call.name == "fsetxattr" ? call.bytes : note;
    }
    EXPECT_EQ(note, "a note");
}

TEST_F(SaveRights, AreCarriedOverWhateverFailedBefore) {
    RestoreCopy();
    for (const int error : {EIO, ENOSPC, EACCES, EINTR}) {
        {
            const CSystemCallWatch watch([&](std::size_t, const SystemCall&) {
                errno = error; // which calls that succeed leave alone
                return Fate{};
            });
            EXPECT_EQ(Save(), 0) << std::strerror(error);
        }
        EXPECT_TRUE(CopyIsWhole());
    }
}

TEST_F(SaveRights, DoNotBringChecksumsOfTheOldContents) {
    const mode_t left = Left(0644, [](std::size_t, const SystemCall& call) {
        Fate fate;
        fate.answer = call.name == "flistxattr" ? "security.ima\0security.evm\0"s : "";
        return fate;
    });
    EXPECT_EQ(left, 0644u);
    EXPECT_EQ(Calls("fgetxattr", "security.ima") + Calls("fgetxattr", "security.evm"), 0u);
}

TEST_F(SaveRights, OfAListThatSpeaksOfAnotherOwnerAreNeverLent) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    int owners = 0;
    const mode_t left = Left(0660, [&](std::size_t, const SystemCall& call) {
        Fate fate;
        fate.error = call.name == "fchown" && ++owners == 1 ? EPERM : 0; // the owner cannot be kept, the group can
        if (call.name == "flistxattr") {
            fate.answer = kAccessList + "\0"s;
        } else if (call.name == "fgetxattr") {
            fate.answer = "a list";
        } else if (call.name == "fremovexattr") {
            fate.error = ENODATA;
        }
        return fate;
    });
    EXPECT_EQ(left, 0600u);
    EXPECT_EQ(Calls("fsetxattr", kAccessList), 0u);
}

TEST_F(SaveRights, OfTheGroupStayWhereOnlyTheOwnerIsLost) {
    const gid_t group = Status().st_gid;
    int owners = 0;
    EXPECT_EQ(
        Left(0660, [&](std::size_t,
                       const SystemCall& call) { return Fate{call.name == "fchown" && ++owners == 1 ? EPERM : 0}; }),
        0660u);
    EXPECT_EQ(owners, 2);
    EXPECT_EQ(Status().st_gid, group);
}

TEST_F(SaveRights, ThatCannotBeLookedAtFailTheSave) {
    RestoreCopy();
    bool bOwned = false;
    COutcome outcome;
    {
        const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            bOwned = bOwned || call.name == "fchown";
            return Fate{call.name == "fchown" ? EPERM : bOwned && call.name == "fstat" ? EIO : 0};
        });
        outcome = m_pDocument->Save();
    }
    EXPECT_FALSE(outcome);
    EXPECT_STREQ(outcome.m_reason.m_pCall, "fstat");
    EXPECT_EQ(outcome.m_reason.m_nError, static_cast<std::uint32_t>(EIO));
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
}
