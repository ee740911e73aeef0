#include "glyph_places.h"

#include "table_reader.h"

namespace {

constexpr std::size_t kHeadSize = 54;
constexpr std::size_t kPlaceFormat = 50; // within "head": 0 for places of 16 bits, 1 for places of 32

} // namespace

std::size_t CGlyphPlaces::Place(std::uint32_t glyph) const noexcept {
    return m_bWide ? Word32At(m_strPlaces, std::size_t{glyph} * 4)
                   : std::size_t{Word16At(m_strPlaces, std::size_t{glyph} * 2)} * 2;
}

std::optional<CGlyphPlaces> CGlyphPlaces::Read(const CFontTables& font, FileFindings& findings) {
    const std::string_view head = font.Find("head");
    const std::string_view places = font.Find("loca");
    const std::string_view glyphs = font.Find("glyf");
    FileFindings known; // said where the measures are checked
    const std::uint32_t count = GlyphCount(font, known);
    if (head.size() < kHeadSize || Word16At(head, kPlaceFormat) > 1 || count == 0 || !font.Lists("loca") ||
        !font.Lists("glyf")) {
        return std::nullopt;
    }
    const bool wide = Word16At(head, kPlaceFormat) == 1;
    if (places.size() < (std::size_t{count} + 1) * (wide ? 4 : 2)) {
        if (!places.empty()) {
            findings.push_back(
                {Cause::GlyphPlaces, "table \"loca\" is too short for " + std::to_string(count) + " glyphs"});
        }
        return std::nullopt;
    }
    CGlyphPlaces result(places, glyphs, count, wide);
    std::size_t start = result.Place(0);
    for (std::uint32_t glyph = 0; glyph < count; ++glyph) {
        const std::size_t end = result.Place(glyph + 1);
        if (end < start || end > glyphs.size()) {
            findings.push_back(
                {Cause::GlyphPlaces, "glyph " + std::to_string(glyph) + " does not lie within table \"glyf\""});
            return std::nullopt;
        }
        start = end;
    }
    return result;
}

std::uint32_t GlyphCount(const CFontTables& font, FileFindings& findings) {
    const std::string_view table = font.Find("maxp");
    if (table.empty()) {
        return 0;
    }
    constexpr std::size_t kShort = 6;
    constexpr std::size_t kLong = 32;
    const std::uint32_t version = table.size() < kShort ? 0 : Word32At(table, 0);
    if ((version != 0x10000 || table.size() < kLong) && version != 0x5000) {
        findings.push_back({Cause::TableMalformed, "table \"maxp\" is too short, or of no known version"});
        return 0;
    }
    const std::uint32_t count = Word16At(table, 4);
    if (count == 0) {
        findings.push_back({Cause::TableMalformed, "table \"maxp\" says that there is no glyph"});
    }
    return count;
}

void CheckMeasures(const CFontTables& font, std::uint32_t glyphCount, FileFindings& findings) {
    const auto malformed = [&](const std::string& what) { findings.push_back({Cause::TableMalformed, what}); };
    const std::string_view head = font.Find("head");
    if (!head.empty()) {
        constexpr std::uint32_t kMagic = 0x5F0F3CF5;
        if (head.size() < kHeadSize) {
            malformed("table \"head\" is too short");
        } else {
            if (Word32At(head, 12) != kMagic) {
                malformed("table \"head\" lacks its mark");
            }
            const std::uint32_t unitsPerEm = Word16At(head, 18);
            if (unitsPerEm < 16 || unitsPerEm > 16384) {
                malformed("table \"head\" says that there are " + std::to_string(unitsPerEm) + " units to the em");
            }
            if (Word16At(head, kPlaceFormat) > 1) {
                malformed("table \"head\" gives the places of the glyphs in no known form");
            }
        }
    }
    const std::string_view horizontal = font.Find("hhea");
    if (horizontal.empty() || glyphCount == 0) {
        return;
    }
    constexpr std::size_t kHorizontalSize = 36;
    if (horizontal.size() < kHorizontalSize) {
        malformed("table \"hhea\" is too short");
        return;
    }
    const std::uint32_t metrics = Word16At(horizontal, 34);
    if (metrics == 0 || metrics > glyphCount) {
        malformed("table \"hhea\" says that " + std::to_string(metrics) + " of " + std::to_string(glyphCount) +
                  " glyphs have widths");
    } else if (font.Lists("hmtx") &&
               font.Find("hmtx").size() < std::size_t{metrics} * 4 + std::size_t{glyphCount - metrics} * 2 &&
               !font.Find("hmtx").empty()) {
        malformed("table \"hmtx\" is too short for the widths of the glyphs");
    }
}
