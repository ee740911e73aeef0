// What the library does where its surroundings lack something that is always there: a semaphore, a locale, a folder of
// the host's own. This program defines the functions that tell.

#include "fault_document.h"
#include "nodes/node_writers.h"
#include "platform/code_page.h"
#include "platform/folders.h"
#include "platform/random.h"
#include "platform/semaphore.h"
#include "real_function.h"
#include "store/document_paths.h"
#include "store/document_pool.h"
#include "store/module_state.h"
#include "store/node_readers.h"
#include "store/xml_object.h"
#include "system_calls.h"

#include <fcntl.h>
#include <locale.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <set>
#include <string>
#include <utility>
#include <vector>

namespace {

int g_nNewSemaphoreError = 0;
int g_nWaitError = 0;
int g_nWaitsFailing = 0;
bool g_bNoLocale = false;

} // namespace

extern "C" {

int sem_init(sem_t* semaphore, int shared, unsigned value) noexcept {
    static const auto real = Real<int (*)(sem_t*, int, unsigned)>("sem_init");
    errno = g_nNewSemaphoreError;
    return g_nNewSemaphoreError != 0 ? -1 : real(semaphore, shared, value);
}

int sem_wait(sem_t* semaphore) {
    static const auto real = Real<int (*)(sem_t*)>("sem_wait");
    if (g_nWaitsFailing == 0) {
        return real(semaphore);
    }
    --g_nWaitsFailing;
    errno = g_nWaitError;
    return -1;
}

locale_t newlocale(int mask, const char* name, locale_t base) noexcept {
    static const auto real = Real<locale_t (*)(int, const char*, locale_t)>("newlocale");
    return g_bNoLocale ? nullptr : real(mask, name, base);
}

} // extern "C"

namespace {

/// Documents are made without a semaphore.
class CNoSemaphores {
public:
    CNoSemaphores() { g_nNewSemaphoreError = ENOSPC; }
    ~CNoSemaphores() { g_nNewSemaphoreError = 0; }
    CNoSemaphores(const CNoSemaphores&) = delete;
    CNoSemaphores& operator=(const CNoSemaphores&) = delete;
};

class Surroundings : public FaultTest {
protected:
    ~Surroundings() override { ::setenv("HOME", m_strHome.c_str(), 1); }

private:
    const std::string m_strHome = std::getenv("HOME") != nullptr ? std::getenv("HOME") : "/";
};

} // namespace

TEST_F(Surroundings, WithoutASemaphoreNoDocumentIsOpened) {
    const CNoSemaphores none;
    EXPECT_EQ(platform::NewSemaphore(), nullptr);
    EXPECT_EQ(OpenDocument(&m_owner, "Cordelbox\\xml\\Other.xml"), nullptr);
    EXPECT_EQ(m_owner.head->document, m_pDocument) << "the one that was open before";
    EXPECT_EQ(m_owner.head->next, nullptr);
}

TEST_F(Surroundings, ADocumentWithoutASemaphoreTakesNoOperation) {
    const CNoSemaphores none;
    CXmlObject document;
    EXPECT_EQ(document.Open("Cordelbox\\xml\\Faults.xml"), 1);
    EXPECT_EQ(document.ReleaseReference(), 1);
    EXPECT_EQ(document.Save().m_what, What::NoDocument);
    State().currentDocument = &document;
    CXmlQuery query("Files", "ID", "x");
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 1);
    EXPECT_EQ(ReadAttribute(&document, &query), 1);
    SaveCurrentDocument();
    EXPECT_EQ(ReadBytes(CopyPath()), m_strOld);
    State().currentDocument = m_pDocument;
}

TEST_F(Surroundings, AnInterruptedWaitForALockGoesOn) {
    g_nWaitError = EINTR;
    g_nWaitsFailing = 3;
    CXmlQuery query("Files", "ID");
    query.AddPair("FileID", "3");
    EXPECT_EQ(ReadAttribute(m_pDocument, &query), 0);
    EXPECT_EQ(query.FirstValue(), "21");
    EXPECT_EQ(g_nWaitsFailing, 0);
}

TEST_F(Surroundings, ALockThatIsNoneIsNotWaitedForForever) {
    // A host that hands in something else than a semaphore.
    g_nWaitError = EINVAL;
    g_nWaitsFailing = 1;
    platform::Wait(m_owner.semaphore);
    EXPECT_EQ(g_nWaitsFailing, 0);
}

TEST_F(Surroundings, WithoutALocaleOfUnicodeLettersAreFoldedAllTheSame) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a process of its own: nothing may have been asked for before
    const auto fold = [] {
        g_bNoLocale = true;
        const bool bAscii = platform::EqualIgnoringCase("path A", "PATH a");
        const bool bOther = platform::EqualIgnoringCase("\xC3\x84", "\xC3\xA4");
        std::exit(bAscii && bOther ? 0 : 1);
    };
    EXPECT_EXIT(fold(), ::testing::ExitedWithCode(0), "");
}

