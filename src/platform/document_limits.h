// How large a document may be, alike on every target.

#pragma once

#include <cstddef>

/// Largest document that is loaded, in bytes on disk.
inline constexpr std::size_t kMaxDocumentBytes = std::size_t{256} << 20;

/// Deepest nesting of elements that is loaded.
inline constexpr std::size_t kMaxElementDepth = 1000;
