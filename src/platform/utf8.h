// UTF-8, one code point at a time.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// One step through text: a code point, or the longest part of one that is ill-formed, which counts as U+FFFD.
struct Utf8Step {
    std::size_t length;
    char32_t codePoint;
    bool valid;
};

/// The step at `position`, which is before the end.
Utf8Step Utf8StepAt(std::string_view text, std::size_t position) noexcept;

/// Whether the byte at `position`, which is before the end, is a further one of a code point.
bool IsUtf8Continuation(std::string_view text, std::size_t position) noexcept;

/// Decodes the code point at `position` and moves behind it. False, and one byte further, when the bytes there are
/// not well-formed.
bool DecodeUtf8(std::string_view text, std::size_t& position, char32_t& codePoint) noexcept;

/// Appends the code point; one that is no character (a surrogate, say) becomes U+FFFD.
void AppendUtf8(std::string& text, char32_t codePoint);

/// Well-formed UTF-8 from UTF-16; unpaired surrogates become U+FFFD.
std::string Utf16ToUtf8(std::u16string_view text);

/// UTF-16 from UTF-8; what is not well-formed becomes U+FFFD.
std::u16string Utf8ToUtf16(std::string_view text);
