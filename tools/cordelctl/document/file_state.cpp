// The file of a document as the library finds it.

#include "document/file_state.h"

#include "system/system.h"

std::string LibraryPath(const std::filesystem::path& path) { return host::ToCodePage(host::TextOf(path)); }

FileState StateOf(const std::filesystem::path& path) {
    std::error_code none;
    if (std::filesystem::is_directory(path, none)) {
        return FileState::NotAFile; // which some systems only refuse to open
    }
    CReason reason;
    if (platform::IsPresentAndWritable(LibraryPath(path).c_str(), &reason)) {
        return FileState::Writable;
    }
    switch (reason.m_kind) {
    case ReasonKind::Absent:
        return FileState::Absent;
    case ReasonKind::NotRegular:
        return FileState::NotAFile;
    case ReasonKind::InUse:
        return FileState::InUse;
    default:
        return FileState::NotWritable;
    }
}

platform::FileStamp StampOf(const std::filesystem::path& path) { return platform::StampOf(LibraryPath(path).c_str()); }
