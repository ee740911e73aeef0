// Encodings as Windows reads them. Its code pages hold more than the standards whose names they go by, and more than
// the system's converters know: control characters in the places that the single-byte ones leave free, and areas for
// characters of the user's own.

#pragma once

#include <cstddef>
#include <string_view>

/// The code page as which Windows reads an encoding, whose name is in upper case; 0 for an encoding that is just what
/// it says. The system's converter for it is called "CP" and the number.
unsigned WindowsCodePage(std::string_view encoding) noexcept;

struct AddedCharacter {
    std::size_t length; // in bytes; 0: no such character
    char16_t character;
};

/// The character at the start of `bytes`, which are not empty, for those that the code page has and the system's
/// converter lacks.
AddedCharacter FindAddedCharacter(unsigned codePage, std::string_view bytes) noexcept;
