// JSON that a verb reads from a file or from standard input.

#pragma once

#include "platform/document_limits.h"
#include "value.h"

#include <cstdint>
#include <string>

/// Most bytes of JSON: what is read of it becomes a document, which is no larger.
inline constexpr std::uint64_t kMostJsonBytes = kMaxDocumentBytes;

/// Reads the file, or standard input for "-". Throws CFailure (Refused), calling it `what`, with `shape` as advice.
Value ReadJsonInput(const std::string& file, const std::string& what, const std::string& shape);
