#include "platform/xml_characters.h"

#include "platform/code_page.h"

#include <algorithm>
#include <iterator>

namespace {

struct Range {
    char32_t first;
    char32_t last;
};

constexpr Range kText[] = {{0x9, 0xA}, {0xD, 0xD}, {0x20, 0xD7FF}, {0xE000, 0xFFFD}, {0x10000, 0x10FFFF}};

constexpr Range kNameStart[] = {{':', ':'},       {'A', 'Z'},       {'_', '_'},       {'a', 'z'},
                                {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x2FF},    {0x370, 0x37D},
                                {0x37F, 0x1FFF},  {0x200C, 0x200D}, {0x2070, 0x218F}, {0x2C00, 0x2FEF},
                                {0x3001, 0xD7FF}, {0xF900, 0xFDCF}, {0xFDF0, 0xFFFD}, {0x10000, 0xEFFFF}};

constexpr Range kNameFurther[] = {{'-', '.'}, {'0', '9'}, {0xB7, 0xB7}, {0x300, 0x36F}, {0x203F, 0x2040}};

/// Letters of the alphabets in use, as far as the editions agree on them.
constexpr Range kNameInEveryEdition[] = {{'-', '.'},       {'0', ':'},       {'A', 'Z'},      {'_', '_'},
                                         {'a', 'z'},       {0xB7, 0xB7},     {0xC0, 0xD6},    {0xD8, 0xF6},
                                         {0xF8, 0x131},    {0x134, 0x13E},   {0x141, 0x148},  {0x14A, 0x17E},
                                         {0x401, 0x40C},   {0x40E, 0x44F},   {0x451, 0x45C},  {0x3041, 0x3094},
                                         {0x30A1, 0x30FA}, {0x4E00, 0x9FA5}, {0xAC00, 0xD7A3}};

template <std::size_t count>
bool IsIn(char32_t codePoint, const Range (&ranges)[count]) noexcept {
    return std::any_of(std::begin(ranges), std::end(ranges),
                       [codePoint](const Range& range) { return codePoint >= range.first && codePoint <= range.last; });
}

} // namespace

bool IsXmlText(std::basic_string_view<DomChar> text) noexcept {
    for (std::size_t position = 0; position < text.size();) {
        if (text[position] >= ' ' && text[position] <= '~') { // as nearly all are
            ++position;
        } else if (!IsIn(platform::NextCodePoint(text, position), kText)) {
            return false;
        }
    }
    return true;
}

bool IsXmlName(std::basic_string_view<DomChar> text) noexcept {
    if (text.empty()) {
        return false;
    }
    std::size_t position = 0;
    if (!IsIn(platform::NextCodePoint(text, position), kNameStart)) {
        return false;
    }
    while (position < text.size()) {
        const char32_t codePoint = platform::NextCodePoint(text, position);
        if (!IsIn(codePoint, kNameStart) && !IsIn(codePoint, kNameFurther)) {
            return false;
        }
    }
    return true;
}

bool IsXmlNameInEveryEdition(std::basic_string_view<DomChar> text) noexcept {
    for (std::size_t position = 0; position < text.size();) {
        if (!IsIn(platform::NextCodePoint(text, position), kNameInEveryEdition)) {
            return false;
        }
    }
    return IsXmlName(text);
}
