// Documents in UTF-16.

#pragma once

#include <string>

/// ASCII as the bytes of UTF-16.
inline std::string Utf16(const std::string& ascii, bool bBigEndian) {
    std::string text;
    for (const char character : ascii) {
        text += bBigEndian ? std::string{'\0', character} : std::string{character, '\0'};
    }
    return text;
}
