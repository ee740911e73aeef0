// The bytes of a document, and what they say of their encoding.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Larger documents are not opened by the library.
inline constexpr std::size_t kLargestDocument = std::size_t{256} << 20;

/// Deeper documents are not opened by the library.
inline constexpr int kDeepestDocument = 1000;

/// The encoding in capitals: by byte order mark, by the zero bytes of UTF-16, by the XML declaration, or else UTF-8.
std::string EncodingOf(std::string_view bytes);
