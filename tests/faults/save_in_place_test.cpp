// Where the folder takes no new file, the copy is written in place: only there, since a save in place is not safe from
// being cut short.

#include "fault_document.h"
#include "safe_save.h"
#include "store/xml_object.h"
#include "system_calls.h"
#include "text_pieces.h"

#include <signal.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

namespace fs = std::filesystem;

class SaveInPlace : public CWithEachSize<FaultTest> {
protected:
    /// What becomes of the calls after the one that was refused.
    std::vector<SystemCall> CallsInPlace() {
        std::vector<SystemCall> calls;
        SaveWithoutNewFile(EACCES, [&](std::size_t, const SystemCall& call) {
            calls.push_back(call);
            return Fate{};
        });
        return calls;
    }

    /// A save in a folder that refuses a new file with that error; `judge` decides on all other calls.
    int32_t SaveWithoutNewFile(int error, const CSystemCallWatch::Judge& judge = {}) {
        CSystemCallWatch watch([&](std::size_t number, const SystemCall& call) {
            if (call.bCreates) {
                return Fate{error};
            }
            return judge ? judge(number, call) : Fate{};
        });
        const int32_t status = Save();
        for (const SystemCall& call : watch.Calls()) {
            m_bWroteCopy = m_bWroteCopy || (call.name == "write" && call.path == CopyPath());
        }
        return status;
    }

    bool m_bWroteCopy = false;
};

INSTANTIATE_TEST_SUITE_P(Of, SaveInPlace, EachSize(), SizeName);

TEST_P(SaveInPlace, IsDoneWhereTheFolderTakesNoFile) {
    for (const int error : {EACCES, EPERM, EROFS, ENAMETOOLONG}) {
        RestoreCopy();
        m_bWroteCopy = false;
        EXPECT_EQ(SaveWithoutNewFile(error), 0) << std::strerror(error);
        EXPECT_TRUE(m_bWroteCopy) << std::strerror(error);
        EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
        EXPECT_TRUE(CopyIsWhole());
    }
}

TEST_P(SaveInPlace, IsDoneWhereTheCopyCannotBeReplacedAndNotForAShortage) {
    for (const int error : {EBUSY, EACCES, EPERM, ENOSPC, EIO, EROFS}) {
        const bool bInPlace = error == EBUSY || error == EACCES || error == EPERM;
        RestoreCopy();
        int32_t status = -1;
        {
            const CSystemCallWatch watch(
                [&](std::size_t, const SystemCall& call) { return Fate{call.name == "renameat" ? error : 0}; });
            status = Save();
        }
        EXPECT_EQ(status, bInPlace ? 0 : 1) << std::strerror(error);
        EXPECT_EQ(ReadBytes(CopyPath()), bInPlace ? m_strNew : m_strOld);
        EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
    }
}

TEST_P(SaveInPlace, IsDoneWithContentsThatCameFromNoFileToo) {
    bool bReplaced = false;
    {
        const CSystemCallWatch watch(
            [](std::size_t, const SystemCall& call) { return Fate{call.bCreates ? EACCES : 0}; });
        bReplaced = platform::ReplaceContents(CopyPath().c_str(), InPieces(m_strNew));
    }
    EXPECT_TRUE(bReplaced);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
}

TEST_P(SaveInPlace, IsNotDoneForAShortage) {
    for (const int error : {ENOSPC, EDQUOT, EIO, EMFILE, ENFILE, ENOMEM, ENOLCK, EINTR, EEXIST}) {
        RestoreCopy();
        EXPECT_EQ(SaveWithoutNewFile(error), 1) << std::strerror(error);
        EXPECT_FALSE(m_bWroteCopy) << std::strerror(error);
        EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
    }
}

TEST_P(SaveInPlace, LeavesTheCopyAloneWhenThereIsNoSpace) {
    for (const int error : {ENOSPC, EDQUOT, EIO}) {
        RestoreCopy();
        EXPECT_EQ(SaveWithoutNewFile(EACCES,
                                     [&](std::size_t, const SystemCall& call) {
                                         return Fate{call.name == "posix_fallocate" ? error : 0};
                                     }),
                  1);
        EXPECT_FALSE(m_bWroteCopy);
        EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
    }
}

TEST_P(SaveInPlace, TakesBackSpaceThatWasReservedInPart) {
    // Some file systems have grown the file already when they find that there is no more space.
    EXPECT_EQ(SaveWithoutNewFile(EACCES,
                                 [&](std::size_t, const SystemCall& call) {
                                     if (call.name != "posix_fallocate") {
                                         return Fate{};
                                     }
                                     fs::resize_file(CopyPath(), m_strOld.size() + 100);
                                     return Fate{ENOSPC};
                                 }),
              1);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
}

