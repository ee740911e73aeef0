// Every call of a save to the system fails in turn, in every way. Whatever fails, the copy is the old document or the
// new one, and says so by the save's status; nothing lies beside it; and the next save works.

#include "fault_document.h"
#include "store/xml_object.h"
#include "system_calls.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <iterator>
#include <map>
#include <utility>

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kPieceBytes = std::size_t{1} << 20; // which a save writes at once

const int kSaveErrors[] = {ENOSPC, EIO, EDQUOT, EROFS, EINTR, EACCES, ENOLCK, ENOMEM, EMFILE};

} // namespace

class SaveCalls : public FaultTest {
protected:
    explicit SaveCalls(DocumentSize size = DocumentSize::Everyday) : FaultTest(size) {}

    /// The calls of a save that nothing disturbs, with writes of at most so many bytes.
    std::vector<SystemCall> CallsOfASave(std::size_t nAtMost) {
        CSystemCallWatch watch([&](std::size_t, const SystemCall&) { return Fate{0, false, nAtMost}; });
        EXPECT_EQ(Save(), 0);
        return watch.Calls();
    }

    void ExpectWholeAfter(int32_t status, bool bRightsKept = true) {
        ASSERT_TRUE(CopyIsWhole(bRightsKept));
        EXPECT_EQ(Holds(CopyPath(), m_strNew), status == 0) << "status " << status;
    }

    void ExpectNextSaveToWork(bool bRightsKept = true) {
        ASSERT_EQ(Save(), 0);
        EXPECT_TRUE(Holds(CopyPath(), m_strNew));
        EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
        ASSERT_TRUE(CopyIsWhole(bRightsKept));
    }

    static bool IsFor(const SystemCall& call, const char* name) { return call.name == name; }

    /// Where the system does not let the process carry rights over, they shrink.
    static bool IsForRights(const SystemCall& call) { return IsFor(call, "fchown") || call.name.ends_with("xattr"); }
};

class EachSaveCall : public CWithEachSize<SaveCalls> {};
INSTANTIATE_TEST_SUITE_P(Of, EachSaveCall, EachSize(), SizeName);

class LargeSaveCalls : public SaveCalls {
protected:
    LargeSaveCalls() : SaveCalls(DocumentSize::Large) {}
};

TEST_F(SaveCalls, AreTheOnesThatTheseTestsKnow) {
    std::map<std::string, int> counts;
    for (const SystemCall& call : CallsOfASave(std::size_t(-1))) {
        ++counts[call.name];
    }
    for (const char* const name :
         {"open", "flock", "openat", "getdents64", "getrandom", "fcntl", "fstat", "fchown", "write", "flistxattr",
          "fgetxattr", "fsetxattr", "fchmod", "fsync", "renameat", "close"}) {
        EXPECT_GE(counts[name], 1) << name;
    }
    EXPECT_EQ(counts["write"], 1) << "the whole document at once";
    EXPECT_EQ(counts["sync_file_range"], 0);
    EXPECT_EQ(counts["renameat"], 1);
    EXPECT_EQ(counts["unlinkat"], 0);
}

TEST_F(LargeSaveCalls, SendEachPieceToTheDiskBeforeTheNextIsWritten) {
    std::string order;
    std::size_t left = m_strNew.size();
    CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
        if (!IsTemporary(call.path)) {
            return Fate{};
        }
        if (call.name == "write") {
            EXPECT_EQ(call.written.size(), std::min(left, kPieceBytes));
            EXPECT_EQ(call.written, m_strNew.substr(m_strNew.size() - left, call.written.size()));
            left -= call.written.size();
        }
        if (call.name == "write" || call.name == "sync_file_range" || call.name == "fsync" || call.name == "renameat") {
            order += call.name + " ";
        }
        return Fate{};
    });
    EXPECT_EQ(Save(), 0);
    EXPECT_EQ(order, "write sync_file_range write sync_file_range write fsync renameat ");
}

TEST_F(LargeSaveCalls, WorkWhereTheDiskCannotBeSentAPiece) {
    // As on a file system that knows no such request.
    int refused = 0;
    {
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            const bool bRefused = IsFor(call, "sync_file_range");
            refused += bRefused ? 1 : 0;
            return Fate{bRefused ? EINVAL : 0};
        });
        EXPECT_EQ(Save(), 0);
    }
    EXPECT_EQ(refused, 2);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
    EXPECT_TRUE(CopyIsWhole());
}

