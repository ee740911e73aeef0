// The temporary file is written, flushed to the disk and renamed over the file. Its handle stays open until then:
// a temporary file that nobody holds open belongs to a process that was killed, and anyone may remove it.
//
// The DOM does not write the file itself, since not every DOM reports a disk that is full.

#include "safe_save.h"

#include "file_handle.h"
#include "wide_text.h"

#include <algorithm>
#include <atomic>
#include <limits>
#include <new>
#include <string>
#include <vector>

namespace platform {

namespace {

constexpr std::wstring_view kTemporaryPrefix = L"~cordelbox-";
constexpr std::wstring_view kTemporarySuffix = L".tmp";
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A virus scanner or an indexer may hold the file for a moment.
constexpr int kRenameAttempts = 20;
constexpr DWORD kRenamePauseMilliseconds = 10;

/// The path behind all links, in the form that knows no limit of length; the path as it is when there is no such.
std::wstring FinalPath(const std::wstring& path) {
    const CFileHandle file(
        ::CreateFileW(path.c_str(), FILE_READ_ATTRIBUTES, kShareAll, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file) {
        return path;
    }
    std::wstring final(::GetFinalPathNameByHandleW(file.Get(), nullptr, 0, FILE_NAME_NORMALIZED), L'\0');
    const DWORD length =
        ::GetFinalPathNameByHandleW(file.Get(), final.data(), static_cast<DWORD>(final.size()), FILE_NAME_NORMALIZED);
    if (length == 0 || length >= final.size()) {
        return path;
    }
    final.resize(length);
    return final;
}

/// The folder of a path, with its separator.
std::wstring FolderOf(const std::wstring& path) { return path.substr(0, path.find_last_of(L"\\/") + 1); }

void RemoveLeftovers(const std::wstring& folder) {
    WIN32_FIND_DATAW found;
    const HANDLE search = ::FindFirstFileW(
        (folder + std::wstring(kTemporaryPrefix) + L'*' + std::wstring(kTemporarySuffix)).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    do {
        if (std::wstring_view(found.cFileName).ends_with(kTemporarySuffix)) {
            // Cannot be opened while its process lives; goes with this handle.
            const CFileHandle leftover(::CreateFileW((folder + found.cFileName).c_str(), DELETE, 0, nullptr,
                                                     OPEN_EXISTING, FILE_FLAG_DELETE_ON_CLOSE, nullptr));
        }
    } while (::FindNextFileW(search, &found) != FALSE);
    ::FindClose(search);
}

std::wstring NewTemporaryPath(const std::wstring& folder) {
    static std::atomic<unsigned> s_nNext{::GetTickCount()}; // a process before may have had this process number
    return folder + std::wstring(kTemporaryPrefix) + std::to_wstring(::GetCurrentProcessId()) + L'-' +
           std::to_wstring(s_nNext++) + std::wstring(kTemporarySuffix);
}

/// A temporary file, open, that is removed again unless it is renamed.
class CTemporaryFile {
public:
    explicit CTemporaryFile(const std::wstring& folder)
        : m_strPath(NewTemporaryPath(folder)),
          m_file(::CreateFileW(m_strPath.c_str(), GENERIC_WRITE, kShareAll, nullptr, CREATE_NEW, FILE_ATTRIBUTE_NORMAL,
                               nullptr)) {}
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;
    ~CTemporaryFile() {
        if (m_file && !m_bRenamed) {
            ::DeleteFileW(m_strPath.c_str());
        }
    }

    explicit operator bool() const noexcept { return static_cast<bool>(m_file); }
    HANDLE Handle() const noexcept { return m_file.Get(); }
    const std::wstring& Path() const noexcept { return m_strPath; }

    bool RenameOver(const std::wstring& target) noexcept {
        for (int attempt = 1;; ++attempt) {
            m_bRenamed = ::MoveFileExW(m_strPath.c_str(), target.c_str(),
                                       MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != FALSE;
            if (m_bRenamed || attempt == kRenameAttempts) {
                return m_bRenamed;
            }
            const DWORD error = ::GetLastError();
            if (error != ERROR_ACCESS_DENIED && error != ERROR_SHARING_VIOLATION) {
                return false;
            }
            ::Sleep(kRenamePauseMilliseconds);
        }
    }

private:
    const std::wstring m_strPath;
    const CFileHandle m_file;
    bool m_bRenamed = false;
};

/// Returns what could not be written.
std::string_view Write(HANDLE file, std::string_view contents) noexcept {
    constexpr std::size_t kMost = std::numeric_limits<int>::max();
    while (!contents.empty()) {
        DWORD written = 0;
        if (::WriteFile(file, contents.data(), static_cast<DWORD>(std::min(contents.size(), kMost)), &written,
                        nullptr) == FALSE ||
            written == 0) {
            break;
        }
        contents.remove_prefix(written);
    }
    return contents;
}

/// The access rights of a file as the system stores them; empty when they cannot be had.
std::vector<char> Permissions(const std::wstring& path) {
    DWORD size = 0;
    ::GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
    std::vector<char> permissions(size);
    if (::GetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, permissions.data(), size, &size) == FALSE) {
        permissions.clear();
    }
    return permissions;
}

void CopyPermissions(const std::wstring& source, const std::wstring& target) {
    std::vector<char> permissions = Permissions(source);
    if (!permissions.empty() && permissions != Permissions(target)) {
        ::SetFileSecurityW(target.c_str(), DACL_SECURITY_INFORMATION, permissions.data());
    }
}

void CopyAttributes(const std::wstring& source, const std::wstring& target) noexcept {
    constexpr DWORD kKept = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;
    const DWORD attributes = ::GetFileAttributesW(source.c_str());
    if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & kKept) != 0) {
        ::SetFileAttributesW(target.c_str(), (attributes & kKept) | FILE_ATTRIBUTE_ARCHIVE);
    }
}

bool SetLength(HANDLE file, LARGE_INTEGER length) noexcept {
    return ::SetFilePointerEx(file, length, nullptr, FILE_BEGIN) != FALSE && ::SetEndOfFile(file) != FALSE;
}

/// Space that is lacking is asked for before the first byte changes.
bool WriteInPlace(const std::wstring& path, std::string_view contents) noexcept {
    const CFileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    LARGE_INTEGER oldLength;
    if (!file || ::GetFileSizeEx(file.Get(), &oldLength) == FALSE) {
        return false;
    }
    LARGE_INTEGER newLength;
    newLength.QuadPart = static_cast<LONGLONG>(contents.size());
    const bool bReserved = newLength.QuadPart <= oldLength.QuadPart || SetLength(file.Get(), newLength);
    std::string_view rest = contents;
    if (bReserved && ::SetFilePointerEx(file.Get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN) != FALSE) {
        rest = Write(file.Get(), contents);
    }
    if (rest.size() == contents.size()) {
        SetLength(file.Get(), oldLength); // nothing has changed but the length
        return false;
    }
    return rest.empty() && SetLength(file.Get(), newLength) && ::FlushFileBuffers(file.Get()) != FALSE;
}

bool Replace(const std::wstring& path, std::string_view contents) {
    const std::wstring target = FinalPath(path);
    const std::wstring folder = FolderOf(target);
    RemoveLeftovers(folder);
    CTemporaryFile temporary(folder);
    if (!temporary) {
        const DWORD error = ::GetLastError();
        const bool takesNoFile =
            error == ERROR_ACCESS_DENIED || error == ERROR_PATH_NOT_FOUND || error == ERROR_FILENAME_EXCED_RANGE;
        return takesNoFile && WriteInPlace(target, contents);
    }
    if (!Write(temporary.Handle(), contents).empty()) {
        return false;
    }
    CopyAttributes(target, temporary.Path());
    CopyPermissions(target, temporary.Path());
    return ::FlushFileBuffers(temporary.Handle()) != FALSE && temporary.RenameOver(target);
}

} // namespace

bool ReplaceContents(const char* path, std::string_view contents, CReason* reason) noexcept {
    try {
        return Replace(ToWideText(path), contents);
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
        return false;
    }
}

} // namespace platform
