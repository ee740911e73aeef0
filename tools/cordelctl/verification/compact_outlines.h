// The outlines of compact fonts (tables "CFF " and "CFF2"): their indexes, and the charstrings as far as they can end
// badly.

#pragma once

#include "glyph_outlines.h"

GlyphOutlines ReadCompactOutlines(const CFontTables& font);