TEST_P(SaveInPlace, WritesWhatAShortWriteLeft) {
    const std::size_t nAtMost = m_strNew.size() / 7;
    EXPECT_EQ(SaveWithoutNewFile(EACCES, [&](std::size_t, const SystemCall&) { return Fate{0, false, nAtMost}; }), 0);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
}

TEST_P(SaveInPlace, ReservesItsSpaceBeforeItWritesAndFlushesAfterwards) {
    std::string order;
    SaveWithoutNewFile(EACCES, [&](std::size_t, const SystemCall& call) {
        if (call.path == CopyPath() && (call.name == "posix_fallocate" || call.name == "write" ||
                                        call.name == "ftruncate" || call.name == "fsync")) {
            order += call.name + " ";
        }
        return Fate{};
    });
    const bool bLarge = GetParam() == DocumentSize::Large;
    EXPECT_EQ(order,
              bLarge ? "posix_fallocate write write write ftruncate fsync " : "posix_fallocate write ftruncate fsync ");
}

TEST_P(SaveInPlace, LeavesNothingBesideTheCopy) {
    EXPECT_EQ(SaveWithoutNewFile(EACCES), 0);
    EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
}

TEST_P(SaveInPlace, FailsWhereAnyOfItsCallsFailsAndWorksTheNextTime) {
    const std::vector<SystemCall> calls = CallsInPlace();
    int failures = 0;
    bool bWriting = false;
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        RestoreCopy();
        std::size_t number = 0;
        const int32_t status = SaveWithoutNewFile(
            EACCES, [&](std::size_t, const SystemCall&) { return Fate{number++ == failing ? EIO : 0}; });
        SCOPED_TRACE(calls[failing].name + " of " + calls[failing].path);
        if (calls[failing].name == "posix_fallocate" || (calls[failing].name == "write" && !bWriting)) {
            EXPECT_EQ(status, 1);
            EXPECT_EQ(ReadBytes(CopyPath()), m_strOld) << "not a byte was written";
            bWriting = calls[failing].name == "write";
        } else if (calls[failing].name == "write") {
            EXPECT_EQ(status, 1);
            EXPECT_EQ(ReadBytes(CopyPath()).size(), m_strNew.size()) << "torn, and nothing of the old one's end";
        } else if (calls[failing].name == "ftruncate") {
            EXPECT_EQ(status, 1) << "the end of a longer document may still be there";
        } else if (status == 0) {
            EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
        }
        failures += status;
        EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
        ASSERT_EQ(Save(), 0);
        EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
    }
    EXPECT_GE(failures, 6) << "opening, locking, looking, reserving, writing, cutting off, flushing";
}

TEST_P(SaveInPlace, IsNotDoneWhereTheFileCannotBeLookedAt) {
    int looks = 0;
    const std::vector<SystemCall> calls = CallsInPlace();
    for (std::size_t failing = 0; failing < calls.size(); ++failing) {
        if (calls[failing].name != "fstat" || calls[failing].path != CopyPath()) {
            continue;
        }
        RestoreCopy();
        std::size_t number = 0;
        EXPECT_EQ(SaveWithoutNewFile(
                      EACCES, [&](std::size_t, const SystemCall&) { return Fate{number++ == failing ? EIO : 0}; }),
                  1)
            << failing;
        EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
        ++looks;
    }
    EXPECT_GE(looks, 2) << "at its names, and at its rights";
}

TEST_P(SaveInPlace, IsDoneUpToTheLimitOnFileSizesAndNotAByteBeyond) {
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    for (const int lacking : {0, 1}) {
        RestoreCopy();
        const rlimit limit{m_strNew.size() - static_cast<std::size_t>(lacking), before.rlim_max};
        ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
        COutcome outcome;
        {
            const CSystemCallWatch watch(
                [](std::size_t, const SystemCall& call) { return Fate{call.bCreates ? EACCES : 0}; });
            outcome = m_pDocument->Save();
        }
        ::setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_EQ(static_cast<bool>(outcome), lacking == 0);
        EXPECT_EQ(outcome.m_reason.m_nError, static_cast<std::uint32_t>(lacking == 0 ? 0 : EFBIG));
        EXPECT_TRUE(Holds(CopyPath(), lacking == 0 ? m_strNew : m_strOld));
    }
}

