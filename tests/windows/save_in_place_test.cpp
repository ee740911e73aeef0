// Where the folder takes no new file, the copy is written in place: only there, since a save in place is not safe from
// being cut short.

#include "safe_save.h"
#include "save_fault_test.h"
#include "store/module_state.h"
#include "store/xml_object.h"

namespace fs = std::filesystem;

class SaveInPlace : public SaveFaultTest {
protected:
    /// A save in a folder that refuses a new file with that error; `judge` decides on all other calls.
    int32_t SaveWithoutNewFile(DWORD error, const CSystemCallWatch::Judge& judge = {}) {
        m_bWroteCopy = false;
        return SaveWatched([&](std::size_t number, const SystemCall& call) {
            m_bWroteCopy = m_bWroteCopy || (call.name == "WriteFile" && IsOfCopy(call));
            if (call.bCreates) {
                return Fate{error};
            }
            return judge ? judge(number, call) : Fate();
        });
    }

    bool IsOfCopy(const SystemCall& call) const { return fs::path(call.path).filename() == UserMainPath().filename(); }

    bool m_bWroteCopy = false;
};

TEST_F(SaveInPlace, IsDoneWhereTheFolderTakesNoFile) {
    for (const DWORD error : {ERROR_ACCESS_DENIED, ERROR_PATH_NOT_FOUND, ERROR_FILENAME_EXCED_RANGE}) {
        RestoreCopy();
        EXPECT_EQ(SaveWithoutNewFile(error), 0) << error;
        EXPECT_TRUE(m_bWroteCopy) << error;
        ExpectWholeAfter(0);
        EXPECT_EQ(Names(), kCopyAlone);
    }
}

TEST_F(SaveInPlace, IsNotDoneToAFileThatHasAnotherName) {
    const fs::path other = UserMainPath().parent_path().parent_path() / "other.xml";
    fs::create_hard_link(UserMainPath(), other);
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED), 1);
    EXPECT_FALSE(m_bWroteCopy);
    CReason reason;
    {
        const CSystemCallWatch watch(
            [](std::size_t, const SystemCall& call) { return Fate{call.bCreates ? DWORD{ERROR_ACCESS_DENIED} : 0}; });
        platform::ReplaceContents(UserMainPath().string().c_str(), "new", &reason, [] { return true; });
    }
    EXPECT_EQ(reason.m_kind, ReasonKind::NotPermitted);
    EXPECT_EQ(reason.m_strWords, "the file has other names, and they would lead to it");
    fs::remove(other);
    ExpectWholeAfter(1);
}

TEST_F(SaveInPlace, LooksOnceMoreBeforeTheFirstByte) {
    const std::string path = UserMainPath().string();
    CReason reason;
    bool bReplaced = true;
    {
        const CSystemCallWatch watch(
            [](std::size_t, const SystemCall& call) { return Fate{call.bCreates ? DWORD{ERROR_ACCESS_DENIED} : 0}; });
        bReplaced = platform::ReplaceContents(path.c_str(), "new", &reason, [] { return false; });
    }
    EXPECT_FALSE(bReplaced);
    EXPECT_EQ(reason.m_kind, ReasonKind::Overtaken);
    ExpectWholeAfter(1);
}

TEST_F(SaveInPlace, IsNotDoneForAShortage) {
    for (const DWORD error : {ERROR_DISK_FULL, ERROR_WRITE_FAULT, ERROR_NOT_ENOUGH_MEMORY, ERROR_TOO_MANY_OPEN_FILES,
                              ERROR_SHARING_VIOLATION, ERROR_FILE_EXISTS}) {
        EXPECT_EQ(SaveWithoutNewFile(error), 1) << error;
        EXPECT_FALSE(m_bWroteCopy) << error;
        ExpectWholeAfter(1);
    }
}

TEST_F(SaveInPlace, LeavesTheCopyAloneWhenThereIsNoSpace) {
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED,
                                 [](std::size_t, const SystemCall& call) {
                                     return Fate{call.name == "SetEndOfFile" ? DWORD{ERROR_DISK_FULL} : 0};
                                 }),
              1);
    EXPECT_FALSE(m_bWroteCopy);
    ExpectWholeAfter(1);
}

TEST_F(SaveInPlace, TakesBackSpaceThatWasReservedInPart) {
    // The file has grown already when it turns out that there is no more space.
    int reservations = 0;
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED,
                                 [&](std::size_t, const SystemCall& call) {
                                     const bool bFails = call.name == "SetEndOfFile" && ++reservations == 1;
                                     return Fate{bFails ? DWORD{ERROR_DISK_FULL} : 0, false, Fate().nAtMost, true};
                                 }),
              1);
    EXPECT_EQ(reservations, 2);
    ExpectWholeAfter(1);
}

