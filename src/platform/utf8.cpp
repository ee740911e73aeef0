#include "platform/utf8.h"

namespace {

constexpr char32_t kReplacementCharacter = 0xFFFD;

bool IsIn(std::string_view text, std::size_t position, unsigned char low, unsigned char high) noexcept {
    if (position >= text.size()) {
        return false;
    }
    const auto byte = static_cast<unsigned char>(text[position]);
    return byte >= low && byte <= high;
}

} // namespace

Utf8Step Utf8StepAt(std::string_view text, std::size_t position) noexcept {
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
        if (!IsIn(text, position + index, low, high)) {
            return {index, kReplacementCharacter, false};
        }
        codePoint = codePoint << 6 | (static_cast<unsigned char>(text[position + index]) & 0x3Fu);
        low = 0x80;
        high = 0xBF;
    }
    return {length, codePoint, true};
}

bool IsUtf8Continuation(std::string_view text, std::size_t position) noexcept {
    return IsIn(text, position, 0x80, 0xBF);
}

bool DecodeUtf8(std::string_view text, std::size_t& position, char32_t& codePoint) noexcept {
    const Utf8Step step = Utf8StepAt(text, position);
    if (!step.valid) {
        ++position;
        return false;
    }
    position += step.length;
    codePoint = step.codePoint;
    return true;
}

void AppendUtf8(std::string& text, char32_t codePoint) {
    if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        codePoint = kReplacementCharacter;
    }
    const auto append = [&text](char32_t unit) { text += static_cast<char>(static_cast<unsigned char>(unit)); };
    if (codePoint < 0x80) {
        append(codePoint);
        return;
    }
    if (codePoint < 0x800) {
        append(0xC0 | (codePoint >> 6));
    } else {
        if (codePoint < 0x10000) {
            append(0xE0 | (codePoint >> 12));
        } else {
            append(0xF0 | (codePoint >> 18));
            append(0x80 | ((codePoint >> 12) & 0x3F));
        }
        append(0x80 | ((codePoint >> 6) & 0x3F));
    }
    append(0x80 | (codePoint & 0x3F));
}

std::string Utf16ToUtf8(std::u16string_view text) {
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        char32_t codePoint = text[i];
        const bool paired = codePoint >= 0xD800 && codePoint <= 0xDBFF && i + 1 < text.size() &&
                            text[i + 1] >= 0xDC00 && text[i + 1] <= 0xDFFF;
        if (paired) {
            codePoint = 0x10000 + ((codePoint - 0xD800) << 10) + (text[++i] - 0xDC00u);
        }
        AppendUtf8(result, codePoint);
    }
    return result;
}

std::u16string Utf8ToUtf16(std::string_view text) {
    std::u16string result;
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < text.size();) {
        if (!DecodeUtf8(text, position, codePoint)) {
            codePoint = kReplacementCharacter;
        }
        if (codePoint >= 0x10000) {
            result += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            result += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        } else {
            result += static_cast<char16_t>(codePoint);
        }
    }
    return result;
}
