// The process is killed: before each call of a save in turn, and at random moments besides.

#include "fault_document.h"
#include "safe_save.h"
#include "system_calls.h"
#include "text_pieces.h"

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <random>

namespace {

/// True when the child ended by itself, and not by a kill.
bool Ended(pid_t child) {
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE((WIFEXITED(status) && WEXITSTATUS(status) == 0) || (WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL))
        << status;
    return WIFEXITED(status);
}

template <class Work>
pid_t StartChild(Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        work();
        ::_exit(0);
    }
    return child;
}

} // namespace

class SaveKill : public FaultTest {
protected:
    explicit SaveKill(DocumentSize size = DocumentSize::Everyday) : FaultTest(size) {}

    void ExpectNextSaveToRemoveWhatWasLeft() {
        ASSERT_EQ(Save(), 0);
        EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
        EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
        EXPECT_TRUE(CopyIsWhole());
    }
};

class EachSaveKill : public CWithEachSize<SaveKill> {};
INSTANTIATE_TEST_SUITE_P(Of, EachSaveKill, EachSize(), SizeName);

TEST_P(EachSaveKill, BeforeEachCallLeavesAWholeDocument) {
    int kills = 0;
    int leftBehind = 0;
    int replaced = 0;
    for (const std::size_t nAtMost : {std::size_t(-1), m_strNew.size() / 10}) {
        for (std::size_t killing = 0;; ++killing) {
            RestoreCopy();
            const pid_t child = StartChild([&] {
                CSystemCallWatch watch([&](std::size_t number, const SystemCall&) {
                    return Fate{0, number == killing, nAtMost};
                });
                Save();
            });
            if (Ended(child)) {
                break; // there was no such call any more
            }
            SCOPED_TRACE("killed before call " + std::to_string(killing));
            ++kills;
            leftBehind += Names().size() > 1 ? 1 : 0;
            replaced += Holds(CopyPath(), m_strNew) ? 1 : 0;
            ASSERT_TRUE(CopyIsWhole());
            ExpectNextSaveToRemoveWhatWasLeft();
        }
    }
    EXPECT_GT(leftBehind, 0) << "no kill hit a save while it wrote";
    EXPECT_GT(replaced, 0) << "no kill hit a save after it replaced the copy";
    EXPECT_LT(replaced, kills);
    std::printf("%d kills, %d of them left a temporary file\n", kills, leftBehind);
}

TEST_F(SaveKill, AtRandomMomentsLeavesAWholeDocument) {
    // Long enough that most kills hit a save, and two texts that differ everywhere and in length.
    const std::string first(300000, 'a');
    const std::string second(200000, 'b');
    std::mt19937 random(20250101);
    constexpr int kKills = 400;
    int leftBehind = 0;
    WriteBytes(CopyPath(), first);
    for (int kill = 0; kill < kKills; ++kill) {
        int ready[2];
        ASSERT_EQ(::pipe(ready), 0);
        const pid_t child = StartChild([&] {
            if (::write(ready[1], "!", 1) != 1) {
                return;
            }
            for (;;) {
                platform::ReplaceContents(CopyPath().c_str(), InPieces(second));
                platform::ReplaceContents(CopyPath().c_str(), InPieces(first));
            }
        });
        char byte = 0;
        ASSERT_EQ(::read(ready[0], &byte, 1), 1);
        ::usleep(static_cast<useconds_t>(random() % 6000));
        ::kill(child, SIGKILL);
        EXPECT_FALSE(Ended(child));
        ::close(ready[0]);
        ::close(ready[1]);
        leftBehind += Names().size() > 1 ? 1 : 0;
        const std::string bytes = ReadBytes(CopyPath());
        ASSERT_TRUE(bytes == first || bytes == second) << "after kill " << kill << ": " << bytes.size() << " bytes";
    }
    EXPECT_GT(leftBehind, kKills / 20) << "hardly any kill hit a save while it wrote";
    ExpectNextSaveToRemoveWhatWasLeft();
    std::printf("%d kills, %d of them left a temporary file\n", kKills, leftBehind);
}
