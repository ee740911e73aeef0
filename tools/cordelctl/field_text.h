// Fills the fixed text fields of the library's records. A longer value in a document is fatal to a host that reads it
// back into such a field, so none is ever written.

#pragma once

#include <cstddef>
#include <string>

/// Bytes that a field of a file holds beside its terminating zero.
inline constexpr std::size_t kFieldLength = 255;

/// The text without control characters that XML cannot hold, cut to `limit` bytes at a character. Says on standard
/// error what was changed; `what` names the text.
std::string FitText(const std::string& text, std::size_t limit, const std::string& what);

/// Throws when the text is longer than `limit` bytes or holds what a document cannot hold.
void RequireFit(const std::string& text, std::size_t limit, const std::string& what);

/// Copies a text that fits.
template <std::size_t size>
void CopyText(char (&field)[size], const std::string& text) {
    field[text.copy(field, size - 1)] = '\0';
}

/// Copies a text that must fit as it is.
template <std::size_t size>
void FillExactly(char (&field)[size], const std::string& text, const std::string& what) {
    RequireFit(text, size - 1, what);
    CopyText(field, text);
}

/// Copies a text that may be cut.
template <std::size_t size>
void FillCut(char (&field)[size], const std::string& text, const std::string& what) {
    CopyText(field, FitText(text, size - 1, what));
}
