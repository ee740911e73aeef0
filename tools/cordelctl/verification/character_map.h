// Which glyph stands for a character.

#pragma once

#include "file_finding.h"
#include "font_tables.h"

#include <cstdint>
#include <string_view>

/// The map of a font from Unicode, or, when it has none, from the codes of a symbol font (U+F000 and up).
class CCharacterMap {
public:
    /// Adds what is wrong with table "cmap"; the map is then empty.
    CCharacterMap(const CFontTables& font, FileFindings& findings);

    bool IsEmpty() const noexcept { return m_strMap.empty(); }
    /// 0 when the font has no glyph for the character.
    std::uint32_t GlyphOf(char32_t character) const noexcept;

private:
    std::uint32_t Lookup(char32_t character) const noexcept;

    std::string_view m_strMap; // one subtable, which is whole
    bool m_bSymbol = false;
};
