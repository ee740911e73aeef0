// What the tool needs of the system, beside the standard library. Texts are 8-bit, in the system's code page, as the
// library takes them.

#pragma once

#include "cordelbox.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

namespace platform {

/// Folder of this executable, links resolved; empty when it cannot be had.
std::filesystem::path ExecutableFolder();

/// Where a user's roaming application data lies; empty when there is no such place.
std::filesystem::path PerUserRoot();

/// Between texts and paths.
std::string TextOf(const std::filesystem::path& path);
std::filesystem::path PathOf(std::string_view text);

/// Between texts and UTF-8. What the other side cannot hold is replaced.
std::string FromUtf8(std::string_view utf8);
std::string ToUtf8(std::string_view text);

bool IsWellFormed(std::string_view text) noexcept;

/// Length of the longest beginning of the text with at most `limit` bytes that ends with a whole character.
std::size_t CutLength(std::string_view text, std::size_t limit) noexcept;

enum class FileState {
    Absent,
    NotAFile,
    NotWritable, // not readable and writable for this user
    InUse,       // held by another program to the exclusion of others
    Writable
};

/// What the library finds when it looks for a per-user copy there: only a Writable one counts as present.
FileState StateOf(const std::filesystem::path& path);

/// Changes whenever the file is written or replaced; all zero when it is absent.
using FileStamp = std::array<std::uint64_t, 4>;
FileStamp StampOf(const std::filesystem::path& path);

/// Puts `source`, a complete file in the folder of `target`, in the place of `target`, in one step.
void Replace(const std::filesystem::path& source, const std::filesystem::path& target);

/// A semaphore as the library wants it for the list of documents; null when there is none to be had.
SemaphoreHandle NewSemaphore();
void DeleteSemaphore(SemaphoreHandle semaphore) noexcept;

} // namespace platform
