// Texts as they may reach a terminal.

#include "text/printable.h"

#include "platform/utf8.h"

#include <algorithm>
#include <array>
#include <cstdio>

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

bool IsIn(char32_t codePoint, const Range* begin, const Range* end) {
    return std::any_of(begin, end,
                       [codePoint](const Range& range) { return codePoint >= range.first && codePoint <= range.last; });
}

/// Controls, bidirectional controls, line and paragraph separators, and tag characters, which hide text.
bool IsHidden(char32_t codePoint) {
    static constexpr std::array kRanges{Range{0, 0x1F},        Range{0x7F, 0x9F},     Range{0x61C, 0x61C},
                                        Range{0x200B, 0x200F}, Range{0x2028, 0x202E}, Range{0x2060, 0x2069},
                                        Range{0xFEFF, 0xFEFF}, Range{0xFFF9, 0xFFFB}, Range{0xE0000, 0xE007F}};
    return IsIn(codePoint, kRanges.data(), kRanges.data() + kRanges.size());
}

bool IsCombining(char32_t codePoint) {
    static constexpr std::array kRanges{Range{0x300, 0x36F},   Range{0x483, 0x489},   Range{0x591, 0x5BD},
                                        Range{0x64B, 0x65F},   Range{0x1AB0, 0x1AFF}, Range{0x1DC0, 0x1DFF},
                                        Range{0x20D0, 0x20FF}, Range{0xFE00, 0xFE0F}, Range{0xFE20, 0xFE2F}};
    return IsIn(codePoint, kRanges.data(), kRanges.data() + kRanges.size());
}

bool IsWide(char32_t codePoint) {
    static constexpr std::array kRanges{Range{0x1100, 0x115F},  Range{0x2E80, 0x303E}, Range{0x3041, 0x33FF},
                                        Range{0x3400, 0x4DBF},  Range{0x4E00, 0x9FFF}, Range{0xA000, 0xA4CF},
                                        Range{0xAC00, 0xD7A3},  Range{0xF900, 0xFAFF}, Range{0xFE30, 0xFE6F},
                                        Range{0xFF00, 0xFF60},  Range{0xFFE0, 0xFFE6}, Range{0x1F300, 0x1FAFF},
                                        Range{0x20000, 0x3FFFD}};
    return IsIn(codePoint, kRanges.data(), kRanges.data() + kRanges.size());
}

std::size_t WidthOf(char32_t codePoint) { return IsCombining(codePoint) ? 0 : IsWide(codePoint) ? 2 : 1; }

void AppendVisible(std::string& text, char32_t codePoint) {
    char escape[16];
    std::snprintf(escape, sizeof escape, "\\u{%X}", static_cast<unsigned>(codePoint));
    text += escape;
}

std::string MadePrintable(std::string_view utf8, bool keepsLineEnds) {
    std::string text;
    text.reserve(utf8.size());
    for (std::size_t position = 0; position < utf8.size();) {
        const std::size_t start = position;
        char32_t codePoint = 0;
        if (!DecodeUtf8(utf8, position, codePoint)) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\x%02X",
                          static_cast<unsigned>(static_cast<unsigned char>(utf8[start])));
            text += escape;
        } else if (codePoint == '\n' && keepsLineEnds) {
            text += '\n';
        } else if (codePoint == '\n' || codePoint == '\t' || codePoint == '\r') {
            text += ' ';
        } else if (IsHidden(codePoint)) {
            AppendVisible(text, codePoint);
        } else {
            text += utf8.substr(start, position - start);
        }
    }
    return text;
}

} // namespace

std::string Printable(std::string_view utf8) { return MadePrintable(utf8, false); }

std::string PrintableLines(std::string_view utf8) { return MadePrintable(utf8, true); }

std::size_t DisplayWidth(std::string_view utf8) {
    std::size_t width = 0;
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < utf8.size();) {
        width += DecodeUtf8(utf8, position, codePoint) ? WidthOf(codePoint) : 1;
    }
    return width;
}

std::string FitWidth(std::string_view utf8, std::size_t width) {
    if (DisplayWidth(utf8) <= width) {
        return std::string(utf8);
    }
    std::size_t used = 0;
    std::size_t position = 0;
    for (;;) {
        std::size_t next = position;
        char32_t codePoint = 0;
        const std::size_t taken = DecodeUtf8(utf8, next, codePoint) ? WidthOf(codePoint) : 1;
        if (used + taken + 1 > width) {
            return std::string(utf8.substr(0, position)) + (width > 0 ? "~" : "");
        }
        used += taken;
        position = next;
    }
}
