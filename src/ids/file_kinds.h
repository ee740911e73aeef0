// The kinds of files whose IDs are checked, each within its own group.

#pragma once

#include "cordelbox.h"

#include <span>

enum class FileKind : int32_t { Fonts = 0, Type2 = 1, Type8 = 2 };

/// The kind of files of a Type; null for a Type that is not checked.
const FileKind* KindOfType(const AnsiString& type) noexcept;

/// The Types of a kind.
std::span<const char* const> TypesOfKind(FileKind kind) noexcept;

/// The kind's name in the strings document.
AnsiString KindName(CXmlObject* strings, FileKind kind);
