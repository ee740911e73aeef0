// Sizes as the documents hold them (decimal text) and as people read them.

#pragma once

#include <cstdint>
#include <optional>
#include <string>

/// The number when the text is nothing but one, not negative and within 63 bits.
std::optional<int64_t> ParseSize(const std::string& text);

/// The same with a unit behind it: K, M, G or T, with or without "B" or "iB", each 1024 of the one before; "4G", "1.5
/// MiB".
std::optional<int64_t> ParseSizeWithUnit(const std::string& text);

/// "17 bytes", "2.5 KiB", "11.0 MiB", ...; an empty text for an empty one, and the text itself when it is no number.
std::string ReadableSize(const std::string& bytes);

/// The part of a whole that is not 0, in per cent, rounded.
int WholePercent(int64_t part, int64_t whole) noexcept;
