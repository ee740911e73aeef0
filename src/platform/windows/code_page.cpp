// The system's ANSI code page: UTF-16 is the DOM's text, and a character of the 8-bit text has one byte or two,
// or up to four where the code page is UTF-8. The second byte of a character is never read as one of its own.

#include "platform/code_page.h"

#include "platform/letter_case.h"
#include "wide_text.h"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace platform {

namespace {

int CheckedLength(std::size_t length) {
    // Three bytes for each unit must still be countable.
    if (length > static_cast<std::size_t>(std::numeric_limits<int>::max() / 3)) {
        throw std::bad_alloc();
    }
    return static_cast<int>(length);
}

/// As many bytes as a character that begins with this byte has in UTF-8, as far as the byte tells.
std::size_t Utf8Length(unsigned char first) noexcept {
    return first < 0xC2 ? 1 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
}

/// Length of the character at the start of `text`, which is not empty.
std::size_t CharacterLength(std::string_view text) noexcept {
    const auto first = static_cast<unsigned char>(text.front());
    std::size_t length = 1;
    if (first >= 0x80) {
        length = ::GetACP() == CP_UTF8 ? Utf8Length(first) : ::IsDBCSLeadByte(first) != FALSE ? 2 : 1;
    }
    return length < text.size() ? length : text.size();
}

/// The code point of a character that is valid in the code page; 0 when the system cannot tell.
char32_t CodePointOf(std::string_view character) noexcept {
    if (static_cast<unsigned char>(character.front()) < 0x80) {
        return static_cast<unsigned char>(character.front());
    }
    std::array<wchar_t, 8> units{};
    ::MultiByteToWideChar(CP_ACP, 0, character.data(), static_cast<int>(character.size()), units.data(),
                          static_cast<int>(units.size()));
    std::size_t position = 0;
    return NextCodePoint(std::wstring_view(units.data(), units.size()), position);
}

/// Whether two different characters are one letter in two cases. Two codes of one character are no such letter.
bool AreOneLetter(std::string_view left, std::string_view right) noexcept {
    const char32_t leftCodePoint = CodePointOf(left);
    const char32_t rightCodePoint = CodePointOf(right);
    return leftCodePoint != rightCodePoint && LowerCase(leftCodePoint) == LowerCase(rightCodePoint);
}

/// Whether the text, which has a byte beyond ASCII, is valid in the code page.
bool IsValid(std::string_view text) {
    return ::MultiByteToWideChar(CP_ACP, MB_ERR_INVALID_CHARS, text.data(), CheckedLength(text.size()), nullptr, 0) > 0;
}

/// The text as it reads back once it is stored: bytes that are not valid are another character by then.
AnsiString AsStored(std::string_view text) {
    const bool bAscii = std::all_of(text.begin(), text.end(), [](char byte) { return byte >= 0; });
    return bAscii || IsValid(text) ? AnsiString(text.data(), text.size()) : ToAnsi(ToWideText(text));
}

} // namespace

CDomArgument::CDomArgument(const AnsiString& text)
    : m_strConverted(ToWideText(std::string_view(text.c_str(), text.size()))) {}

std::wstring ToWideText(std::string_view text) {
    std::wstring wide(static_cast<std::size_t>(CheckedLength(text.size())), L'\0');
    if (!text.empty()) {
        // No character becomes more units than it has bytes.
        const int length = ::MultiByteToWideChar(CP_ACP, 0, text.data(), static_cast<int>(text.size()), wide.data(),
                                                 static_cast<int>(wide.size()));
        wide.resize(static_cast<std::size_t>(length));
    }
    return wide;
}

AnsiString ToAnsi(std::wstring_view text) {
    if (text.empty()) {
        return AnsiString();
    }
    // The likeness of a character is not the character; UTF-8, which lacks none, does not take the flag.
    const DWORD flags = ::GetACP() == CP_UTF8 ? 0 : WC_NO_BEST_FIT_CHARS;
    const int units = CheckedLength(text.size());
    std::array<char, 768> local;
    std::string longer;
    char* bytes = local.data();
    int size = static_cast<int>(local.size());
    if (units * 3 > size) {
        size = units * 3;
        longer.resize(static_cast<std::size_t>(size));
        bytes = longer.data();
    }
    const int length = ::WideCharToMultiByte(CP_ACP, flags, text.data(), units, bytes, size, nullptr, nullptr);
    return AnsiString(bytes, static_cast<std::size_t>(length));
}

char32_t NextCodePoint(std::wstring_view text, std::size_t& position) noexcept {
    const char32_t unit = text[position++];
    if (unit >= 0xD800 && unit < 0xDC00 && position < text.size()) {
        const char32_t next = text[position];
        if (next >= 0xDC00 && next < 0xE000) {
            ++position;
            return 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00);
        }
    }
    return unit;
}

bool EqualIgnoringCase(std::string_view leftText, std::string_view rightText) {
    const AnsiString storedLeft = AsStored(leftText);
    const AnsiString storedRight = AsStored(rightText);
    std::string_view left(storedLeft.c_str(), storedLeft.size());
    std::string_view right(storedRight.c_str(), storedRight.size());
    while (!left.empty() && !right.empty()) {
        const std::string_view leftCharacter = left.substr(0, CharacterLength(left));
        const std::string_view rightCharacter = right.substr(0, CharacterLength(right));
        if (leftCharacter != rightCharacter && !AreOneLetter(leftCharacter, rightCharacter)) {
            return false;
        }
        left.remove_prefix(leftCharacter.size());
        right.remove_prefix(rightCharacter.size());
    }
    return left.empty() && right.empty();
}

std::size_t FindCharacter(std::string_view text, char character) noexcept {
    for (std::size_t position = 0; position < text.size(); position += CharacterLength(text.substr(position))) {
        if (text[position] == character) {
            return position;
        }
    }
    return std::string_view::npos;
}

std::size_t WholeCharacters(std::string_view text, std::size_t size) noexcept {
    if (size >= text.size()) {
        return text.size();
    }
    std::size_t end = 0;
    for (std::size_t next = 0; next <= size; next += CharacterLength(text.substr(next))) {
        end = next;
    }
    return end;
}

} // namespace platform
