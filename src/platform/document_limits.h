// How large a document may be, alike on every target.

#pragma once

#include <cstddef>

#ifdef CORDELBOX_SMALL_LIMITS
// Limits within the reach of a fuzzer.
inline constexpr std::size_t kMaxDocumentBytes = std::size_t{12} << 10;
inline constexpr std::size_t kMaxElementDepth = 20;
#else
/// Largest document that is loaded or saved, in bytes on disk.
inline constexpr std::size_t kMaxDocumentBytes = std::size_t{256} << 20;

/// Deepest nesting of elements that is loaded or made.
inline constexpr std::size_t kMaxElementDepth = 1000;
#endif
