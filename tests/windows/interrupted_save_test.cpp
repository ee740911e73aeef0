// A process that is killed while it saves leaves the old document or the new one.

#include "host_test.h"

#include <array>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

namespace fs = std::filesystem;

namespace {

/// The host that saves without end, as a process that can be killed.
class CSaver {
public:
    CSaver() {
        SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
        HANDLE hOutput = nullptr;
        if (::CreatePipe(&m_hInput, &hOutput, &inherited, 0) == FALSE) {
            throw std::runtime_error("no pipe");
        }
        STARTUPINFOW startup{};
        startup.cb = sizeof startup;
        startup.dwFlags = STARTF_USESTDHANDLES;
        startup.hStdOutput = hOutput;
        const std::wstring program = (InstallFolder() / "endless_saver.exe").wstring();
        PROCESS_INFORMATION process{};
        bool started = false;
        for (int attempts = 0; attempts < 3 && !started; ++attempts) { // Wine cannot always on a busy machine
            started = ::CreateProcessW(program.c_str(), nullptr, nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup,
                                       &process) != FALSE;
        }
        const DWORD error = ::GetLastError();
        ::CloseHandle(hOutput);
        if (!started) {
            throw std::system_error(static_cast<int>(error), std::system_category(), "no process");
        }
        ::CloseHandle(process.hThread);
        m_hProcess = process.hProcess;
    }
    ~CSaver() {
        Kill();
        ::CloseHandle(m_hProcess);
        ::CloseHandle(m_hInput);
    }
    CSaver(const CSaver&) = delete;
    CSaver& operator=(const CSaver&) = delete;

    /// Returns when the document is open and the saves begin.
    void AwaitFirstSave() const {
        std::array<char, 16> line;
        DWORD count = 0;
        if (::ReadFile(m_hInput, line.data(), static_cast<DWORD>(line.size()), &count, nullptr) == FALSE) {
            throw std::runtime_error("the saver does not start");
        }
    }
    void Kill() const {
        ::TerminateProcess(m_hProcess, 1);
        ::WaitForSingleObject(m_hProcess, INFINITE);
    }

private:
    HANDLE m_hInput = nullptr;
    HANDLE m_hProcess = nullptr;
};

std::string LargeDocument() {
    std::string files;
    for (int i = 0; i < 4000; ++i) {
        files += "<Item FileID=\"" + std::to_string(i) + "\" LocalPath=\"C:\\Fonts\\A file with a long name.ttf\"/>";
    }
    return Document("<Counter><Item Value=\"0\"/></Counter><Files>" + files + "</Files>");
}

std::size_t FilesIn(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

} // namespace

class InterruptedSave : public HostTest {};

TEST_F(InterruptedSave, LeavesAWholeDocument) {
    constexpr int kKills = 200;
    constexpr DWORD kLongestWait = 40; // milliseconds; some saves
    InstallMain(LargeDocument());
    CopyMainForUser(LargeDocument());
    InstallStrings("English", Document(""));
    std::mt19937 random(20);
    unsigned long lastValue = 0;
    int leftovers = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        {
            CSaver saver;
            saver.AwaitFirstSave();
            ::Sleep(random() % kLongestWait);
        }
        leftovers += FilesIn(UserMainPath().parent_path()) > 1 ? 1 : 0;
        const Records counter = SavedItems("Counter");
        ASSERT_EQ(counter.size(), 1u) << "after kill " << kill;
        ASSERT_EQ(SavedItems("Files").size(), 4000u) << "after kill " << kill;
        lastValue = std::stoul(counter[0][0].second);
    }
    EXPECT_GT(lastValue, 0u) << "no save was ever complete";
    RecordProperty("TemporaryFilesLeftByKills", leftovers);

    Open();
    WriteAttr("Counter", "Value", "after");
    EXPECT_EQ(SavedItems("Counter"), (Records{Record{{"Value", "after"}}}));
    EXPECT_EQ(FilesIn(UserMainPath().parent_path()), 1u) << "a temporary file is left behind";
}
