// Where the host and the user live in the file system.

#pragma once

#include "cordelbox.h"
#include "platform/reason.h"

namespace platform {

/// Longest path that the library handles, in bytes, the terminating zero included.
inline constexpr std::size_t kPathSize = 260;

/// '\' on Windows, '/' elsewhere.
extern const char kPathSeparator;

/// Folder of the host's executable (of the process, not of this library), as it was called when it was asked for first;
/// ends in a separator only when it is a root. Empty when it cannot be had or is too long.
AnsiString HostFolder();

/// The per-user root for roaming application data; it need not exist. Empty when there is none.
AnsiString ApplicationDataFolder();

/// Rewrites the separators of a relative path, in place, to those of the target.
void ToNativeSeparators(char* path) noexcept;

/// True when the path is a regular file that can be opened for reading and writing and that no other program
/// holds open to the exclusion of others, and no link that somebody else prepared leads to it. Otherwise `reason`,
/// where one is wanted, says which of these it is not. Throws std::bad_alloc.
bool IsPresentAndWritable(const char* path, CReason* reason = nullptr);

/// What tells one state of a file from another: which file it is, its size, and its times.
struct FileStamp {
    std::uint64_t device = 0;
    std::uint64_t file = 0;
    std::uint64_t size = 0;
    std::uint64_t modified = 0; // in the smallest units of the system
    std::uint64_t changed = 0;  // contents or anything else

    friend bool operator==(const FileStamp&, const FileStamp&) = default;
};

/// The stamp of the file that the path leads to. All zeros when there is none; `reason`, where one is wanted, says why.
FileStamp StampOf(const char* path, CReason* reason = nullptr) noexcept;

} // namespace platform
