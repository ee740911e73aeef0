// Several processes save one document at the same time, while others read it.

#include "fault_document.h"
#include "safe_save.h"
#include "system_calls.h"
#include "text_pieces.h"

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <chrono>
#include <cstdio>

class SaveSharing : public FaultTest {
protected:
    /// Documents that differ from each other in every byte and in length.
    static std::string Text(int writer) {
        return std::string(20000 + 30000 * static_cast<std::size_t>(writer), static_cast<char>('a' + writer));
    }
    static constexpr int kWriters = 4;

    static bool IsWhole(const std::string& bytes) {
        for (int writer = 0; writer < kWriters; ++writer) {
            if (bytes == Text(writer)) {
                return true;
            }
        }
        return false;
    }

    /// Starts the writers; each saves its document for so long, and fails when one of its saves does. The writes take
    /// at most so many bytes at once, which lets the writers come between each other's. In place: no writer can make
    /// a temporary file.
    std::array<pid_t, kWriters> StartWriters(std::chrono::milliseconds duration, std::size_t nAtMost,
                                             bool bInPlace = false) {
        WriteBytes(CopyPath(), Text(0));
        std::array<pid_t, kWriters> children{};
        for (int writer = 0; writer < kWriters; ++writer) {
            children[static_cast<std::size_t>(writer)] = ::fork();
            if (children[static_cast<std::size_t>(writer)] == 0) {
                const std::string text = Text(writer);
                bool bAll = true;
                CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                    return Fate{bInPlace && call.bCreates ? EACCES : 0, false, nAtMost};
                });
                const auto end = std::chrono::steady_clock::now() + duration;
                while (std::chrono::steady_clock::now() < end) {
                    bAll = platform::ReplaceContents(CopyPath().c_str(), InPieces(text)) && bAll;
                }
                ::_exit(bAll ? 0 : 1);
            }
        }
        return children;
    }

    static void ExpectAllDone(const std::array<pid_t, kWriters>& children) {
        for (const pid_t child : children) {
            int status = -1;
            EXPECT_EQ(::waitpid(child, &status, 0), child);
            EXPECT_EQ(status, 0) << "a save failed";
        }
    }
};

TEST_F(SaveSharing, AReaderSeesOnlyWholeDocuments) {
    const auto children = StartWriters(std::chrono::milliseconds(1000), 50000);
    int reads = 0;
    siginfo_t ended{};
    for (; ended.si_pid == 0; ++reads) {
        ASSERT_TRUE(IsWhole(ReadBytes(CopyPath())));
        ASSERT_EQ(::waitid(P_PID, static_cast<id_t>(children[kWriters - 1]), &ended, WEXITED | WNOHANG | WNOWAIT), 0);
    }
    ExpectAllDone(children);
    EXPECT_TRUE(IsWhole(ReadBytes(CopyPath())));
    EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
    std::printf("%d reads while %d processes saved\n", reads, kWriters);
}

TEST_F(SaveSharing, InPlaceTheLastOneLeavesAWholeDocument) {
    for (int round = 0; round < 20; ++round) {
        ExpectAllDone(StartWriters(std::chrono::milliseconds(20), 5000, true));
        const std::string bytes = ReadBytes(CopyPath());
        ASSERT_TRUE(IsWhole(bytes)) << bytes.size() << " bytes from " << bytes.front() << " to " << bytes.back();
    }
}
