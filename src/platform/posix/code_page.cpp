// Off Windows the code page is UTF-8, which is the DOM's text too: valid text passes through as it is.

#include "platform/code_page.h"

#include "platform/letter_case.h"

#include <cstring>

namespace platform {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD
constexpr char32_t kReplacementCharacter = 0xFFFD;

/// One step through UTF-8 text: a code point, or the longest part of one that is ill-formed.
struct Step {
    std::size_t length;
    char32_t codePoint;
    bool valid;
};

bool IsContinuation(std::string_view text, std::size_t position, unsigned char low, unsigned char high) noexcept {
    if (position >= text.size()) {
        return false;
    }
    const auto byte = static_cast<unsigned char>(text[position]);
    return byte >= low && byte <= high;
}

Step StepAt(std::string_view text, std::size_t position) noexcept {
    const auto lead = static_cast<unsigned char>(text[position]);
    if (lead < 0x80) {
        return {1, lead, true};
    }
    // The range of the second byte excludes overlong forms, surrogates and what lies beyond U+10FFFF.
    std::size_t length = 0;
    unsigned char low = 0x80;
    unsigned char high = 0xBF;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3;
        low = lead == 0xE0 ? 0xA0 : low;
        high = lead == 0xED ? 0x9F : high;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4;
        low = lead == 0xF0 ? 0x90 : low;
        high = lead == 0xF4 ? 0x8F : high;
    } else {
        return {1, kReplacementCharacter, false};
    }
    char32_t codePoint = lead & (0xFFu >> (length + 1));
    for (std::size_t index = 1; index < length; ++index) {
        if (!IsContinuation(text, position + index, low, high)) {
            return {index, kReplacementCharacter, false};
        }
        codePoint = codePoint << 6 | (static_cast<unsigned char>(text[position + index]) & 0x3Fu);
        low = 0x80;
        high = 0xBF;
    }
    return {length, codePoint, true};
}

/// Most texts are, and every lookup asks it of several.
bool IsAscii(std::string_view text) noexcept {
    constexpr std::uint64_t kHighBits = 0x8080808080808080u;
    constexpr std::size_t kStep = sizeof kHighBits;
    std::uint64_t bits = 0;
    if (text.size() < kStep) {
        for (const char character : text) {
            bits |= static_cast<unsigned char>(character);
        }
        return (bits & kHighBits) == 0;
    }
    std::uint64_t block = 0;
    for (std::size_t position = 0; position + kStep < text.size(); position += kStep) {
        std::memcpy(&block, text.data() + position, kStep);
        bits |= block;
    }
    std::memcpy(&block, text.data() + text.size() - kStep, kStep);
    return ((bits | block) & kHighBits) == 0;
}

/// Length of the leading part of `text` that is well-formed.
std::size_t ValidPrefix(std::string_view text) noexcept {
    if (IsAscii(text)) {
        return text.size();
    }
    std::size_t position = 0;
    while (position < text.size()) {
        const Step step = StepAt(text, position);
        if (!step.valid) {
            break;
        }
        position += step.length;
    }
    return position;
}

} // namespace

CDomArgument::CDomArgument(const AnsiString& text) : m_borrowed(text.c_str(), text.size()) {
    std::size_t position = ValidPrefix(m_borrowed);
    if (position == m_borrowed.size()) {
        return;
    }
    m_strConverted.assign(m_borrowed, 0, position);
    while (position < m_borrowed.size()) {
        const Step step = StepAt(m_borrowed, position);
        m_strConverted += step.valid ? m_borrowed.substr(position, step.length) : kReplacement;
        position += step.length;
    }
}

AnsiString ToAnsi(std::string_view text) { return AnsiString(text.data(), text.size()); }

char32_t NextCodePoint(std::string_view text, std::size_t& position) noexcept {
    const Step step = StepAt(text, position);
    position += step.length;
    return step.codePoint;
}

bool EqualIgnoringCase(std::string_view left, std::string_view right) {
    std::size_t inLeft = 0;
    std::size_t inRight = 0;
    while (inLeft < left.size() && inRight < right.size()) {
        if (LowerCase(NextCodePoint(left, inLeft)) != LowerCase(NextCodePoint(right, inRight))) {
            return false;
        }
    }
    return inLeft == left.size() && inRight == right.size();
}

std::size_t FindCharacter(std::string_view text, char character) noexcept { return text.find(character); }

std::size_t WholeCharacters(std::string_view text, std::size_t size) noexcept {
    if (size >= text.size()) {
        return text.size();
    }
    while (size != 0 && IsContinuation(text, size, 0x80, 0xBF)) {
        --size;
    }
    return size;
}

} // namespace platform