TEST_F(LargeSaveCalls, WriteNothingMoreOnceAPieceFailed) {
    for (const int failing : {0, 1, 2}) {
        int writes = 0;
        int sent = 0;
        {
            CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                sent += IsFor(call, "sync_file_range") ? 1 : 0;
                return Fate{IsFor(call, "write") && writes++ == failing ? ENOSPC : 0};
            });
            EXPECT_EQ(Save(), 1);
        }
        EXPECT_EQ(writes, failing + 1);
        EXPECT_EQ(sent, failing);
        EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
        EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
    }
}

TEST_P(EachSaveCall, FailingOneByOneLeaveAWholeDocumentAndNothingBesideIt) {
    int failures = 0;
    for (const std::size_t nAtMost : {std::size_t(-1), m_strNew.size() / 4}) {
        const std::size_t count = CallsOfASave(nAtMost).size();
        for (const int error : kSaveErrors) {
            for (std::size_t failing = 0; failing < count; ++failing) {
                RestoreCopy();
                int32_t status = -1;
                SystemCall failed;
                {
                    CSystemCallWatch watch([&](std::size_t number, const SystemCall& call) {
                        if (number == failing) {
                            failed = call;
                        }
                        return Fate{number == failing ? error : 0, false, nAtMost};
                    });
                    status = Save();
                }
                SCOPED_TRACE(failed.name + " of " + failed.path + ": " + std::strerror(error));
                const bool bRightsKept = !IsForRights(failed);
                ExpectWholeAfter(status, bRightsKept);
                EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
                ExpectNextSaveToWork(bRightsKept);
                ++failures;
                if (HasFailure()) {
                    return;
                }
            }
        }
    }
    std::printf("%d calls failed, one by one\n", failures);
}

TEST_F(SaveCalls, ThroughALinkFailingOneByOneLeaveAWholeDocument) {
    const fs::path folder = fs::path(CopyPath()).parent_path().parent_path() / "linked";
    fs::create_directories(folder);
    fs::rename(CopyPath(), folder / "target.xml");
    fs::create_symlink("../linked/target.xml", CopyPath());
    struct stat status {};
    ASSERT_EQ(::stat(CopyPath().c_str(), &status), 0);
    ASSERT_EQ(::lchown(CopyPath().c_str(), status.st_uid, status.st_gid), 0);
    std::set<std::string> failed;
    const std::size_t count = CallsOfASave(std::size_t(-1)).size();
    for (std::size_t failing = 0; failing < count; ++failing) {
        RestoreCopy();
        SystemCall call;
        int32_t saved = -1;
        {
            CSystemCallWatch watch([&](std::size_t number, const SystemCall& one) {
                call = number == failing ? one : call;
                return Fate{number == failing ? EIO : 0};
            });
            saved = Save();
        }
        SCOPED_TRACE(call.name + " of " + call.path);
        ExpectWholeAfter(saved, !IsForRights(call));
        EXPECT_TRUE(fs::is_symlink(CopyPath()));
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
        failed.insert(call.name);
    }
    EXPECT_TRUE(failed.contains("readlinkat"));
    RestoreCopy();
    ExpectNextSaveToWork();
}

TEST_F(SaveCalls, ThatFailOnceForALinkFailTheSaveWithTheirError) {
    const fs::path target = fs::path(CopyPath()).parent_path().parent_path() / "target.xml";
    fs::rename(CopyPath(), target);
    fs::create_symlink(target, CopyPath());
    struct stat status {};
    ASSERT_EQ(::stat(CopyPath().c_str(), &status), 0);
    ASSERT_EQ(::lchown(CopyPath().c_str(), status.st_uid, status.st_gid), 0);
    // The copy is opened twice: the first time it shows that it is a link.
    for (const auto& nth : {std::pair("open", 2), std::pair("fstat", 1), std::pair("readlinkat", 1)}) {
        const char* const name = nth.first;
        int calls = 0;
        COutcome outcome;
        {
            const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                const bool bFails = IsFor(call, name) && call.path == CopyPath() && ++calls == nth.second;
                return Fate{bFails ? EIO : 0};
            });
            outcome = m_pDocument->Save();
        }
        EXPECT_EQ(calls, nth.second) << name;
        EXPECT_FALSE(outcome) << name;
        EXPECT_EQ(outcome.m_reason.m_nError, static_cast<std::uint32_t>(EIO)) << name;
        EXPECT_EQ(ReadBytes(target), m_strOld);
    }
}

