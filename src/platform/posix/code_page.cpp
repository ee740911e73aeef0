// Off Windows the code page is UTF-8, which is the DOM's text too: valid text passes through as it is.

#include "platform/code_page.h"

#include "platform/letter_case.h"
#include "platform/utf8.h"

#include <cstring>

namespace platform {

namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD"; // U+FFFD

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
        const Utf8Step step = Utf8StepAt(text, position);
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
        const Utf8Step step = Utf8StepAt(m_borrowed, position);
        m_strConverted += step.valid ? m_borrowed.substr(position, step.length) : kReplacement;
        position += step.length;
    }
}

AnsiString ToAnsi(std::string_view text) { return AnsiString(text.data(), text.size()); }

char32_t NextCodePoint(std::string_view text, std::size_t& position) noexcept {
    const Utf8Step step = Utf8StepAt(text, position);
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
    while (size != 0 && IsUtf8Continuation(text, size)) {
        --size;
    }
    return size;
}

} // namespace platform
