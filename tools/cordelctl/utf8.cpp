// UTF-8, one code point at a time.

#include "utf8.h"

bool DecodeUtf8(std::string_view text, std::size_t& position, char32_t& codePoint) noexcept {
    const auto lead = static_cast<unsigned char>(text[position++]);
    if (lead < 0x80) {
        codePoint = lead;
        return true;
    }
    const std::size_t following = lead >= 0xF0 ? 3 : lead >= 0xE0 ? 2 : 1;
    if (lead < 0xC2 || lead > 0xF4 || text.size() - position < following) {
        return false;
    }
    codePoint = lead & (0x3Fu >> following);
    for (std::size_t i = 0; i < following; ++i) {
        const auto next = static_cast<unsigned char>(text[position + i]);
        if ((next & 0xC0) != 0x80) {
            return false;
        }
        codePoint = (codePoint << 6) | (next & 0x3Fu);
    }
    constexpr char32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
    if (codePoint < kSmallest[following] || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        return false;
    }
    position += following;
    return true;
}

void AppendUtf8(std::string& text, char32_t codePoint) {
    if (codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint <= 0xDFFF)) {
        codePoint = 0xFFFD;
    }
    const auto append = [&text](char32_t byte) { text += static_cast<char>(static_cast<unsigned char>(byte)); };
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
            codePoint = 0xFFFD;
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
