// What a font file says of itself. All texts are UTF-8.

#pragma once

#include <filesystem>
#include <string>

struct TrueTypeFacts {
    std::string family;
    std::string fullName;
    std::string style;
    std::string copyright;
    std::string postScriptName;
    std::string symbolSet; // "Unicode", or "Symbol" for a font without a Unicode character map
};

struct BitmapFontFacts {
    std::string name;
    std::string format;      // of the file: "BDF", "PCF", ...
    std::string xResolution; // dots per inch; empty when the file does not tell
    std::string yResolution;
    std::string fontType;     // how the characters are encoded
    std::string symbolSet;    // "8U"; empty when the file does not tell
    std::string proportional; // "1", or "0" for a fixed pitch
    std::string pitchWidth;   // average, in dots
    std::string height;       // in dots
    std::string style;
    std::string strokeWeight; // "Bold" or "Medium"; a number when the file has one
    std::string typeFace;
    std::string escapeSequence; // with which a job chooses it; empty when there is none
};

/// Reads the first font of the file. Both throw std::runtime_error with the reason when it cannot be read as such a
/// font.
TrueTypeFacts ReadTrueTypeFacts(const std::filesystem::path& path);
BitmapFontFacts ReadBitmapFontFacts(const std::filesystem::path& path);