TEST_F(SaveCalls, ThatFailAreNamedInTheReasonWithTheirError) {
    const std::size_t count = CallsOfASave(std::size_t(-1)).size();
    std::set<std::string> named;
    for (std::size_t failing = 0; failing < count; ++failing) {
        RestoreCopy();
        SystemCall failed;
        COutcome outcome;
        {
            CSystemCallWatch watch([&](std::size_t number, const SystemCall& call) {
                failed = number == failing ? call : failed;
                return Fate{number == failing ? EIO : 0};
            });
            outcome = m_pDocument->Save();
        }
        if (outcome) {
            continue; // it can do without
        }
        named.insert(failed.name);
        EXPECT_STREQ(outcome.m_reason.m_pCall, failed.name.c_str()) << failed.path;
        EXPECT_EQ(outcome.m_reason.m_nError, static_cast<std::uint32_t>(EIO)) << failed.name;
    }
    for (const char* const name :
         {"open", "flock", "openat", "getrandom", "fcntl", "fstat", "write", "fchmod", "fsync", "renameat"}) {
        EXPECT_TRUE(named.contains(name)) << name;
    }
}

TEST_P(EachSaveCall, FailingFromOneOnLeaveAWholeDocument) {
    // A disk that died: the temporary file cannot even be removed. The next save uses it up.
    const std::size_t count = CallsOfASave(std::size_t(-1)).size();
    int failures = 0;
    for (const int error : kSaveErrors) {
        if (error == EINTR) {
            continue; // a call that was interrupted is made again, for ever here
        }
        for (std::size_t failing = 0; failing < count; ++failing) {
            RestoreCopy();
            int32_t status = -1;
            std::string failed;
            {
                CSystemCallWatch watch([&](std::size_t number, const SystemCall& call) {
                    if (number == failing) {
                        failed = call.name;
                    }
                    // No save makes this many calls: one that does would go on for ever.
                    return number > 10 * count ? Fate{0, true} : Fate{number >= failing ? error : 0};
                });
                status = Save();
            }
            SCOPED_TRACE(failed + " and all that follow: " + std::strerror(error));
            ExpectWholeAfter(status);
            ExpectNextSaveToWork();
            ++failures;
            if (HasFailure()) {
                return;
            }
        }
    }
    std::printf("%d points from which on every call failed\n", failures);
}

TEST_P(EachSaveCall, FailingTwiceLeaveAWholeDocument) {
    const std::size_t count = CallsOfASave(std::size_t(-1)).size() + 2;
    int failures = 0;
    for (std::size_t first = 0; first < count; ++first) {
        for (std::size_t second = first + 1; second < count; ++second) {
            RestoreCopy();
            int32_t status = -1;
            {
                CSystemCallWatch watch([&](std::size_t number, const SystemCall&) {
                    return Fate{number == first || number == second ? EIO : 0};
                });
                status = Save();
            }
            SCOPED_TRACE(std::to_string(first) + " and " + std::to_string(second));
            ExpectWholeAfter(status);
            ExpectNextSaveToWork();
            ++failures;
            if (HasFailure()) {
                return;
            }
        }
    }
    std::printf("%d pairs of calls failed\n", failures);
}

TEST_F(SaveCalls, ThatAreInterruptedAreMadeAgain) {
    int interruptions = 0;
    {
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            const bool bInterrupted = IsFor(call, "write") && interruptions < 3;
            interruptions += bInterrupted ? 1 : 0;
            return Fate{bInterrupted ? EINTR : 0};
        });
        EXPECT_EQ(Save(), 0);
    }
    EXPECT_EQ(interruptions, 3);
    EXPECT_TRUE(CopyIsWhole());
}

