// Where the folder takes no new file, the copy is written in place: only there, since a save in place is not safe from
// being cut short.

#include "fault_document.h"
#include "system_calls.h"

#include <cerrno>
#include <cstring>
#include <filesystem>

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
