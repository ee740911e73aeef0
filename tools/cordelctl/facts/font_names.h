// The name table of a font: which of its records is taken, and how it reads.

#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// One record as the table has it.
struct FontName {
    unsigned int platform;
    unsigned int encoding;
    unsigned int language;
    unsigned int name; // which name: kFamilyName and so on
    std::string_view bytes;
};

inline constexpr unsigned int kCopyrightName = 0;
inline constexpr unsigned int kFamilyName = 1;
inline constexpr unsigned int kStyleName = 2;
inline constexpr unsigned int kFullName = 4;
inline constexpr unsigned int kPostScriptName = 6;

/// The name, as UTF-8, from the most welcome record: English for preference. Empty when no record can be decoded.
std::string ChooseName(const std::vector<FontName>& names, unsigned int name);