TEST_F(SaveCalls, ThatWriteByteByByteWriteTheWholeDocument) {
    CSystemCallWatch watch([&](std::size_t, const SystemCall&) { return Fate{0, false, 1}; });
    EXPECT_EQ(Save(), 0);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
}

TEST_F(SaveCalls, ThatWriteNothingFailTheSave) {
    // As a full disk does that reports no error.
    COutcome outcome;
    {
        bool bInterrupted = false;
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            if (call.name == "write" && !std::exchange(bInterrupted, true)) {
                return Fate{EINTR};
            }
            return Fate{0, false, 0};
        });
        outcome = m_pDocument->Save();
    }
    EXPECT_FALSE(outcome);
    EXPECT_EQ(outcome.m_reason.m_nError, static_cast<std::uint32_t>(ENOSPC));
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
    EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
}

TEST_F(SaveCalls, NeverTouchTheCopyItselfButToReplaceIt) {
    for (const SystemCall& call : CallsOfASave(std::size_t(-1))) {
        if (call.path == CopyPath()) {
            EXPECT_TRUE(call.name != "write" && call.name != "ftruncate" && call.name != "unlinkat") << call.name;
        }
    }
}

TEST_F(SaveCalls, ThatFindTheirTemporaryFileTakenForALeftoverMakeAnother) {
    // Another save looks for leftovers at the moment between the making of the file and its lock.
    for (const bool bRemovedAlready : {false, true}) {
        RestoreCopy();
        int locks = 0;
        int finder = -1;
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            if (IsFor(call, "fcntl") && IsTemporary(call.path) && ++locks == 1) {
                if (bRemovedAlready) {
                    fs::remove(call.path);
                    errno = EIO; // as whatever went before may leave it
                } else {
                    finder = ::open(call.path.c_str(), O_RDONLY | O_CLOEXEC);
                    struct flock lock = {};
                    lock.l_type = F_RDLCK;
                    EXPECT_EQ(::fcntl(finder, F_OFD_SETLK, &lock), 0);
                }
            }
            return Fate{};
        });
        EXPECT_EQ(Save(), 0);
        EXPECT_EQ(locks, 2) << "the first file and the second one";
        ::close(finder);
        EXPECT_TRUE(CopyIsWhole());
        EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
        EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
    }
}

TEST_F(SaveCalls, ThatFindTheirTemporaryNameTakenChooseAnother) {
    WriteBytes(CopyPath().parent_path() / ".cordelbox-4141414141414141.tmp", "of another user");
    int names = 0;
    {
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            Fate fate;
            fate.error = IsFor(call, "getdents64") ? EIO : 0; // which would remove it
            fate.answer = IsFor(call, "getrandom") && ++names < 3 ? "AAAAAAAA" : "";
            return fate;
        });
        EXPECT_EQ(Save(), 0);
    }
    EXPECT_EQ(names, 3);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
    EXPECT_EQ(ReadBytes(CopyPath().parent_path() / ".cordelbox-4141414141414141.tmp"), "of another user");
}

TEST_F(SaveCalls, ThatFindEveryTemporaryNameTakenFailTheSave) {
    int tries = 0;
    {
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            tries += call.bCreates ? 1 : 0;
            return Fate{call.bCreates ? EEXIST : 0};
        });
        EXPECT_EQ(Save(), 1);
    }
    EXPECT_EQ(tries, 8);
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
}

TEST_F(SaveCalls, DoWithoutReadingAFolderOnlyWhereItMayNotBeRead) {
    const std::string folder = CopyPath().parent_path().string() + "/";
    for (const int error : {EACCES, EIO, ENOMEM, EMFILE}) {
        RestoreCopy();
        bool bFailed = false;
        COutcome outcome;
        {
            const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                const bool bFails = call.name == "open" && call.path == folder && !std::exchange(bFailed, true);
                return Fate{bFails ? error : 0};
            });
            outcome = m_pDocument->Save();
        }
        EXPECT_TRUE(bFailed);
        EXPECT_EQ(static_cast<bool>(outcome), error == EACCES) << std::strerror(error);
        EXPECT_EQ(ReadBytes(CopyPath()), outcome ? m_strNew : m_strOld);
        EXPECT_TRUE(outcome || outcome.m_reason.m_nError == static_cast<std::uint32_t>(error));
    }
}

