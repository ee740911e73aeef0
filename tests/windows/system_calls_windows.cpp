#include "system_calls_windows.h"

#include <bcrypt.h>
#include <sddl.h>

#include <algorithm>
#include <utility>

namespace {

/// The function itself; the first argument only tells of what type it is.
template <class Function>
Function Real(Function, const char* name, const char* library = "kernel32.dll") {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(::GetProcAddress(::LoadLibraryA(library), name)));
}

DWORD g_nWaited = 0;
int g_nBlocks = 0;

std::wstring PathOf(HANDLE file) {
    std::wstring path(1024, L'\0');
    const DWORD length =
        Real(&::GetFinalPathNameByHandleW, "GetFinalPathNameByHandleW")(file, path.data(), 1024, FILE_NAME_NORMALIZED);
    path.resize(length < path.size() ? length : 0);
    return path;
}

/// The fate of the next call. Kills the process where the judge says so.
Fate Note(SystemCall call) {
    const Fate fate = CSystemCallWatch::FateOf(std::move(call));
    if (fate.bKill) {
        ::TerminateProcess(::GetCurrentProcess(), kKilled);
    }
    return fate;
}

Fate NotePath(const char* name, const wchar_t* path, bool bCreates = false) {
    return CSystemCallWatch::IsOn() ? Note({name, path, bCreates}) : Fate();
}

Fate NoteFile(const char* name, HANDLE file) { return CSystemCallWatch::IsOn() ? Note({name, PathOf(file)}) : Fate(); }

/// True when the call is to fail; the error is then set.
bool Fails(const Fate& fate) {
    if (fate.error != 0) {
        ::SetLastError(fate.error);
    }
    return fate.error != 0;
}

HANDLE WINAPI WatchedCreateFileA(LPCSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                 DWORD disposition, DWORD flags, HANDLE model) {
    const Fate fate = NotePath("CreateFileA", std::wstring(path, path + std::char_traits<char>::length(path)).c_str());
    return Fails(fate) ? INVALID_HANDLE_VALUE
                       : Real(&::CreateFileA, "CreateFileA")(path, access, share, security, disposition, flags, model);
}

HANDLE WINAPI WatchedCreateFileW(LPCWSTR path, DWORD access, DWORD share, LPSECURITY_ATTRIBUTES security,
                                 DWORD disposition, DWORD flags, HANDLE model) {
    return Fails(NotePath("CreateFileW", path, disposition != OPEN_EXISTING))
               ? INVALID_HANDLE_VALUE
               : Real(&::CreateFileW, "CreateFileW")(path, access, share, security, disposition, flags, model);
}

BOOL WINAPI WatchedCloseHandle(HANDLE file) {
    const Fate fate = NoteFile("CloseHandle", file);
    const BOOL result = Real(&::CloseHandle, "CloseHandle")(file); // however it is said to end
    return Fails(fate) ? FALSE : result;
}

DWORD WINAPI WatchedGetFileType(HANDLE file) {
    return Fails(NoteFile("GetFileType", file)) ? FILE_TYPE_UNKNOWN : Real(&::GetFileType, "GetFileType")(file);
}

BOOL WINAPI WatchedGetFileInformationByHandle(HANDLE file, LPBY_HANDLE_FILE_INFORMATION information) {
    const Fate fate = NoteFile("GetFileInformationByHandle", file);
    if (Fails(fate) || Real(&::GetFileInformationByHandle, "GetFileInformationByHandle")(file, information) == FALSE) {
        return FALSE;
    }
    information->dwFileAttributes |= fate.nAttributes;
    return TRUE;
}

DWORD WINAPI WatchedGetFinalPathNameByHandleW(HANDLE file, LPWSTR path, DWORD size, DWORD flags) {
    return Fails(NoteFile("GetFinalPathNameByHandleW", file))
               ? 0
               : Real(&::GetFinalPathNameByHandleW, "GetFinalPathNameByHandleW")(file, path, size, flags);
}

