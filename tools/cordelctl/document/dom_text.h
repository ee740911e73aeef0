// Between UTF-8 and the DOM's text.

#pragma once

#include "dom_types.h"
#include "platform/utf8.h"

#include <string>
#include <string_view>

inline std::string FromDomText(std::basic_string_view<DomChar> text) {
    if constexpr (sizeof(DomChar) == 1) {
        return std::string(text.begin(), text.end());
    } else {
        return Utf16ToUtf8(std::u16string(text.begin(), text.end()));
    }
}

inline std::basic_string<DomChar> ToDomText(std::string_view utf8) {
    if constexpr (sizeof(DomChar) == 1) {
        return {utf8.begin(), utf8.end()};
    } else {
        const std::u16string wide = Utf8ToUtf16(utf8);
        return {wide.begin(), wide.end()};
    }
}