TEST_F(SaveInPlace, WhoseCallsFailOneByOneBeforeTheFirstByteLeavesTheOldDocument) {
    std::size_t count = 0;
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED,
                                 [&](std::size_t number, const SystemCall& call) {
                                     count = call.name == "WriteFile" ? number + 1 : count;
                                     return Fate();
                                 }),
              0);
    for (const DWORD error : {ERROR_DISK_FULL, ERROR_WRITE_FAULT, ERROR_ACCESS_DENIED, ERROR_NOT_ENOUGH_MEMORY}) {
        for (std::size_t failing = 0; failing < count; ++failing) {
            RestoreCopy();
            std::string failed;
            const int32_t status = SaveWithoutNewFile(error, [&](std::size_t number, const SystemCall& call) {
                failed = number == failing ? call.name : failed;
                return Fate{number == failing ? error : 0};
            });
            SCOPED_TRACE(failed + ": " + std::to_string(error));
            ExpectWholeAfter(status);
            ExpectNextSaveToWork();
        }
    }
}

TEST_F(SaveInPlace, SaysThatItFailedAfterTheFirstByte) {
    std::size_t first = 0;
    std::size_t last = 0;
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED,
                                 [&](std::size_t number, const SystemCall& call) {
                                     first = first == 0 && call.name == "WriteFile" ? number : first;
                                     last = call.name == "FlushFileBuffers" ? number : last;
                                     return Fate{0, false, 1000};
                                 }),
              0);
    ASSERT_GT(last, first + 2) << "some writes, the length, and the flush";
    for (std::size_t failing = first + 1; failing <= last; ++failing) {
        RestoreCopy();
        EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED,
                                     [&](std::size_t number, const SystemCall&) {
                                         return Fate{number == failing ? DWORD{ERROR_DISK_FULL} : 0, false, 1000};
                                     }),
                  1);
        ExpectNextSaveToWork();
    }
}

TEST_F(SaveInPlace, WritesWhatAShortWriteLeft) {
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED,
                                 [](std::size_t, const SystemCall&) {
                                     return Fate{0, false, 100};
                                 }),
              0);
    ExpectWholeAfter(0);
}

TEST_F(SaveInPlace, ReservesItsSpaceBeforeItWritesAndFlushesAfterwards) {
    std::string order;
    SaveWithoutNewFile(ERROR_ACCESS_DENIED, [&](std::size_t, const SystemCall& call) {
        if (IsOfCopy(call) &&
            (call.name == "SetEndOfFile" || call.name == "WriteFile" || call.name == "FlushFileBuffers")) {
            order += call.name + " ";
        }
        return Fate();
    });
    EXPECT_EQ(order, "SetEndOfFile WriteFile SetEndOfFile FlushFileBuffers ");
}

TEST_F(SaveInPlace, MakesTheCopyShorterWhenTheDocumentIs) {
    WriteFile(UserMainPath().parent_path() / "longer.xml", m_strNew + std::string(5000, ' '));
    fs::rename(UserMainPath().parent_path() / "longer.xml", UserMainPath());
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED), 0);
    EXPECT_EQ(UserMainText(), m_strNew);
}

TEST_F(SaveInPlace, AsksForNoSpaceWhereTheLengthStays) {
    WriteFile(UserMainPath(), std::string(m_strNew.size(), ' '));
    std::string order;
    EXPECT_EQ(SaveWithoutNewFile(ERROR_ACCESS_DENIED,
                                 [&](std::size_t, const SystemCall& call) {
                                     if (call.name == "SetEndOfFile" || call.name == "WriteFile") {
                                         order += call.name + " ";
                                     }
                                     return Fate();
                                 }),
              0);
    EXPECT_EQ(order, "WriteFile SetEndOfFile ");
    EXPECT_EQ(UserMainText(), m_strNew);
}

TEST_F(SaveInPlace, NamesTheCallThatFailedWithItsError) {
    std::set<std::string> named;
    for (std::size_t failing = 0;; ++failing) {
        RestoreCopy();
        std::string failed;
        bool bInPlace = false;
        COutcome outcome;
        {
            const CSystemCallWatch watch([&](std::size_t number, const SystemCall& call) {
                bInPlace = bInPlace || call.bCreates;
                if (call.bCreates) {
                    return Fate{ERROR_ACCESS_DENIED};
                }
                failed = number == failing ? call.name : failed;
                return Fate{number == failing ? DWORD{ERROR_DISK_FULL} : 0};
            });
            outcome = State().currentDocument->Save();
        }
        if (failed.empty() && failing > 100) {
            break;
        }
        if (outcome || !bInPlace) {
            continue;
        }
        EXPECT_EQ(outcome.m_reason.m_nError, DWORD{ERROR_DISK_FULL}) << failed;
        const std::string said = outcome.m_reason.m_pCall;
        if (failed != "SetFilePointerEx") { // a part of what is named then
            EXPECT_TRUE(failed.starts_with(said)) << failed << ": " << said;
        }
        named.insert(said);
    }
    EXPECT_EQ(named, (std::set<std::string>{"CreateFile", "FlushFileBuffers", "GetFileInformationByHandle",
                                            "GetFileSizeEx", "SetEndOfFile", "WriteFile"}));
}
