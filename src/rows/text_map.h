// A map from the DOM's text, looked up without copying the text.

#pragma once

#include "platform/text_hash.h"

#include <functional>
#include <string>
#include <unordered_map>

template <class Value>
using CTextMap = std::unordered_map<std::basic_string<DomChar>, Value, TextHash<DomChar>, std::equal_to<>>;