TEST_P(SaveInPlace, WaitsASecondForALockAndNotForAnythingElse) {
    struct {
        int error;
        int tries; // that fail
        int32_t status;
        int pauses;
    } const cases[] = {{EAGAIN, 1000, 1, 99}, {EAGAIN, 99, 0, 99}, {EAGAIN, 1, 0, 1}, {ENOLCK, 1000, 1, 0}};
    for (const auto& lock : cases) {
        RestoreCopy();
        int tries = 0;
        int pauses = 0;
        EXPECT_EQ(SaveWithoutNewFile(EACCES,
                                     [&](std::size_t, const SystemCall& call) {
                                         if (call.name == "nanosleep") {
                                             EXPECT_EQ(call.bytes, "10000000");
                                             ++pauses;
                                             return Fate{EINTR}; // at once
                                         }
                                         const bool bFails =
                                             call.name == "fcntl" && call.path == CopyPath() && tries++ < lock.tries;
                                         return Fate{bFails ? lock.error : 0};
                                     }),
                  lock.status);
        EXPECT_EQ(pauses, lock.pauses) << std::strerror(lock.error) << ' ' << lock.tries;
        EXPECT_EQ(ReadBytes(CopyPath()), lock.status == 0 ? m_strNew : m_strOld);
    }
}

namespace {

/// Processes that are born while a save is at work, have its files too, and live for as long as this object.
class CForkedProcesses {
public:
    CForkedProcesses() = default;
    ~CForkedProcesses() {
        for (const pid_t process : m_processes) {
            ::kill(process, SIGKILL);
            ::waitpid(process, nullptr, 0);
        }
    }
    CForkedProcesses(const CForkedProcesses&) = delete;
    CForkedProcesses& operator=(const CForkedProcesses&) = delete;

    void Add() {
        m_processes.push_back(::fork());
        if (m_processes.back() == 0) {
            ::pause();
            ::_exit(0);
        }
    }
    bool IsEmpty() const { return m_processes.empty(); }

private:
    std::vector<pid_t> m_processes;
};

} // namespace

TEST_P(SaveInPlace, FindsNoLockThatAProcessWasBornWithDuringAnEarlierSave) {
    for (const bool bInPlace : {true, false}) {
        RestoreCopy();
        CForkedProcesses processes;
        const auto fork = [&](std::size_t, const SystemCall& call) {
            if (call.name == "write" && processes.IsEmpty()) {
                processes.Add();
            }
            return Fate{};
        };
        if (bInPlace) {
            EXPECT_EQ(SaveWithoutNewFile(EACCES, fork), 0);
        } else {
            const CSystemCallWatch watch(fork);
            EXPECT_EQ(Save(), 0);
        }
        EXPECT_FALSE(processes.IsEmpty());
        EXPECT_EQ(SaveWithoutNewFile(EACCES,
                                     [&](std::size_t, const SystemCall& call) {
                                         EXPECT_NE(call.name, "nanosleep") << "another save holds the lock";
                                         return Fate{call.name == "nanosleep" ? EINTR : 0};
                                     }),
                  0);
    }
}

TEST_P(SaveInPlace, SaysWhyItLeavesAFileAloneThatOthersCouldReadTheDocumentIn) {
    const auto reason = [this] {
        const CSystemCallWatch watch(
            [](std::size_t, const SystemCall& call) { return Fate{call.bCreates ? EACCES : 0}; });
        const COutcome outcome = m_pDocument->Save();
        EXPECT_FALSE(outcome);
        EXPECT_EQ(outcome.m_reason.m_kind, ReasonKind::NotPermitted);
        return std::string(outcome.m_reason.m_strWords.c_str());
    };
    const fs::path other = CopyPath().parent_path() / "other";
    fs::create_hard_link(CopyPath(), other);
    EXPECT_EQ(reason(), "the file has other names, and they would lead to it");
    fs::remove(other);
    fs::rename(CopyPath(), other);
    RestoreCopy();
    fs::permissions(CopyPath(), static_cast<fs::perms>(0666));
    EXPECT_EQ(reason(), "another file is in its place, which others may open");
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
    fs::permissions(CopyPath(), static_cast<fs::perms>(0640));
    EXPECT_EQ(SaveWithoutNewFile(EACCES), 0);
    fs::permissions(CopyPath(), static_cast<fs::perms>(0666)); // of the file that was saved
    EXPECT_EQ(SaveWithoutNewFile(EACCES), 0);
}

TEST_P(SaveInPlace, WritesNoByteWhereTheContentsOrTheLastLookForbidIt) {
    const auto save = [this](const platform::ContentsProducer& contents, bool bWanted, CReason& reason) {
        const CSystemCallWatch watch(
            [](std::size_t, const SystemCall& call) { return Fate{call.bCreates ? EACCES : 0}; });
        return platform::ReplaceContents(CopyPath().c_str(), contents, &reason, [bWanted] { return bWanted; });
    };
    const auto refuse = [](const platform::PieceSink& sink) {
        sink("the beginning");
        return false;
    };
    CReason reason;
    EXPECT_FALSE(save(refuse, true, reason));
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
    EXPECT_FALSE(save(InPieces("new"), false, reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::Overtaken);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
    EXPECT_TRUE(save(InPieces("new"), true, reason));
    EXPECT_EQ(ReadBytes(CopyPath()), "new");
}
