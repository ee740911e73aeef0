// Bitmap fonts as they are downloaded to a printer: a number, a header and the characters, each in an escape sequence
// of its own.

#pragma once

#include "facts/font_facts.h"
#include "verification/file_finding.h"

#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <string_view>

struct SoftFont {
    std::optional<unsigned int> id; // the number that the file gives the font
    std::string name;
    unsigned int format = 0;      // of the header: 0, or 20 with a resolution
    unsigned int xResolution = 0; // dots per inch
    unsigned int yResolution = 0;
    unsigned int fontType = 0; // which codes print: 0 to 2
    std::string symbolSet;     // "8U"
    bool isProportional = false;
    double pitch = 0;  // dots
    double height = 0; // dots
    unsigned int style = 0;
    int strokeWeight = 0;
    unsigned int typeFace = 0;
    unsigned int firstCode = 0;
    unsigned int lastCode = 0;
    std::set<unsigned int> characters; // codes
};

/// Whether the file begins as a soft font does.
bool IsSoftFont(std::string_view file) noexcept;

/// Adds what is wrong with it. Nothing when there is no header to read.
std::optional<SoftFont> ReadSoftFont(std::string_view file, FileFindings& findings);

/// What is recorded of it.
BitmapFontFacts FactsOf(const SoftFont& font);

/// How a job chooses the font, with the escape characters written out.
std::string EscapeSequenceOf(const SoftFont& font);
