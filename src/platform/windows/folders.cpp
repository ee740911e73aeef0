// Folders and the existence test, by the system's 8-bit functions.

#include "platform/folders.h"

#include "file_handle.h"

#include <shlobj.h>
#include <shlwapi.h>

namespace platform {

const char kPathSeparator = '\\';

AnsiString HostFolder() {
    char path[kPathSize] = {};
    const DWORD length = ::GetModuleFileNameA(nullptr, path, kPathSize);
    if (length == 0 || length >= kPathSize) {
        return AnsiString();
    }
    ::PathRemoveFileSpecA(path);
    return AnsiString(path);
}

AnsiString ApplicationDataFolder() {
    char path[kPathSize] = {};
    if (::SHGetSpecialFolderPathA(nullptr, path, CSIDL_APPDATA, FALSE) == FALSE) {
        return AnsiString();
    }
    return AnsiString(path);
}

void ToNativeSeparators(char*) noexcept {} // relative paths are written with the target's separator already

bool IsPresentAndWritable(const char* path, CReason* reason) {
    const CFileHandle file(
        ::CreateFileA(path, GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
    BY_HANDLE_FILE_INFORMATION information;
    CReason found;
    // The attributes are asked too: a privileged process may be let into a read-only file. A folder is not opened so.
    if (!file) {
        found = CReason::OfCall("CreateFile", ::GetLastError());
    } else if (::GetFileType(file.Get()) != FILE_TYPE_DISK) {
        found = CReason::Of(ReasonKind::NotRegular);
    } else if (::GetFileInformationByHandle(file.Get(), &information) == FALSE) {
        found = CReason::OfCall("GetFileInformationByHandle", ::GetLastError());
    } else if ((information.dwFileAttributes & FILE_ATTRIBUTE_READONLY) != 0) {
        found = CReason::Of(ReasonKind::NotPermitted);
    }
    const bool bPresent = !found;
    GiveReason(reason, std::move(found));
    return bPresent;
}

FileStamp StampOf(const char* path, CReason* reason) noexcept {
    const CFileHandle file(::CreateFileA(path, FILE_READ_ATTRIBUTES,
                                         FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING,
                                         FILE_ATTRIBUTE_NORMAL, nullptr));
    BY_HANDLE_FILE_INFORMATION information;
    if (!file || ::GetFileInformationByHandle(file.Get(), &information) == FALSE) {
        GiveReason(reason, CReason::OfCall(file ? "GetFileInformationByHandle" : "CreateFile", ::GetLastError()));
        return {};
    }
    const auto join = [](DWORD high, DWORD low) { return static_cast<std::uint64_t>(high) << 32 | low; };
    FILE_BASIC_INFO times = {};
    ::GetFileInformationByHandleEx(file.Get(), FileBasicInfo, &times, sizeof times); // not every file system has it
    return {information.dwVolumeSerialNumber, join(information.nFileIndexHigh, information.nFileIndexLow),
            join(information.nFileSizeHigh, information.nFileSizeLow),
            join(information.ftLastWriteTime.dwHighDateTime, information.ftLastWriteTime.dwLowDateTime),
            static_cast<std::uint64_t>(times.ChangeTime.QuadPart)};
}

} // namespace platform
