// The detail record of a file out of the attributes of its row, for files whose content is not at hand.

#pragma once

#include <functional>
#include <string>
#include <vector>

/// The value of an attribute, as UTF-8; empty when there is none.
using AttributeValues = std::function<std::string(const char* attribute)>;

/// TrueTypeDetail, BitmapFontDetail or IcmProfileDetail, by Type, as WritePrjFile takes it; nothing for other Types.
/// Throws when a value does not fit its field.
std::vector<char> DetailRecordOf(const std::string& type, const AttributeValues& values);