/// Asks for the host's folder in a process of its own, where nobody asked before, while the host's path is each of
/// these in turn; ends with 0 when the answers are as expected.
void AskForHostFolder(const std::vector<std::pair<std::string, std::string>>& pathsAndFolders) {
    bool bAsExpected = true;
    for (const auto& pathAndFolder : pathsAndFolders) {
        const std::string& path = pathAndFolder.first;
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            Fate fate;
            fate.answer = call.name == "readlink" ? path : "";
            fate.error = path.empty() ? ENOENT : 0;
            return fate;
        });
        bAsExpected = bAsExpected && platform::HostFolder() == pathAndFolder.second.c_str();
    }
    std::exit(bAsExpected ? 0 : 1);
}

TEST(HostFolder, OfAHostInTheRootFolderIsThatFolder) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(AskForHostFolder({{"/host", "/"}}), ::testing::ExitedWithCode(0), "");
}

TEST(HostFolder, IsNoneWhereThePathIsTooLongOrCannotBeHad) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto ofLength = [](std::size_t length) { return "/host/" + std::string(length - 6, 'h'); };
    EXPECT_EXIT(AskForHostFolder({{"", ""}, {ofLength(260), ""}, {ofLength(300), ""}, {ofLength(259), "/host"}}),
                ::testing::ExitedWithCode(0), "");
}

TEST(HostFolder, ThatIsNoneGivesNoDocumentAPath) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto ask = [] {
        ::setenv("XDG_CONFIG_HOME", "/root of users", 1);
        const CSystemCallWatch watch([](std::size_t, const SystemCall& call) {
            return Fate{call.name == "readlink" ? ENOENT : 0}; // no /proc, say
        });
        const bool bNone = InstallFolderPath("a.xml") == "" && UserCopyPath("/anywhere/a.xml") == "";
        std::exit(bNone ? 0 : 1);
    };
    EXPECT_EXIT(ask(), ::testing::ExitedWithCode(0), "");
}

TEST(HostFolder, StaysTheOneThatTheHostWasStartedInWhenThatIsRenamed) {
    // Else nothing that is open would be found again, and no change of it saved.
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(AskForHostFolder({{"/app/host", "/app"}, {"/app.old/host", "/app"}}), ::testing::ExitedWithCode(0), "");
}

TEST_F(Surroundings, WithoutAHomeThereIsNoFolderForCopies) {
    ::unsetenv("XDG_CONFIG_HOME");
    ::setenv("HOME", "", 1);
    EXPECT_EQ(platform::ApplicationDataFolder(), "");
    ::unsetenv("HOME");
    EXPECT_EQ(platform::ApplicationDataFolder(), "");
    ::setenv("HOME", "home/user", 1);
    EXPECT_EQ(platform::ApplicationDataFolder(), "");
    ::setenv("HOME", "/home/user", 1);
    EXPECT_EQ(platform::ApplicationDataFolder(), "/home/user/.config");
}

TEST_F(Surroundings, WithoutChanceFromTheSystemANumberComesFromTheClock) {
    std::set<std::uint64_t> numbers;
    const CSystemCallWatch watch([](std::size_t, const SystemCall& call) {
        return Fate{call.name == "getrandom" ? EAGAIN : 0}; // early in a start of the system
    });
    for (int round = 0; round < 20; ++round) {
        numbers.insert(platform::RandomNumber());
    }
    EXPECT_GT(numbers.size(), 1u);
}

TEST_F(Surroundings, ANumberIsTheChanceThatTheSystemGives) {
    const CSystemCallWatch watch([](std::size_t, const SystemCall& call) {
        Fate fate;
        fate.answer = call.name == "getrandom" ? "AAAAAAAA" : "";
        return fate;
    });
    EXPECT_EQ(platform::RandomNumber(), 0x4141414141414141u);
}

TEST_F(Surroundings, TheExistenceTestLeavesNoLockToAProcessThatWasBornDuringIt) {
    pid_t child = -1;
    {
        const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            if (call.name == "flock" && child < 0) {
                child = ::fork(); // with the file that is about to be locked
                if (child == 0) {
                    ::pause();
                    ::_exit(0);
                }
            }
            return Fate{};
        });
        EXPECT_TRUE(platform::IsPresentAndWritable(CopyPath().c_str()));
    }
    EXPECT_GT(child, 0);
    const int file = ::open(CopyPath().c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_EQ(::flock(file, LOCK_EX | LOCK_NB), 0);
    ::close(file);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
}