HANDLE WINAPI WatchedFindFirstFileW(LPCWSTR pattern, LPWIN32_FIND_DATAW found) {
    return Fails(NotePath("FindFirstFileW", pattern)) ? INVALID_HANDLE_VALUE
                                                      : Real(&::FindFirstFileW, "FindFirstFileW")(pattern, found);
}

BOOL WINAPI WatchedFindNextFileW(HANDLE search, LPWIN32_FIND_DATAW found) {
    const Fate fate = NotePath("FindNextFileW", L"");
    if (fate.bRepeats) {
        return TRUE;
    }
    return Fails(fate) ? FALSE : Real(&::FindNextFileW, "FindNextFileW")(search, found);
}

BOOL WINAPI WatchedFindClose(HANDLE search) {
    const Fate fate = NotePath("FindClose", L"");
    const BOOL result = Real(&::FindClose, "FindClose")(search);
    return Fails(fate) ? FALSE : result;
}

BOOL WINAPI WatchedWriteFile(HANDLE file, LPCVOID bytes, DWORD count, LPDWORD written, LPOVERLAPPED overlapped) {
    const Fate fate = NoteFile("WriteFile", file);
    return Fails(fate)
               ? FALSE
               : Real(&::WriteFile, "WriteFile")(file, bytes, std::min(count, fate.nAtMost), written, overlapped);
}

BOOL WINAPI WatchedReadFile(HANDLE file, LPVOID bytes, DWORD count, LPDWORD read, LPOVERLAPPED overlapped) {
    const Fate fate = NoteFile("ReadFile", file);
    return Fails(fate) ? FALSE
                       : Real(&::ReadFile, "ReadFile")(file, bytes, std::min(count, fate.nAtMost), read, overlapped);
}

BOOL WINAPI WatchedGetFileInformationByHandleEx(HANDLE file, FILE_INFO_BY_HANDLE_CLASS which, LPVOID information,
                                                DWORD size) {
    return Fails(NoteFile("GetFileInformationByHandleEx", file))
               ? FALSE
               : Real(&::GetFileInformationByHandleEx, "GetFileInformationByHandleEx")(file, which, information, size);
}

BOOL WINAPI WatchedFlushFileBuffers(HANDLE file) {
    return Fails(NoteFile("FlushFileBuffers", file)) ? FALSE : Real(&::FlushFileBuffers, "FlushFileBuffers")(file);
}

BOOL WINAPI WatchedGetFileSizeEx(HANDLE file, PLARGE_INTEGER size) {
    const Fate fate = NoteFile("GetFileSizeEx", file);
    if (fate.nSize >= 0) {
        size->QuadPart = fate.nSize;
        return TRUE;
    }
    return Fails(fate) ? FALSE : Real(&::GetFileSizeEx, "GetFileSizeEx")(file, size);
}

BOOL WINAPI WatchedSetFilePointerEx(HANDLE file, LARGE_INTEGER distance, PLARGE_INTEGER position, DWORD method) {
    return Fails(NoteFile("SetFilePointerEx", file))
               ? FALSE
               : Real(&::SetFilePointerEx, "SetFilePointerEx")(file, distance, position, method);
}

BOOL WINAPI WatchedSetEndOfFile(HANDLE file) {
    const Fate fate = NoteFile("SetEndOfFile", file);
    const BOOL result =
        fate.error == 0 || fate.bTakesEffect ? Real(&::SetEndOfFile, "SetEndOfFile")(file) : BOOL{FALSE};
    return Fails(fate) ? FALSE : result;
}

BOOL WINAPI WatchedSetFileInformationByHandle(HANDLE file, FILE_INFO_BY_HANDLE_CLASS which, LPVOID information,
                                              DWORD size) {
    return Fails(NoteFile("SetFileInformationByHandle", file))
               ? FALSE
               : Real(&::SetFileInformationByHandle, "SetFileInformationByHandle")(file, which, information, size);
}

