// Where the outlines of a TrueType font's glyphs lie, and the measures that tell it.

#pragma once

#include "file_finding.h"
#include "font_tables.h"

#include <cstdint>
#include <optional>
#include <string_view>

class CGlyphPlaces {
public:
    /// Checks "head", "maxp", "hhea", "hmtx", "loca" and "glyf" against one another; tables that are missing are
    /// another's finding. Nothing when the outlines cannot be found.
    static std::optional<CGlyphPlaces> Read(const CFontTables& font, FileFindings& findings);

    std::uint32_t Count() const noexcept { return m_nCount; }
    /// The bytes of one glyph; empty for one without a shape.
    std::string_view Glyph(std::uint32_t glyph) const noexcept {
        const std::size_t start = Place(glyph);
        return m_strGlyphs.substr(start, Place(glyph + 1) - start);
    }

private:
    CGlyphPlaces(std::string_view places, std::string_view glyphs, std::uint32_t count, bool wide)
        : m_strPlaces(places), m_strGlyphs(glyphs), m_nCount(count), m_bWide(wide) {}
    std::size_t Place(std::uint32_t glyph) const noexcept;

    std::string_view m_strPlaces;
    std::string_view m_strGlyphs;
    std::uint32_t m_nCount;
    bool m_bWide;
};

/// The number of glyphs that "maxp" tells; 0 when it cannot be read, which is a finding.
std::uint32_t GlyphCount(const CFontTables& font, FileFindings& findings);

/// Checks what every font has: "head", "hhea" and "hmtx".
void CheckMeasures(const CFontTables& font, std::uint32_t glyphCount, FileFindings& findings);
