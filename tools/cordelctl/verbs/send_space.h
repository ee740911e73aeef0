// The figures that sending is worked out from: sizes of files and what is free on volumes.

#pragma once

#include "document/document.h"

#include <cstdint>
#include <string>

/// A number of bytes as a document has it. Throws CFailure (Refused), calling it `what`, when it is none.
std::int64_t RequireSize(const std::string& text, const std::string& what);

/// What is free on the volume, as it is recorded. Throws CFailure: Missing when there is no such volume, Refused when
/// the figure is none.
std::int64_t FreeSpaceOf(CDocument& printer, const std::string& volume);