BOOL WINAPI WatchedConvertStringSecurityDescriptorToSecurityDescriptorW(LPCWSTR text, DWORD revision,
                                                                        PSECURITY_DESCRIPTOR* rights, PULONG size) {
    if (Fails(NotePath("ConvertStringSecurityDescriptorToSecurityDescriptorW", text)) ||
        Real(&::ConvertStringSecurityDescriptorToSecurityDescriptorW,
             "ConvertStringSecurityDescriptorToSecurityDescriptorW",
             "advapi32.dll")(text, revision, rights, size) == FALSE) {
        return FALSE;
    }
    ++g_nBlocks;
    return TRUE;
}

BOOL WINAPI WatchedOpenProcessToken(HANDLE process, DWORD access, PHANDLE token) {
    return Fails(NotePath("OpenProcessToken", L""))
               ? FALSE
               : Real(&::OpenProcessToken, "OpenProcessToken", "advapi32.dll")(process, access, token);
}

BOOL WINAPI WatchedGetTokenInformation(HANDLE token, TOKEN_INFORMATION_CLASS which, LPVOID buffer, DWORD size,
                                       PDWORD length) {
    return Fails(NotePath("GetTokenInformation", L"")) ? FALSE
                                                       : Real(&::GetTokenInformation, "GetTokenInformation",
                                                              "advapi32.dll")(token, which, buffer, size, length);
}

BOOL WINAPI WatchedConvertSidToStringSidW(PSID user, LPWSTR* name) {
    if (Fails(NotePath("ConvertSidToStringSidW", L""))) {
        return FALSE;
    }
    const BOOL result = Real(&::ConvertSidToStringSidW, "ConvertSidToStringSidW", "advapi32.dll")(user, name);
    g_nBlocks += result != FALSE ? 1 : 0;
    return result;
}

HLOCAL WINAPI CountedLocalFree(HLOCAL block) {
    g_nBlocks -= block != nullptr ? 1 : 0;
    return Real(&::LocalFree, "LocalFree")(block);
}

DWORD WINAPI WatchedGetFileAttributesW(LPCWSTR path) {
    return Fails(NotePath("GetFileAttributesW", path)) ? INVALID_FILE_ATTRIBUTES
                                                       : Real(&::GetFileAttributesW, "GetFileAttributesW")(path);
}

BOOL WINAPI WatchedSetFileAttributesW(LPCWSTR path, DWORD attributes) {
    return Fails(NotePath("SetFileAttributesW", path))
               ? FALSE
               : Real(&::SetFileAttributesW, "SetFileAttributesW")(path, attributes);
}

BOOL WINAPI WatchedGetFileSecurityW(LPCWSTR path, SECURITY_INFORMATION which, PSECURITY_DESCRIPTOR rights, DWORD size,
                                    LPDWORD needed) {
    return Fails(NotePath("GetFileSecurityW", path))
               ? FALSE
               : Real(&::GetFileSecurityW, "GetFileSecurityW", "advapi32.dll")(path, which, rights, size, needed);
}

BOOL WINAPI WatchedSetFileSecurityW(LPCWSTR path, SECURITY_INFORMATION which, PSECURITY_DESCRIPTOR rights) {
    return Fails(NotePath("SetFileSecurityW", path))
               ? FALSE
               : Real(&::SetFileSecurityW, "SetFileSecurityW", "advapi32.dll")(path, which, rights);
}

BOOL WINAPI WatchedMoveFileExW(LPCWSTR from, LPCWSTR to, DWORD flags) {
    return Fails(NotePath("MoveFileExW", from)) ? FALSE : Real(&::MoveFileExW, "MoveFileExW")(from, to, flags);
}

BOOL WINAPI WatchedDeleteFileW(LPCWSTR path) {
    return Fails(NotePath("DeleteFileW", path)) ? FALSE : Real(&::DeleteFileW, "DeleteFileW")(path);
}

void WINAPI WatchedSleep(DWORD milliseconds) {
    if (CSystemCallWatch::IsOn()) {
        g_nWaited += milliseconds;
    } else {
        Real(&::Sleep, "Sleep")(milliseconds);
    }
}

} // namespace

DWORD WaitedMilliseconds() noexcept { return g_nWaited; }

int SystemBlocks() noexcept { return g_nBlocks; }

