// A map from the DOM's text, looked up without copying the text.

#pragma once

#include "rows/text_hash.h"

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::basic_string_view<DomChar> text) const noexcept { return HashText(text); }
};

template <class Value>
using CTextMap = std::unordered_map<std::basic_string<DomChar>, Value, TextHash, std::equal_to<>>;
