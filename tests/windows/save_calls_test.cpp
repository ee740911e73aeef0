// Every call of a save to the system fails in turn, in every way. Whatever fails, the copy is the old document or the
// new one, and says so by the save's status; nothing lies beside it; and the next save works.

#include "save_fault_test.h"
#include "store/module_state.h"
#include "store/xml_object.h"

#include <algorithm>
#include <cstdio>
#include <map>
#include <set>
#include <string_view>

namespace fs = std::filesystem;

namespace {

const DWORD kErrors[] = {ERROR_DISK_FULL,         ERROR_WRITE_FAULT,       ERROR_ACCESS_DENIED,
                         ERROR_SHARING_VIOLATION, ERROR_NOT_ENOUGH_MEMORY, ERROR_TOO_MANY_OPEN_FILES,
                         ERROR_INVALID_HANDLE,    ERROR_NETNAME_DELETED};

bool IsForAttributes(const SystemCall& call) { return call.name.ends_with("FileAttributesW"); }

bool IsForRights(const SystemCall& call) { return call.name.ends_with("FileSecurityW"); }

std::string Describe(const SystemCall& call) { return call.name + " of " + fs::path(call.path).string(); }

} // namespace

class SaveCalls : public SaveFaultTest {
protected:
    /// Lets one call of a save fail, looks at the copy, and returns the call. Attributes and rights that cannot be
    /// asked or set are those of a new file.
    SystemCall FailOne(std::size_t failing, DWORD error, DWORD nAtMost = Fate().nAtMost) {
        SystemCall failed;
        const int32_t status = SaveWatched([&](std::size_t number, const SystemCall& call) {
            if (number == failing) {
                failed = call;
            }
            return Fate{number == failing ? error : 0, false, nAtMost};
        });
        SCOPED_TRACE(Describe(failed) + ": " + std::to_string(error));
        ExpectWholeAfter(status, !IsForAttributes(failed), !IsForRights(failed));
        return failed;
    }
};

TEST_F(SaveCalls, AreTheOnesThatTheseTestsKnow) {
    WriteFile(LeftoverPath(), "half a document");
    std::map<std::string, int> counts;
    for (const SystemCall& call : CallsOfASave()) {
        ++counts[call.name];
    }
    for (const char* const name :
         {"CreateFileA", "GetFileType", "GetFileInformationByHandle", "CloseHandle", "CreateFileW",
          "GetFinalPathNameByHandleW", "FindFirstFileW", "FindNextFileW", "FindClose", "WriteFile",
          "GetFileAttributesW", "SetFileAttributesW", "BCryptGenRandom", "SetFileInformationByHandle",
          "GetFileSecurityW", "FlushFileBuffers", "MoveFileExW"}) {
        EXPECT_GE(counts[name], 1) << name;
    }
    EXPECT_EQ(counts["WriteFile"], 1) << "the whole document at once";
    EXPECT_EQ(counts["MoveFileExW"], 1);
    EXPECT_EQ(counts["DeleteFileW"], 0);
}

TEST_F(SaveCalls, FailingOneByOneLeaveAWholeDocumentAndNothingBesideIt) {
    int failures = 0;
    for (const DWORD nAtMost : {Fate().nAtMost, static_cast<DWORD>(m_strNew.size() / 4)}) {
        const std::size_t count = CallsOfASave(nAtMost).size();
        for (const DWORD error : kErrors) {
            for (std::size_t failing = 0; failing < count; ++failing) {
                RestoreCopy();
                const std::string failed = Describe(FailOne(failing, error, nAtMost));
                EXPECT_EQ(Names(), kCopyAlone) << failed;
                ExpectNextSaveToWork();
                ++failures;
                ASSERT_FALSE(HasFailure()) << failed;
            }
        }
    }
    std::printf("%d calls failed, one by one\n", failures);
}

