// A host that has closed its standard streams: nothing that it prints to them may reach a file of the library's.

#include "fault_document.h"
#include "store/document_pool.h"
#include "system_calls.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr int kStreams[] = {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO};

/// Whether anything could be read from or written to that descriptor.
bool IsInUse(int stream) {
    const int flags = ::fcntl(stream, F_GETFL);
    return flags >= 0 && (flags & O_PATH) == 0;
}

bool AnyIsInUse() {
    for (const int stream : kStreams) {
        if (IsInUse(stream)) {
            return true;
        }
    }
    return false;
}

/// As the host left them.
bool AllAreClosed() {
    for (const int stream : kStreams) {
        if (::fcntl(stream, F_GETFD) >= 0) {
            return false;
        }
    }
    return true;
}

/// Runs the work in a process of its own. True when the work says so.
template <class Work>
bool HoldsInAProcess(Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(work() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status == 0;
}

} // namespace

class StandardStreams : public CWithEachSize<FaultTest> {};

INSTANTIATE_TEST_SUITE_P(Of, StandardStreams, EachSize(), SizeName);

TEST_P(StandardStreams, ThatAreClosedAreNoFileOfASaveAtAnyCall) {
    EXPECT_TRUE(HoldsInAProcess([&] {
        bool bTaken = false;
        for (const int stream : kStreams) {
            ::close(stream);
        }
        const CSystemCallWatch watch([&](std::size_t, const SystemCall&) {
            bTaken = bTaken || AnyIsInUse();
            return Fate{};
        });
        return Save() == 0 && !bTaken && AllAreClosed();
    }));
    EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
}

TEST_P(StandardStreams, ThatAreClosedAreNoFileOfALoadAtAnyCall) {
    EXPECT_TRUE(HoldsInAProcess([&] {
        bool bTaken = false;
        ReleaseDocument(&m_owner, "Cordelbox\\xml\\Faults.xml");
        for (const int stream : kStreams) {
            ::close(stream);
        }
        const CSystemCallWatch watch([&](std::size_t, const SystemCall&) {
            bTaken = bTaken || AnyIsInUse();
            return Fate{};
        });
        return OpenDocument(&m_owner, "Cordelbox\\xml\\Faults.xml") != nullptr && !bTaken && AllAreClosed();
    }));
}

TEST_P(StandardStreams, ThatAreClosedWhileAFileIsOpenedAreNoneWhenItIsWritten) {
    for (const int stream : kStreams) {
        RestoreCopy();
        EXPECT_TRUE(HoldsInAProcess([&] {
            bool bTaken = false;
            const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                if (call.bCreates) {
                    ::close(stream);
                }
                bTaken = bTaken || (call.name == "write" && IsInUse(stream));
                return Fate{};
            });
            return Save() == 0 && !bTaken;
        })) << stream;
        EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
    }
}
