#include "page/page_text.h"

#include "utf8.h"

namespace {

constexpr char32_t kReplacement = 0xFFFD;
constexpr char32_t kPictures = 0x2400; // of the control characters from 0 on
constexpr char32_t kDelete = 0x7F;
constexpr char32_t kPictureOfDelete = 0x2421;

bool TurnsDirection(char32_t codePoint) noexcept {
    return codePoint == 0x061C || codePoint == 0x200E || codePoint == 0x200F ||
           (codePoint >= 0x202A && codePoint <= 0x202E) || (codePoint >= 0x2066 && codePoint <= 0x2069);
}

std::string NumberOf(char32_t codePoint) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string number = "[U+";
    for (int shift = 12; shift >= 0; shift -= 4) {
        number += kDigits[(codePoint >> shift) & 0xF];
    }
    return number + ']';
}

char32_t Visible(char32_t codePoint) noexcept {
    if (codePoint < 0x20) {
        return codePoint == '\t' ? U' ' : kPictures + codePoint;
    }
    if (codePoint == kDelete) {
        return kPictureOfDelete;
    }
    const bool bC1 = codePoint > kDelete && codePoint < 0xA0;
    const bool bNone = (codePoint & 0xFFFE) == 0xFFFE || (codePoint >= 0xFDD0 && codePoint <= 0xFDEF);
    return bC1 || bNone ? kReplacement : codePoint;
}

} // namespace

std::string PageText(std::string_view utf8) {
    std::string text;
    for (std::size_t position = 0; position < utf8.size();) {
        char32_t codePoint = 0;
        if (!DecodeUtf8(utf8, position, codePoint)) {
            codePoint = kReplacement;
        }
        if (TurnsDirection(codePoint)) {
            text += NumberOf(codePoint);
        } else {
            AppendUtf8(text, Visible(codePoint));
        }
    }
    return text;
}
