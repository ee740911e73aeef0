// The system as Windows has it.

#include "system/system.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <atomic>
#include <iostream>
#include <iterator>
#include <system_error>
#include <utility>

namespace host {

namespace {

[[noreturn]] void Fail(const char* what, const std::filesystem::path& path) {
    throw std::filesystem::filesystem_error(what, path,
                                            std::error_code(static_cast<int>(GetLastError()), std::system_category()));
}

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

class CHandle {
public:
    explicit CHandle(HANDLE handle) noexcept : m_hHandle(handle) {}
    ~CHandle() {
        if (IsOpen()) {
            CloseHandle(m_hHandle);
        }
    }
    CHandle(const CHandle&) = delete;
    CHandle& operator=(const CHandle&) = delete;
    bool IsOpen() const noexcept { return m_hHandle != INVALID_HANDLE_VALUE; }
    HANDLE Get() const noexcept { return m_hHandle; }
    HANDLE Keep() noexcept { return std::exchange(m_hHandle, INVALID_HANDLE_VALUE); }
    void Close() noexcept {
        if (IsOpen()) {
            CloseHandle(Keep());
        }
    }

private:
    HANDLE m_hHandle;
};

constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// The lock lies far behind the words of its holder, which others may read.
constexpr DWORD kLockOffset = 0x40000000;

bool WriteAll(HANDLE file, std::string_view bytes) {
    while (!bytes.empty()) {
        const DWORD piece = static_cast<DWORD>(bytes.size() < 0x1000000 ? bytes.size() : 0x1000000);
        DWORD written = 0;
        if (!WriteFile(file, bytes.data(), piece, &written, nullptr) || written == 0) {
            return false;
        }
        bytes.remove_prefix(written);
    }
    return true;
}

std::atomic<bool> interrupted{false};

BOOL WINAPI OnControl(DWORD) {
    interrupted = true;
    return TRUE;
}

} // namespace

std::vector<std::string> CommandWords(int, char**) {
    int count = 0;
    wchar_t** const words = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> result;
    for (int i = 1; words != nullptr && i < count; ++i) {
        result.push_back(Narrow(CP_UTF8, words[i]));
    }
    LocalFree(words);
    return result;
}

std::filesystem::path ExecutableFolder() {
    wchar_t path[MAX_PATH];
    const DWORD length = GetModuleFileNameW(nullptr, path, MAX_PATH);
    return length == 0 || length == MAX_PATH ? std::filesystem::path() : std::filesystem::path(path).parent_path();
}

std::filesystem::path PerUserRoot() {
    wchar_t path[MAX_PATH];
    return SHGetSpecialFolderPathW(nullptr, path, CSIDL_APPDATA, FALSE) ? path : std::filesystem::path();
}

std::string TextOf(const std::filesystem::path& path) { return Narrow(CP_UTF8, path.native()); }
std::filesystem::path PathOf(std::string_view text) { return Widen(CP_UTF8, text); }
std::string ToCodePage(std::string_view utf8) { return Narrow(CP_ACP, Widen(CP_UTF8, utf8)); }
std::string FromCodePage(std::string_view text) { return Narrow(CP_UTF8, Widen(CP_ACP, text)); }

bool IsInCodePage(std::string_view utf8) {
    const int size = static_cast<int>(utf8.size());
    const bool wellFormed =
        utf8.empty() || MultiByteToWideChar(CP_UTF8, MB_ERR_INVALID_CHARS, utf8.data(), size, nullptr, 0) != 0;
    return wellFormed && FromCodePage(ToCodePage(utf8)) == utf8;
}

const std::string& StandardInput() {
    static const std::string input(std::istreambuf_iterator<char>(std::cin), {});
    return input;
}

std::string Variable(const char* name) {
    const wchar_t* const value = _wgetenv(Widen(CP_UTF8, name).c_str());
    return value != nullptr ? Narrow(CP_UTF8, value) : std::string();
}

std::string ReadBytes(const std::filesystem::path& path, std::uint64_t most) {
    const CHandle file(
        CreateFileW(path.c_str(), GENERIC_READ, kShareAll, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    LARGE_INTEGER size;
    if (!file.IsOpen() || !GetFileSizeEx(file.Get(), &size)) {
        Fail("cannot read", path);
    }
    if (static_cast<std::uint64_t>(size.QuadPart) > most) {
        throw TooLarge(path);
    }
    std::string bytes(static_cast<std::size_t>(size.QuadPart), '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        DWORD count = 0;
        const std::size_t left = bytes.size() - length;
        if (!ReadFile(file.Get(), bytes.data() + length, static_cast<DWORD>(left < 0x1000000 ? left : 0x1000000),
                      &count, nullptr)) {
            Fail("cannot read", path);
        }
        if (count == 0) {
            break;
        }
        length += count;
    }
    bytes.resize(length);
    return bytes;
}

std::string ReadInput(const std::filesystem::path& path, std::uint64_t most) { return ReadBytes(path, most); }

void WriteWhole(const std::filesystem::path& path, std::string_view bytes, const std::filesystem::path&,
                const LastLook& isAsLoaded) {
    auto name = path;
    name += L".cordelctl-" + std::to_wstring(GetCurrentProcessId());
    CHandle file(CreateFileW(name.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) {
        Fail("cannot make a file beside", path);
    }
    const bool written = WriteAll(file.Get(), bytes) && FlushFileBuffers(file.Get());
    const DWORD error = GetLastError();
    file.Close();
    if (written && !platform::IsStillWanted(isAsLoaded, nullptr)) {
        DeleteFileW(name.c_str());
        FailForOvertaken(path);
    }
    // A file that is replaced hands its access rights on; a new one has those of its folder.
    const bool done = written && (GetFileAttributesW(path.c_str()) != INVALID_FILE_ATTRIBUTES
                                      ? ReplaceFileW(path.c_str(), name.c_str(), nullptr, 0, nullptr, nullptr)
                                      : MoveFileExW(name.c_str(), path.c_str(), MOVEFILE_WRITE_THROUGH));
    if (!done) {
        SetLastError(written ? GetLastError() : error);
        const DWORD reason = GetLastError();
        DeleteFileW(name.c_str());
        SetLastError(reason);
        Fail("cannot write", path);
    }
}

void PutFile(const std::filesystem::path& path, std::string_view bytes, const std::filesystem::path& like) {
    WriteWhole(path, bytes, like);
}

CFileLock::CFileLock(CFileLock&& other) noexcept : m_nHandle(std::exchange(other.m_nHandle, kNone)) {}

CFileLock& CFileLock::operator=(CFileLock&& other) noexcept {
    std::swap(m_nHandle, other.m_nHandle);
    return *this;
}

CFileLock::~CFileLock() { Release(); }

bool CFileLock::Try(const std::filesystem::path& path, std::string_view holder) {
    CHandle file(CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, kShareAll, nullptr, OPEN_ALWAYS,
                             FILE_ATTRIBUTE_NORMAL, nullptr));
    if (!file.IsOpen()) {
        Fail("cannot open the lock file", path);
    }
    OVERLAPPED place = {};
    place.Offset = kLockOffset;
    if (!LockFileEx(file.Get(), LOCKFILE_EXCLUSIVE_LOCK | LOCKFILE_FAIL_IMMEDIATELY, 0, 1, 0, &place)) {
        if (GetLastError() != ERROR_LOCK_VIOLATION && GetLastError() != ERROR_IO_PENDING) {
            Fail("cannot lock", path);
        }
        return false;
    }
    SetEndOfFile(file.Get());
    WriteAll(file.Get(), holder);
    m_nHandle = reinterpret_cast<std::intptr_t>(file.Keep());
    return true;
}

void CFileLock::Release() noexcept {
    if (IsHeld()) {
        CloseHandle(reinterpret_cast<HANDLE>(std::exchange(m_nHandle, kNone)));
    }
}

std::string HolderOf(const std::filesystem::path& path) {
    try {
        return ReadBytes(path);
    } catch (const std::filesystem::filesystem_error&) {
        return {};
    }
}

void NoteInterruptions() noexcept { SetConsoleCtrlHandler(&OnControl, TRUE); }

bool IsInterrupted() noexcept { return interrupted; }

std::uint64_t ProcessNumber() noexcept { return GetCurrentProcessId(); }

} // namespace host