TEST_F(SaveCalls, FailingOneByOneLeaveNoMoreThanTheFileOfAKilledProcess) {
    WriteFile(LeftoverPath(), "half a document");
    const std::size_t count = CallsOfASave().size();
    int failures = 0;
    int leftovers = 0;
    for (const DWORD error : kErrors) {
        for (std::size_t failing = 0; failing < count; ++failing) {
            RestoreCopy();
            WriteFile(LeftoverPath(), "half a document");
            const std::string failed = Describe(FailOne(failing, error));
            std::set<std::wstring> names = Names();
            leftovers += static_cast<int>(names.erase(LeftoverPath().filename().wstring()));
            EXPECT_EQ(names, kCopyAlone) << failed;
            ExpectNextSaveToWork();
            ++failures;
            ASSERT_FALSE(HasFailure()) << failed;
        }
    }
    // Where the save ends before it, or the folder cannot be searched, or the file not be opened, looked at or removed.
    constexpr int kCallsThatKeepIt = 7;
    EXPECT_LE(leftovers, kCallsThatKeepIt * static_cast<int>(std::size(kErrors)));
    std::printf("%d calls failed, one by one, beside the file of a killed process\n", failures);
}

TEST_F(SaveCalls, FailingFromOneOnLeaveAWholeDocument) {
    // A disk that died: the temporary file cannot even be removed. The next save does it.
    const std::size_t count = CallsOfASave().size();
    int failures = 0;
    for (const DWORD error : kErrors) {
        for (std::size_t failing = 0; failing < count; ++failing) {
            RestoreCopy();
            std::string failed;
            const int32_t status = SaveWatched([&](std::size_t number, const SystemCall& call) {
                if (number == failing) {
                    failed = Describe(call);
                }
                // No save makes this many calls: one that does would go on for ever.
                return number > 10 * count ? Fate{0, true} : Fate{number >= failing ? error : 0};
            });
            SCOPED_TRACE(failed + " and all that follow: " + std::to_string(error));
            ExpectWholeAfter(status);
            ExpectNextSaveToWork();
            ++failures;
            ASSERT_FALSE(HasFailure());
        }
    }
    std::printf("%d points from which on every call failed\n", failures);
}

TEST_F(SaveCalls, FailingTwiceLeaveAWholeDocument) {
    const std::size_t count = CallsOfASave().size() + 2;
    int failures = 0;
    for (std::size_t first = 0; first < count; ++first) {
        for (std::size_t second = first + 1; second < count; ++second) {
            RestoreCopy();
            bool bAttributesKept = true;
            bool bRightsKept = true;
            const int32_t status = SaveWatched([&](std::size_t number, const SystemCall& call) {
                const bool bFails = number == first || number == second;
                bAttributesKept = bAttributesKept && !(bFails && IsForAttributes(call));
                bRightsKept = bRightsKept && !(bFails && IsForRights(call));
                return Fate{bFails ? DWORD{ERROR_WRITE_FAULT} : 0};
            });
            SCOPED_TRACE(std::to_string(first) + " and " + std::to_string(second));
            ExpectWholeAfter(status, bAttributesKept, bRightsKept);
            ExpectNextSaveToWork();
            ++failures;
            ASSERT_FALSE(HasFailure());
        }
    }
    std::printf("%d pairs of calls failed\n", failures);
}

TEST_F(SaveCalls, BeforeWhichTheProcessIsKilledLeaveAWholeDocument) {
    const std::vector<SystemCall> calls = CallsOfASave();
    bool bReplaced = false;
    int leftovers = 0;
    for (std::size_t killed = 0; killed < calls.size(); ++killed) {
        RestoreCopy();
        EXPECT_EXIT(SaveWatched([&](std::size_t number, const SystemCall&) {
                        return Fate{0, number == killed};
                    }),
                    ::testing::ExitedWithCode(kKilled), "");
        SCOPED_TRACE("before " + Describe(calls[killed]));
        ExpectWholeAfter(bReplaced ? 0 : 1);
        leftovers += Names() != kCopyAlone ? 1 : 0;
        ExpectNextSaveToWork();
        bReplaced = bReplaced || calls[killed].name == "MoveFileExW";
    }
    std::printf("%d times killed, once before each call; %d temporary files left\n", static_cast<int>(calls.size()),
                leftovers);
}

TEST_F(SaveCalls, ThatRenameAreTriedAgainWhileAnotherProgramHoldsTheFile) {
    for (const DWORD error : {ERROR_ACCESS_DENIED, ERROR_SHARING_VIOLATION}) {
        RestoreCopy();
        int attempts = 0;
        const int32_t status = SaveWatched([&](std::size_t, const SystemCall& call) {
            const bool bFails = call.name == "MoveFileExW" && ++attempts <= 5;
            return Fate{bFails ? error : 0};
        });
        EXPECT_EQ(attempts, 6);
        EXPECT_EQ(status, 0);
        ExpectWholeAfter(status);
    }
}

