// Between 8-bit text in the system's code page and the DOM's text, and comparisons that know the code page.

#pragma once

#include "cordelbox.h"
#include "dom_types.h"

#include <string>
#include <string_view>

namespace platform {

/// 8-bit text as the DOM's text. Bytes that are not valid in the code page become U+FFFD.
class CDomArgument {
public:
    /// Throws std::bad_alloc. The buffer of `text` must outlive the argument.
    explicit CDomArgument(const AnsiString& text);
    std::basic_string_view<DomChar> View() const noexcept {
        return m_strConverted.empty() ? m_borrowed : std::basic_string_view<DomChar>(m_strConverted);
    }

private:
    std::basic_string<DomChar> m_strConverted;
    std::basic_string_view<DomChar> m_borrowed; // the bytes themselves, where they serve as they are
};

/// The DOM's text as 8-bit text; a character that the code page lacks becomes its default character.
AnsiString ToAnsi(std::basic_string_view<DomChar> text);

/// Decodes the code point at `position` and moves behind it. A unit that belongs to no character (an unpaired
/// surrogate) is returned as it is.
char32_t NextCodePoint(std::basic_string_view<DomChar> text, std::size_t& position) noexcept;

/// Compares 8-bit texts character by character of the code page, with letters in lower case. Bytes that are not valid
/// in the code page count as the character that they would be stored as.
bool EqualIgnoringCase(std::string_view left, std::string_view right);

/// Position of the first occurrence of the ASCII character, never inside a multibyte character; npos if none.
std::size_t FindCharacter(std::string_view text, char character) noexcept;

/// Length of the longest beginning of `text` that ends with a character and has at most `size` bytes.
std::size_t WholeCharacters(std::string_view text, std::size_t size) noexcept;

} // namespace platform