// What the linker takes for the imported functions: an entry of the program's own goes before that of a library.
extern "C" {

decltype(&::CreateFileA) __imp_CreateFileA = WatchedCreateFileA;
decltype(&::CreateFileW) __imp_CreateFileW = WatchedCreateFileW;
decltype(&::CloseHandle) __imp_CloseHandle = WatchedCloseHandle;
decltype(&::GetFileType) __imp_GetFileType = WatchedGetFileType;
decltype(&::GetFileInformationByHandle) __imp_GetFileInformationByHandle = WatchedGetFileInformationByHandle;
decltype(&::GetFinalPathNameByHandleW) __imp_GetFinalPathNameByHandleW = WatchedGetFinalPathNameByHandleW;
decltype(&::FindFirstFileW) __imp_FindFirstFileW = WatchedFindFirstFileW;
decltype(&::FindNextFileW) __imp_FindNextFileW = WatchedFindNextFileW;
decltype(&::FindClose) __imp_FindClose = WatchedFindClose;
decltype(&::WriteFile) __imp_WriteFile = WatchedWriteFile;
decltype(&::ReadFile) __imp_ReadFile = WatchedReadFile;
decltype(&::GetFileInformationByHandleEx) __imp_GetFileInformationByHandleEx = WatchedGetFileInformationByHandleEx;
decltype(&::OpenProcessToken) __imp_OpenProcessToken = WatchedOpenProcessToken;
decltype(&::GetTokenInformation) __imp_GetTokenInformation = WatchedGetTokenInformation;
decltype(&::ConvertSidToStringSidW) __imp_ConvertSidToStringSidW = WatchedConvertSidToStringSidW;
decltype(&::LocalFree) __imp_LocalFree = CountedLocalFree;
decltype(&::FlushFileBuffers) __imp_FlushFileBuffers = WatchedFlushFileBuffers;
decltype(&::GetFileSizeEx) __imp_GetFileSizeEx = WatchedGetFileSizeEx;
decltype(&::SetFilePointerEx) __imp_SetFilePointerEx = WatchedSetFilePointerEx;
decltype(&::SetEndOfFile) __imp_SetEndOfFile = WatchedSetEndOfFile;
decltype(&::SetFileInformationByHandle) __imp_SetFileInformationByHandle = WatchedSetFileInformationByHandle;
decltype(&::ConvertStringSecurityDescriptorToSecurityDescriptorW)
    __imp_ConvertStringSecurityDescriptorToSecurityDescriptorW =
        WatchedConvertStringSecurityDescriptorToSecurityDescriptorW;
decltype(&::GetFileAttributesW) __imp_GetFileAttributesW = WatchedGetFileAttributesW;
decltype(&::SetFileAttributesW) __imp_SetFileAttributesW = WatchedSetFileAttributesW;
decltype(&::GetFileSecurityW) __imp_GetFileSecurityW = WatchedGetFileSecurityW;
decltype(&::SetFileSecurityW) __imp_SetFileSecurityW = WatchedSetFileSecurityW;
decltype(&::MoveFileExW) __imp_MoveFileExW = WatchedMoveFileExW;
decltype(&::DeleteFileW) __imp_DeleteFileW = WatchedDeleteFileW;
decltype(&::Sleep) __imp_Sleep = WatchedSleep;

// Declared as a function of the program itself, so that it is one.
NTSTATUS WINAPI BCryptGenRandom(BCRYPT_ALG_HANDLE algorithm, PUCHAR bytes, ULONG count, ULONG flags) {
    constexpr auto kUnsuccessful = static_cast<NTSTATUS>(0xC0000001);
    const Fate fate = NotePath("BCryptGenRandom", L"");
    if (fate.nChance >= 0) {
        std::fill_n(bytes, count, static_cast<UCHAR>(fate.nChance));
        return 0;
    }
    return Fails(fate) ? kUnsuccessful
                       : Real(&::BCryptGenRandom, "BCryptGenRandom", "bcrypt.dll")(algorithm, bytes, count, flags);
}

} // extern "C"
