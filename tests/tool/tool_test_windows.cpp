// Starts cordelctl as Windows starts a program. The per-user copies lie where the system has them: tests run one at a
// time.

#include "tool_test.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <shlobj.h>

namespace {

std::wstring Widen(const std::string& utf8) {
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

/// One word of a command line, as programs take it apart again.
std::wstring Quoted(const std::wstring& word) {
    std::wstring quoted = L"\"";
    std::size_t backslashes = 0;
    for (const wchar_t c : word) {
        if (c == L'"') {
            quoted.append(backslashes + 1, L'\\'); // those before a quote count twice, and it needs one
        }
        backslashes = c == L'\\' ? backslashes + 1 : 0;
        quoted += c;
    }
    return quoted.append(backslashes, L'\\') + L"\"";
}

HANDLE Open(const std::filesystem::path& path, DWORD access, DWORD disposition) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(path.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, &inherited,
                       disposition, FILE_ATTRIBUTE_NORMAL, nullptr);
}

} // namespace

// Beside this program, which runs from a folder for its code page alone.
std::filesystem::path ToolTest::NewFolder() {
    static int number = 0;
    wchar_t program[MAX_PATH];
    GetModuleFileNameW(nullptr, program, MAX_PATH);
    const auto folder = std::filesystem::path(program).parent_path() / "run" / std::to_string(++number);
    std::error_code none; // of a run that was ended
    std::filesystem::remove_all(folder, none);
    return folder;
}

std::filesystem::path ToolTest::ToolPath() const { return InstallFolder() / "cordelctl.exe"; }

std::filesystem::path ToolTest::UserFolder() const {
    wchar_t path[MAX_PATH];
    return SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, TRUE) ? path : std::filesystem::path();
}

int ToolTest::RunProgram(const std::vector<std::string>& arguments, const std::filesystem::path& input,
                         const std::filesystem::path& output, const std::filesystem::path& errors) const {
    std::wstring line = Quoted(ToolPath().wstring());
    for (const std::string& argument : arguments) {
        line += L" " + Quoted(Widen(argument));
    }
    STARTUPINFOW start{};
    start.cb = sizeof start;
    start.dwFlags = STARTF_USESTDHANDLES;
    start.hStdInput = Open(input, GENERIC_READ, OPEN_EXISTING);
    start.hStdOutput = Open(output, GENERIC_WRITE, CREATE_ALWAYS);
    start.hStdError = Open(errors, GENERIC_WRITE, CREATE_ALWAYS);
    PROCESS_INFORMATION process{};
    DWORD status = 127;
    bool bStarted = false;
    for (int attempts = 0; attempts < 3 && !bStarted; ++attempts) { // Wine cannot always on a busy machine
        bStarted = CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, DETACHED_PROCESS, nullptr, nullptr,
                                  &start, &process) != FALSE;
    }
    if (bStarted) {
        WaitForSingleObject(process.hProcess, INFINITE);
        GetExitCodeProcess(process.hProcess, &status);
        CloseHandle(process.hProcess);
        CloseHandle(process.hThread);
    } else {
        ADD_FAILURE() << "cordelctl does not start: error " << GetLastError();
    }
    for (const HANDLE stream : {start.hStdInput, start.hStdOutput, start.hStdError}) {
        CloseHandle(stream);
    }
    return static_cast<int>(status);
}
