// Sizes as the documents hold them (decimal text) and as people read them.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The number when the text is nothing but one, not negative and within 63 bits.
std::optional<int64_t> ParseSize(const std::string& text);

/// "17 bytes", "2.5 KiB", "11.0 MiB", ...; an empty text for an empty one, and the text itself when it is no number.
std::string ReadableSize(const std::string& bytes);