TEST_F(SaveCalls, ThatRenameAreGivenUpInTheEnd) {
    for (const DWORD error : {ERROR_SHARING_VIOLATION, ERROR_DISK_FULL}) {
        int attempts = 0;
        const int32_t status = SaveWatched([&](std::size_t, const SystemCall& call) {
            const bool bFails = call.name == "MoveFileExW";
            attempts += bFails ? 1 : 0;
            return Fate{bFails ? error : 0};
        });
        EXPECT_EQ(attempts, error == ERROR_DISK_FULL ? 1 : 20) << error;
        EXPECT_EQ(status, 1);
        ExpectWholeAfter(status);
        EXPECT_EQ(Names(), kCopyAlone);
    }
}

TEST_F(SaveCalls, ThatMayNotReplaceTheCopyWriteItInPlace) {
    const int32_t status = SaveWatched([](std::size_t, const SystemCall& call) {
        return Fate{call.name == "MoveFileExW" ? DWORD{ERROR_ACCESS_DENIED} : 0};
    });
    EXPECT_EQ(status, 0);
    ExpectWholeAfter(status);
    EXPECT_EQ(Names(), kCopyAlone);
}

TEST_F(SaveCalls, MakeTheTemporaryFileForItsOwnerAloneWhereTheRightsCannotBeHad) {
    std::wstring rights;
    EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                  if (call.name.starts_with("ConvertString")) {
                      rights = call.path;
                  }
                  return Fate{call.name == "GetFileSecurityW" ? DWORD{ERROR_ACCESS_DENIED} : 0};
              }),
              0);
    EXPECT_TRUE(rights.starts_with(L"D:P(A;;FA;;;S-1-5-21-")) << "one user, and nothing from the folder";
    EXPECT_EQ(std::count(rights.begin(), rights.end(), L'('), 1);
    ExpectWholeAfter(0, true, false);
}

TEST_F(SaveCalls, WithoutRightsForANewFileFailTheSave) {
    EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                  const bool bFails = call.name == "GetFileSecurityW" || call.name.starts_with("ConvertString");
                  return Fate{bFails ? DWORD{ERROR_NOT_ENOUGH_MEMORY} : 0};
              }),
              1);
    ExpectWholeAfter(1);
}

TEST_F(SaveCalls, WithoutRightsAndANameForTheirUserMakeNoFileThatOthersMayOpen) {
    for (const char* const name : {"OpenProcessToken", "GetTokenInformation", "ConvertSidToStringSidW"}) {
        std::wstring rights = L"none";
        EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                      if (call.name.starts_with("ConvertStringSecurity")) {
                          rights = call.path;
                      }
                      const bool bFails = call.name == "GetFileSecurityW" || call.name == name;
                      return Fate{bFails ? DWORD{ERROR_ACCESS_DENIED} : 0};
                  }),
                  1)
            << name;
        EXPECT_EQ(rights, L"D:P(A;;FA;;;)") << name;
        ExpectWholeAfter(1);
        EXPECT_EQ(Names(), kCopyAlone);
    }
}

TEST_F(SaveCalls, NameTheirTemporaryFilesAsNobodyCanForesee) {
    std::set<std::wstring> names;
    for (int save = 0; save < 10; ++save) {
        for (const SystemCall& call : CallsOfASave()) {
            if (call.bCreates) {
                names.insert(fs::path(call.path).filename().wstring());
            }
        }
    }
    EXPECT_EQ(names.size(), 10u);
    for (const std::wstring& name : names) {
        EXPECT_EQ(name.size(), std::wstring_view(L"~cordelbox-0123456789abcdef.tmp").size());
    }
}

TEST_F(SaveCalls, ThatWriteByteByByteWriteTheWholeDocument) {
    EXPECT_EQ(SaveWatched([](std::size_t, const SystemCall&) { return Fate{0, false, 1}; }), 0);
    ExpectWholeAfter(0);
}

TEST_F(SaveCalls, ThatWriteNothingFailTheSave) {
    // As a full disk does that reports no error.
    EXPECT_EQ(SaveWatched([](std::size_t, const SystemCall&) { return Fate{0, false, 0}; }), 1);
    ExpectWholeAfter(1);
    EXPECT_EQ(Names(), kCopyAlone);
}

