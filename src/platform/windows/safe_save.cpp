// The temporary file is written, flushed to the disk and renamed over the file. Its handle stays open until then:
// a temporary file that nobody holds open belongs to a process that was killed, and anyone may remove it.
//
// The DOM does not write the file itself, since not every DOM reports a disk that is full.

#include "safe_save.h"

#include "file_handle.h"
#include "wide_text.h"

#include <bcrypt.h>
#include <sddl.h>

#include <algorithm>
#include <array>
#include <limits>
#include <new>
#include <string>
#include <utility>
#include <vector>

namespace platform {

namespace {

constexpr std::wstring_view kTemporaryPrefix = L"~cordelbox-";
constexpr std::wstring_view kTemporarySuffix = L".tmp";
constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;

// A virus scanner or an indexer may hold the file for a moment.
constexpr int kRenameAttempts = 20;
constexpr DWORD kRenamePauseMilliseconds = 10;

constexpr int kMostLeftovers = 4096; // that one save looks at

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

/// False, with the system's error, for a function to return.
bool Failed(const char* call, CReason* reason) noexcept {
    GiveReason(reason, CReason::OfCall(call, ::GetLastError()));
    return false;
}

/// Removes a file without another name that nobody has open. A link is not followed.
void RemoveLeftover(const std::wstring& path) {
    const CFileHandle file(::CreateFileW(path.c_str(), DELETE | FILE_READ_ATTRIBUTES, 0, nullptr, OPEN_EXISTING,
                                         FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
    BY_HANDLE_FILE_INFORMATION information;
    constexpr DWORD kNoFile = FILE_ATTRIBUTE_DIRECTORY | FILE_ATTRIBUTE_REPARSE_POINT;
    if (file && ::GetFileInformationByHandle(file.Get(), &information) != FALSE &&
        (information.dwFileAttributes & kNoFile) == 0 && information.nNumberOfLinks == 1) {
        FILE_DISPOSITION_INFO disposition = {TRUE};
        ::SetFileInformationByHandle(file.Get(), FileDispositionInfo, &disposition, sizeof disposition);
    }
}

void RemoveLeftovers(const std::wstring& folder) {
    WIN32_FIND_DATAW found;
    const HANDLE search = ::FindFirstFileW(
        (folder + std::wstring(kTemporaryPrefix) + L'*' + std::wstring(kTemporarySuffix)).c_str(), &found);
    if (search == INVALID_HANDLE_VALUE) {
        return;
    }
    int names = 0;
    do {
        if (std::wstring_view(found.cFileName).ends_with(kTemporarySuffix)) {
            RemoveLeftover(folder + found.cFileName);
        }
    } while (++names < kMostLeftovers && ::FindNextFileW(search, &found) != FALSE);
    ::FindClose(search);
}

/// A path that nobody can foresee; empty when chance cannot be had.
std::wstring NewTemporaryPath(const std::wstring& folder) {
    std::array<UCHAR, 8> chance;
    if (::BCryptGenRandom(nullptr, chance.data(), static_cast<ULONG>(chance.size()), BCRYPT_USE_SYSTEM_PREFERRED_RNG) <
        0) {
        ::SetLastError(ERROR_GEN_FAILURE);
        return {};
    }
    std::wstring path = folder + std::wstring(kTemporaryPrefix);
    for (const UCHAR byte : chance) {
        constexpr std::wstring_view kDigits = L"0123456789abcdef";
        path += {kDigits[byte >> 4U], kDigits[byte & 15U]};
    }
    return path + std::wstring(kTemporarySuffix);
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

/// The user of this process, as access rights name one; empty when that cannot be had.
std::wstring OwnName() {
    HANDLE token = nullptr;
    if (::OpenProcessToken(::GetCurrentProcess(), TOKEN_QUERY, &token) == FALSE) {
        return {};
    }
    const CFileHandle owned(token);
    alignas(TOKEN_USER) std::array<char, sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE> user;
    DWORD size = 0;
    LPWSTR text = nullptr;
    if (::GetTokenInformation(token, TokenUser, user.data(), static_cast<DWORD>(user.size()), &size) == FALSE ||
        ::ConvertSidToStringSidW(reinterpret_cast<const TOKEN_USER*>(user.data())->User.Sid, &text) == FALSE) {
        return {};
    }
    std::wstring name(text);
    ::LocalFree(text);
    return name;
}

/// The access rights with which a file is made: those of the file whose place it takes, or where these cannot be had,
/// the user's alone.
class CInitialRights {
public:
    explicit CInitialRights(std::vector<char> permissions) : m_permissions(std::move(permissions)) {
        m_attributes.lpSecurityDescriptor = m_permissions.data();
        if (m_permissions.empty()) {
            const std::wstring rights = L"D:P(A;;FA;;;" + OwnName() + L")";
            ::ConvertStringSecurityDescriptorToSecurityDescriptorW(rights.c_str(), SDDL_REVISION_1, &m_pOwnerAlone,
                                                                   nullptr);
            m_attributes.lpSecurityDescriptor = m_pOwnerAlone;
        }
    }
    ~CInitialRights() { ::LocalFree(m_pOwnerAlone); }
    CInitialRights(const CInitialRights&) = delete;
    CInitialRights& operator=(const CInitialRights&) = delete;

    bool AreKnown() const noexcept { return m_attributes.lpSecurityDescriptor != nullptr; }
    SECURITY_ATTRIBUTES* Attributes() noexcept { return &m_attributes; }
    std::vector<char>& Permissions() noexcept { return m_permissions; }

private:
    std::vector<char> m_permissions;
    PSECURITY_DESCRIPTOR m_pOwnerAlone = nullptr;
    SECURITY_ATTRIBUTES m_attributes = {sizeof(SECURITY_ATTRIBUTES), nullptr, FALSE};
};

/// A temporary file, open, that is removed again unless it is renamed. Where it cannot be made it is not open, and the
/// system's error says why.
class CTemporaryFile {
public:
    CTemporaryFile(const std::wstring& folder, CInitialRights& rights)
        : m_strPath(NewTemporaryPath(folder)), m_file(Make(rights)) {}
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

    /// False, and the system's error, when the target cannot be replaced.
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
    HANDLE Make(CInitialRights& rights) const noexcept {
        return m_strPath.empty() || !rights.AreKnown()
                   ? INVALID_HANDLE_VALUE
                   : ::CreateFileW(m_strPath.c_str(), GENERIC_WRITE, kShareAll, rights.Attributes(), CREATE_NEW,
                                   FILE_ATTRIBUTE_NORMAL, nullptr);
    }

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

/// Sets rights that are known, and that the file does not have already.
void SetPermissions(const std::wstring& path, std::vector<char>& permissions) {
    if (!permissions.empty() && permissions != Permissions(path)) {
        ::SetFileSecurityW(path.c_str(), DACL_SECURITY_INFORMATION, permissions.data());
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

/// Space that is lacking is asked for before the first byte changes. Fails at once while another program has the file
/// open.
bool WriteInPlace(const std::wstring& path, std::string_view contents, CReason* reason,
                  const LastLook& isAsLoaded) noexcept {
    if (!IsStillWanted(isAsLoaded, reason)) { // before it is held: nobody else can open it then
        return false;
    }
    const CFileHandle file(::CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    if (!file) {
        return Failed("CreateFile", reason);
    }
    BY_HANDLE_FILE_INFORMATION information;
    if (::GetFileInformationByHandle(file.Get(), &information) == FALSE) {
        return Failed("GetFileInformationByHandle", reason);
    }
    if (information.nNumberOfLinks > 1) {
        GiveReason(reason,
                   CReason::Of(ReasonKind::NotPermitted, "the file has other names, and they would lead to it"));
        return false;
    }
    LARGE_INTEGER oldLength;
    if (::GetFileSizeEx(file.Get(), &oldLength) == FALSE) {
        return Failed("GetFileSizeEx", reason);
    }
    LARGE_INTEGER newLength;
    newLength.QuadPart = static_cast<LONGLONG>(contents.size());
    if (newLength.QuadPart > oldLength.QuadPart && !SetLength(file.Get(), newLength)) {
        Failed("SetEndOfFile", reason);
        SetLength(file.Get(), oldLength);
        return false;
    }
    std::string_view rest = contents;
    if (::SetFilePointerEx(file.Get(), LARGE_INTEGER{}, nullptr, FILE_BEGIN) != FALSE) {
        rest = Write(file.Get(), contents);
    }
    if (!rest.empty()) {
        Failed("WriteFile", reason);
        if (rest.size() == contents.size()) {
            SetLength(file.Get(), oldLength); // nothing has changed but the length
        }
        return false;
    }
    if (!SetLength(file.Get(), newLength)) {
        return Failed("SetEndOfFile", reason);
    }
    return ::FlushFileBuffers(file.Get()) != FALSE || Failed("FlushFileBuffers", reason);
}

bool Replace(const std::wstring& path, std::string_view contents, CReason* reason, const LastLook& isAsLoaded) {
    const std::wstring target = FinalPath(path);
    const std::wstring folder = FolderOf(target);
    RemoveLeftovers(folder);
    CInitialRights rights(Permissions(target));
    {
        CTemporaryFile temporary(folder, rights);
        if (!temporary) {
            const DWORD error = ::GetLastError();
            Failed("CreateFile", reason);
            const bool bTakesNoFile =
                error == ERROR_ACCESS_DENIED || error == ERROR_PATH_NOT_FOUND || error == ERROR_FILENAME_EXCED_RANGE;
            return bTakesNoFile && WriteInPlace(target, contents, reason, isAsLoaded);
        }
        if (!Write(temporary.Handle(), contents).empty()) {
            return Failed("WriteFile", reason);
        }
        CopyAttributes(target, temporary.Path());
        SetPermissions(temporary.Path(), rights.Permissions());
        if (::FlushFileBuffers(temporary.Handle()) == FALSE) {
            return Failed("FlushFileBuffers", reason);
        }
        if (!IsStillWanted(isAsLoaded, reason)) {
            return false;
        }
        if (temporary.RenameOver(target)) {
            return true;
        }
        const DWORD error = ::GetLastError();
        Failed("MoveFileEx", reason);
        if (error != ERROR_ACCESS_DENIED) {
            return false;
        }
    }
    // A document that may be written and not replaced, or that another program has open: then this fails too.
    return WriteInPlace(target, contents, reason, isAsLoaded);
}

} // namespace

bool ReplaceContents(const char* path, std::string_view contents, CReason* reason,
                     const LastLook& isAsLoaded) noexcept {
    try {
        return Replace(ToWideText(path), contents, reason, isAsLoaded);
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
        return false;
    }
}

} // namespace platform
