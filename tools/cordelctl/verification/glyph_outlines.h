// Whether all glyphs of a font can be loaded, and which of them have no shape.

#pragma once

#include "font_tables.h"
#include "glyph_places.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

struct GlyphOutlines {
    std::string refusal;                   // why the font cannot be opened at all; empty when it can
    std::vector<std::uint32_t> unreadable; // glyphs
    std::vector<bool> empty;               // for each glyph whether it has no shape
};

/// `places` is there for a TrueType font whose places are in order. What a target's own font engine refuses counts
/// beside what the tables show.
GlyphOutlines LoadOutlines(const CFontTables& font, const std::optional<CGlyphPlaces>& places);

/// The same from the tables alone, on every target.
GlyphOutlines ReadOutlines(const CFontTables& font, const std::optional<CGlyphPlaces>& places);