TEST_F(SaveCalls, ThatCannotFlushFailTheSave) {
    EXPECT_EQ(SaveWatched([](std::size_t, const SystemCall& call) {
                  return Fate{call.name == "FlushFileBuffers" ? DWORD{ERROR_WRITE_FAULT} : 0};
              }),
              1);
    ExpectWholeAfter(1);
}

TEST_F(SaveCalls, ThatAskForTheAttributesInVainHideNothing) {
    ::SetFileAttributesW(UserMainPath().c_str(), FILE_ATTRIBUTE_NORMAL);
    EXPECT_EQ(SaveWatched([](std::size_t, const SystemCall& call) {
                  return Fate{call.name == "GetFileAttributesW" ? DWORD{ERROR_ACCESS_DENIED} : 0};
              }),
              0);
    EXPECT_EQ(::GetFileAttributesW(UserMainPath().c_str()) & (FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM), 0u);
}

TEST_F(SaveCalls, DoNotSetRightsThatANewFileHasAnyway) {
    fs::remove(UserMainPath());
    WriteFile(UserMainPath(), m_strOld);
    for (const SystemCall& call : CallsOfASave()) {
        EXPECT_NE(call.name, "SetFileSecurityW");
    }
}

TEST_F(SaveCalls, RemoveTheFilesOfSeveralKilledProcesses) {
    WriteFile(LeftoverPath(), "half a document");
    WriteFile(LeftoverPath().replace_filename("~cordelbox-1-2.tmp"), "half a document");
    WriteFile(LeftoverPath().replace_filename("~cordelbox-22-1.tmp"), "");
    EXPECT_EQ(Save(), 0);
    EXPECT_EQ(Names(), kCopyAlone);
}

TEST_F(SaveCalls, LeaveALinkOrAFolderAloneThatIsNamedLikeALeftover) {
    for (const DWORD attribute : {FILE_ATTRIBUTE_REPARSE_POINT, FILE_ATTRIBUTE_DIRECTORY}) {
        WriteFile(LeftoverPath(), "half a document");
        bool bLooksForLeftovers = false;
        EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                      bLooksForLeftovers =
                          call.name == "FindFirstFileW" || (bLooksForLeftovers && call.name != "FindClose");
                      Fate fate;
                      fate.nAttributes = bLooksForLeftovers ? attribute : 0;
                      return fate;
                  }),
                  0);
        EXPECT_EQ(ReadFile(LeftoverPath()), "half a document") << attribute;
        EXPECT_EQ(Save(), 0);
        EXPECT_EQ(Names(), kCopyAlone);
    }
}

TEST_F(SaveCalls, NeverTouchTheCopyItselfButToReplaceIt) {
    for (const SystemCall& call : CallsOfASave()) {
        if (fs::path(call.path).filename() == UserMainPath().filename()) {
            EXPECT_TRUE(call.name != "WriteFile" && call.name != "SetEndOfFile" && call.name != "DeleteFileW" &&
                        call.name != "SetFileAttributesW" && call.name != "SetFileSecurityW" && !call.bCreates)
                << call.name;
        }
    }
}

TEST_F(SaveCalls, FlushTheDocumentBeforeItTakesItsPlace) {
    std::string order;
    for (const SystemCall& call : CallsOfASave()) {
        if (call.name == "WriteFile" || call.name == "FlushFileBuffers" || call.name == "MoveFileExW") {
            order += call.name + " ";
        }
    }
    EXPECT_EQ(order, "WriteFile FlushFileBuffers MoveFileExW ");
}

TEST_F(SaveCalls, ThatFailAreNamedInTheReasonWithTheirError) {
    const auto reasonWith = [](const std::string& failing, bool bCreates) {
        const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            return Fate{call.name == failing && call.bCreates == bCreates ? DWORD{ERROR_DISK_FULL} : 0};
        });
        return State().currentDocument->Save().m_reason;
    };
    const std::pair<const char*, const char*> calls[] = {
        {"WriteFile", "WriteFile"}, {"FlushFileBuffers", "FlushFileBuffers"}, {"MoveFileExW", "MoveFileEx"}};
    for (const auto& [name, said] : calls) {
        const CReason reason = reasonWith(name, false);
        EXPECT_STREQ(reason.m_pCall, said);
        EXPECT_EQ(reason.m_nError, DWORD{ERROR_DISK_FULL}) << name;
    }
    const CReason creating = reasonWith("CreateFileW", true);
    EXPECT_STREQ(creating.m_pCall, "CreateFile");
    EXPECT_EQ(creating.m_nError, DWORD{ERROR_DISK_FULL});
    const CReason chance = reasonWith("BCryptGenRandom", false);
    EXPECT_STREQ(chance.m_pCall, "CreateFile");
    EXPECT_EQ(chance.m_nError, DWORD{ERROR_GEN_FAILURE}) << "no name for the file";
}

