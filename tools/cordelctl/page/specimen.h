// A line of text in a font's own outlines, as the path of a vector drawing.

#pragma once

#include <filesystem>
#include <string>

/// Lengths are in thousandths of the font's size; y grows downwards from the base line, as drawings count.
struct Specimen {
    std::string path;        // the glyphs; empty when the font has none of the characters
    std::string missingPath; // a box for each character that the font lacks
    int width = 0;
    int ascent = 0;           // what stands above the base line
    int descent = 0;          // and below it
    int missingGlyphs = 0;    // how many boxes there are
    bool isShortened = false; // the outlines are so rich that the line ends early
};

/// Throws std::runtime_error, whose text says why the font cannot be shown.
Specimen DrawSpecimen(const std::filesystem::path& font, const std::string& utf8);
