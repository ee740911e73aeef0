// The file of a document as the library finds it.

#pragma once

#include "platform/folders.h"

#include <filesystem>
#include <string>

enum class FileState {
    Absent,
    NotAFile,
    NotWritable, // not readable and writable for this user, or for nobody
    InUse,       // held by another program to the exclusion of others
    Writable
};

/// The path as the library takes it.
std::string LibraryPath(const std::filesystem::path& path);

/// What the library finds when it looks for a per-user copy there: only a Writable one counts as present.
FileState StateOf(const std::filesystem::path& path);

/// Changes whenever the file is written or replaced; all zero when it is absent.
platform::FileStamp StampOf(const std::filesystem::path& path);
