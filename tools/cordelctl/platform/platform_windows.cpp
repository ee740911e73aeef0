// The system as Windows has it. The message box is the system's own, and answered as soon as it opens: at a command
// line nobody waits for it, and its text belongs on standard error.

#include "platform.h"

#include <shlobj.h>

#include <cstdio>
#include <system_error>

namespace platform {

namespace {

std::wstring Widen(UINT codePage, std::string_view text) {
    const int size = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(codePage, 0, text.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(codePage, 0, text.data(), size, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

std::string Narrow(UINT codePage, const std::wstring& wide) {
    const int size = static_cast<int>(wide.size());
    std::string text(
        static_cast<std::size_t>(WideCharToMultiByte(codePage, 0, wide.data(), size, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(codePage, 0, wide.data(), size, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
    return text;
}

std::string TextOfWindow(HWND window) {
    std::string text(static_cast<std::size_t>(GetWindowTextLengthA(window)) + 1, '\0');
    text.resize(static_cast<std::size_t>(GetWindowTextA(window, text.data(), static_cast<int>(text.size()))));
    return text;
}

/// Prints a message box of this thread when it becomes the active window for the first time, and presses its button.
LRESULT CALLBACK AnswerMessageBox(int code, WPARAM window, LPARAM facts) {
    constexpr int kTextItem = 0xFFFF;
    static HWND answered = nullptr;
    const auto box = reinterpret_cast<HWND>(window);
    if (code == HCBT_ACTIVATE && box != answered && GetDlgItem(box, kTextItem) != nullptr) {
        answered = box;
        std::fprintf(stderr, "%s: %s\n", TextOfWindow(box).c_str(), TextOfWindow(GetDlgItem(box, kTextItem)).c_str());
        PostMessageA(box, WM_COMMAND, IDOK, 0);
    }
    return CallNextHookEx(nullptr, code, window, facts);
}

/// Watches this thread for message boxes as long as the program runs.
class CMessageBoxHook {
public:
    CMessageBoxHook() : m_hHook(SetWindowsHookExA(WH_CBT, &AnswerMessageBox, nullptr, GetCurrentThreadId())) {}
    ~CMessageBoxHook() { UnhookWindowsHookEx(m_hHook); }
    CMessageBoxHook(const CMessageBoxHook&) = delete;
    CMessageBoxHook& operator=(const CMessageBoxHook&) = delete;

private:
    const HHOOK m_hHook;
};

const CMessageBoxHook messageBoxHook;

} // namespace

std::filesystem::path ExecutableFolder() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    return length == 0 || length == MAX_PATH ? std::filesystem::path() : std::filesystem::path(path).parent_path();
}

std::filesystem::path PerUserRoot() {
    wchar_t path[MAX_PATH];
    return SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, FALSE) ? path : std::filesystem::path();
}

std::string TextOf(const std::filesystem::path& path) { return Narrow(CP_ACP, path.native()); }
std::filesystem::path PathOf(std::string_view text) { return Widen(CP_ACP, text); }
std::string FromUtf8(std::string_view utf8) { return Narrow(CP_ACP, Widen(CP_UTF8, utf8)); }
std::string ToUtf8(std::string_view text) { return Narrow(CP_UTF8, Widen(CP_ACP, text)); }

bool IsWellFormed(std::string_view text) noexcept {
    return text.empty() || MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text.data(), static_cast<int>(text.size()),
                                               nullptr, 0) != 0;
}

std::size_t CutLength(std::string_view text, std::size_t limit) noexcept {
    std::size_t length = 0;
    while (length < text.size()) {
        const std::size_t character = IsDBCSLeadByte(static_cast<BYTE>(text[length])) ? 2 : 1;
        if (length + character > limit || length + character > text.size()) {
            break;
        }
        length += character;
    }
    return length;
}

FileState StateOf(const std::filesystem::path& path) {
    const DWORD attributes = GetFileAttributesW(path.c_str());
    if (attributes == INVALID_FILE_ATTRIBUTES) {
        return FileState::Absent;
    }
    if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
        return FileState::NotAFile;
    }
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return GetLastError() == ERROR_SHARING_VIOLATION ? FileState::InUse : FileState::NotWritable;
    }
    CloseHandle(file);
    return FileState::Writable;
}

FileStamp StampOf(const std::filesystem::path& path) {
    const HANDLE file =
        CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    BY_HANDLE_FILE_INFORMATION facts;
    const bool known = file != INVALID_HANDLE_VALUE && GetFileInformationByHandle(file, &facts);
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
    const auto join = [](DWORD high, DWORD low) { return (static_cast<std::uint64_t>(high) << 32) | low; };
    return known ? FileStamp{facts.dwVolumeSerialNumber, join(facts.nFileIndexHigh, facts.nFileIndexLow),
                             join(facts.ftLastWriteTime.dwHighDateTime, facts.ftLastWriteTime.dwLowDateTime), 0}
                 : FileStamp{};
}

void Replace(const std::filesystem::path& source, const std::filesystem::path& target) {
    if (!MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH)) {
        throw std::filesystem::filesystem_error(
            "cannot replace", source, target,
            std::error_code(static_cast<int>(GetLastError()), std::system_category()));
    }
}

SemaphoreHandle NewSemaphore() { return CreateSemaphoreA(nullptr, 1, 1, nullptr); }

void DeleteSemaphore(SemaphoreHandle semaphore) noexcept { CloseHandle(semaphore); }

} // namespace platform