TEST_F(SaveCalls, LeaveAFileAloneThatTakesTheNameOfALeftoverMeanwhile) {
    // Between the first look at it and its opening: a file with another name, or a pipe that nobody writes to.
    const fs::path leftover = CopyPath().parent_path() / ".cordelbox-0123456789abcdef.tmp";
    const fs::path letter = CopyPath().parent_path() / "letter.txt";
    WriteBytes(letter, "a letter");
    for (const bool bPipe : {false, true}) {
        WriteBytes(leftover, "half a document");
        {
            const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                if (call.name == "openat" && call.path == leftover) {
                    fs::remove(leftover);
                    if (bPipe) {
                        EXPECT_EQ(::mkfifo(leftover.c_str(), 0600), 0);
                    } else {
                        fs::create_hard_link(letter, leftover);
                    }
                }
                return Fate{};
            });
            EXPECT_EQ(Save(), 0);
        }
        EXPECT_TRUE(Names().contains(leftover.filename())) << (bPipe ? "the pipe" : "the link");
        fs::remove(leftover);
    }
}

TEST_F(SaveCalls, LeaveALeftoverThatTheyCannotLookAt) {
    const fs::path leftover = CopyPath().parent_path() / ".cordelbox-0123456789abcdef.tmp";
    for (const char* const name : {"fstatat", "openat", "fcntl", "fstat"}) {
        RestoreCopy();
        WriteBytes(leftover, "half a document");
        {
            const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                return Fate{call.name == name && call.path == leftover ? EACCES : 0};
            });
            EXPECT_EQ(Save(), 0) << name;
        }
        EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
        EXPECT_TRUE(Names().contains(leftover.filename())) << name;
        EXPECT_EQ(Save(), 0);
        EXPECT_FALSE(Names().contains(leftover.filename())) << name;
    }
}

TEST_F(SaveCalls, OpenNothingThatCanBeNoLeftover) {
    // What opening does is up to a device or a pipe; and a link leads anywhere.
    const fs::path folder = CopyPath().parent_path();
    const fs::path pipe = folder / ".cordelbox-0000000000000001.tmp";
    const fs::path link = folder / ".cordelbox-0000000000000002.tmp";
    const fs::path linked = folder / ".cordelbox-0000000000000003.tmp";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    fs::create_symlink("letter.txt", link);
    WriteBytes(folder / "letter.txt", "a letter");
    fs::create_hard_link(folder / "letter.txt", linked);
    for (const SystemCall& call : CallsOfASave(std::size_t(-1))) {
        EXPECT_FALSE(call.name == "openat" && (call.path == pipe || call.path == link || call.path == linked))
            << call.path;
    }
    EXPECT_EQ(Names().size(), 5u);
}

TEST_F(SaveCalls, ThatCannotLookAtTheirTemporaryFileFailTheSaveAndRemoveItOnce) {
    for (const char* const name : {"fcntl", "fstat"}) {
        int removals = 0;
        int looks = 0;
        COutcome outcome;
        {
            const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                removals += call.name == "unlinkat" ? 1 : 0;
                looks += call.name == name && IsTemporary(call.path) ? 1 : 0;
                return Fate{call.name == name && IsTemporary(call.path) && looks == 1 ? EIO : 0};
            });
            outcome = m_pDocument->Save();
        }
        EXPECT_FALSE(outcome);
        EXPECT_STREQ(outcome.m_reason.m_pCall, name);
        EXPECT_EQ(removals, 1);
        EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
        EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
    }
}

TEST_F(SaveCalls, LookAtFourThousandNamesOfAFolderAtMost) {
    dirent64 entry{};
    entry.d_reclen = sizeof entry;
    entry.d_name[0] = 'n';
    const std::string bytes(reinterpret_cast<const char*>(&entry), sizeof entry);
    int names = 0;
    {
        const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            Fate fate;
            if (call.name == "getdents64") {
                ++names;
                fate.answer = bytes;
            }
            return fate;
        });
        EXPECT_EQ(Save(), 0);
    }
    EXPECT_EQ(names, 4096);
}
