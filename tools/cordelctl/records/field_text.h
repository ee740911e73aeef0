// Fills the fixed text fields of the library's records. A longer value in a document is fatal to a host that reads it
// back into such a field, so none is ever written.

#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <vector>

/// Bytes that a field of a file holds beside its terminating zero.
inline constexpr std::size_t kFieldLength = 255;

/// What was changed of texts to make them fit, a line each.
using FitNotes = std::vector<std::string>;

/// The text in the code page, without control characters that XML cannot hold, cut to `limit` bytes at a character.
/// Notes what was changed; `what` names the text.
std::string FitText(const std::string& utf8, std::size_t limit, const std::string& what, FitNotes& notes);

/// The text in the code page. Throws CFailure (Refused) when it is longer than `limit` bytes there, or holds what a
/// document or the code page cannot hold.
std::string RequireFit(const std::string& utf8, std::size_t limit, const std::string& what);

/// Copies a text that fits.
template <std::size_t size>
void CopyText(char (&field)[size], const std::string& text) {
    field[text.copy(field, size - 1)] = '\0';
}

/// Copies a text that must fit as it is.
template <std::size_t size>
void FillExactly(char (&field)[size], const std::string& utf8, const std::string& what) {
    CopyText(field, RequireFit(utf8, size - 1, what));
}

/// The bytes of a detail record.
template <class Detail>
std::vector<char> BytesOf(const Detail& detail) {
    std::vector<char> bytes(sizeof detail);
    std::memcpy(bytes.data(), &detail, sizeof detail);
    return bytes;
}
