// Where there is no font engine to ask, the tables alone tell.

#include "glyph_outlines.h"

GlyphOutlines LoadOutlines(const CFontTables& font, const std::optional<CGlyphPlaces>& places) {
    return ReadOutlines(font, places);
}