TEST_F(SaveCalls, ThatAskForTheRightsInVainAtEitherTimeWorkWithoutThem) {
    for (const int failing : {1, 2}) {
        RestoreCopy();
        int asked = 0;
        EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                      const bool bFails = call.name == "GetFileSecurityW" && ++asked == failing;
                      return Fate{bFails ? DWORD{ERROR_ACCESS_DENIED} : 0};
                  }),
                  0);
        ExpectWholeAfter(0, true, false);
    }
}

TEST_F(SaveCalls, SetTheRightsWhereTheNewFileMayLackThem) {
    int asked = 0;
    int set = 0;
    EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                  asked += call.name == "GetFileSecurityW" ? 1 : 0;
                  set += call.name == "SetFileSecurityW" ? 1 : 0;
                  return Fate{call.name == "GetFileSecurityW" && asked > 2 ? DWORD{ERROR_ACCESS_DENIED} : 0};
              }),
              0);
    EXPECT_EQ(set, 1);
    ExpectWholeAfter(0);
}

TEST_F(SaveCalls, KeepEachAttributeThatMeansSomething) {
    for (const DWORD attribute : {FILE_ATTRIBUTE_HIDDEN, FILE_ATTRIBUTE_SYSTEM, FILE_ATTRIBUTE_NOT_CONTENT_INDEXED}) {
        ::SetFileAttributesW(UserMainPath().c_str(), attribute);
        const DWORD before = ::GetFileAttributesW(UserMainPath().c_str()) & attribute; // not every file system has it
        EXPECT_EQ(Save(), 0);
        EXPECT_EQ(::GetFileAttributesW(UserMainPath().c_str()) & attribute, before) << attribute;
    }
    ::SetFileAttributesW(UserMainPath().c_str(), FILE_ATTRIBUTE_NORMAL);
    for (const SystemCall& call : CallsOfASave()) {
        EXPECT_NE(call.name, "SetFileAttributesW") << "of a file without any";
    }
}

TEST_F(SaveCalls, LookAtSoManyLeftoversAtMost) {
    WriteFile(LeftoverPath(), "half a document");
    int looked = 0;
    EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                  looked += call.name == "CreateFileW" && fs::path(call.path).filename() == LeftoverPath().filename();
                  Fate fate;
                  fate.bRepeats = call.name == "FindNextFileW";
                  return fate;
              }),
              0);
    EXPECT_EQ(looked, 4096);
}

TEST_F(SaveCalls, WaitAMomentBetweenTwoAttemptsToRename) {
    const DWORD before = WaitedMilliseconds();
    int attempts = 0;
    SaveWatched([&](std::size_t, const SystemCall& call) {
        return Fate{call.name == "MoveFileExW" && ++attempts <= 5 ? DWORD{ERROR_SHARING_VIOLATION} : 0};
    });
    EXPECT_EQ(WaitedMilliseconds() - before, 5u * 10);
}

TEST_F(SaveCalls, CloseAndFreeWhatTheyHaveOpenedAndMade) {
    const int before = SystemBlocks();
    std::size_t opened = 0;
    std::size_t closed = 0;
    EXPECT_EQ(SaveWatched([&](std::size_t, const SystemCall& call) {
                  opened += call.name.starts_with("CreateFile") ? 1 : 0;
                  closed += call.name == "CloseHandle" ? 1 : 0;
                  return Fate{call.name == "GetFileSecurityW" ? DWORD{ERROR_ACCESS_DENIED} : 0};
              }),
              0);
    EXPECT_EQ(closed, opened + 1) << "the files, and the user of this process";
    EXPECT_EQ(SystemBlocks(), before);
}
