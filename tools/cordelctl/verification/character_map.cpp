#include "character_map.h"

#include "table_reader.h"

#include <string>

namespace {

constexpr std::size_t kMapHead = 4;
constexpr std::size_t kCharacterEntry = 8;

/// How welcome a map is: of all characters, of the first plane, of a symbol font; 0 for others.
int RankOf(std::uint32_t platform, std::uint32_t encoding) {
    if (platform == 3) {
        return encoding == 10 ? 4 : encoding == 1 ? 3 : encoding == 0 ? 1 : 0;
    }
    constexpr std::uint32_t kVariationSequences = 5;
    return platform == 0 && encoding != kVariationSequences ? (encoding == 4 || encoding == 6 ? 4 : 2) : 0;
}

/// The length of the map that begins the text, as it says itself and as its parts need it; 0 when it is of no form that
/// is known here.
std::size_t LengthOf(std::string_view map) {
    if (map.size() < 16) {
        return 0;
    }
    switch (Word16At(map, 0)) {
    case 4:
        // Long maps say a length that is cut to 16 bits: what counts is where the segments end.
        return 16 + std::size_t{Word16At(map, 6)} * 4;
    case 6:
        return 10 + std::size_t{Word16At(map, 8)} * 2;
    case 10:
        return map.size() < 20 ? 0 : 20 + std::size_t{Word32At(map, 16)} * 2;
    case 12:
    case 13:
        return 16 + std::size_t{Word32At(map, 12)} * 12;
    default:
        return 0;
    }
}

std::uint32_t LookupSegments(std::string_view map, char32_t character) {
    if (character > 0xFFFF) {
        return 0;
    }
    const std::size_t twice = Word16At(map, 6);
    const std::size_t ends = 14;
    const std::size_t starts = ends + twice + 2;
    const std::size_t deltas = starts + twice;
    const std::size_t offsets = deltas + twice;
    for (std::size_t i = 0; i + 1 < twice; i += 2) {
        if (character > Word16At(map, ends + i)) {
            continue;
        }
        const std::uint32_t first = Word16At(map, starts + i);
        if (character < first) {
            return 0;
        }
        const std::uint32_t delta = Word16At(map, deltas + i);
        const std::uint32_t offset = Word16At(map, offsets + i);
        if (offset == 0) {
            return (character + delta) & 0xFFFF;
        }
        const std::size_t place = offsets + i + offset + std::size_t{character - first} * 2;
        if (!Holds(map, place, 2)) {
            return 0;
        }
        const std::uint32_t glyph = Word16At(map, place);
        return glyph == 0 ? 0 : (glyph + delta) & 0xFFFF;
    }
    return 0;
}

std::uint32_t LookupGroups(std::string_view map, char32_t character, bool oneForAll) {
    std::size_t low = 0;
    std::size_t high = Word32At(map, 12);
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const std::size_t group = 16 + middle * 12;
        if (character < Word32At(map, group)) {
            high = middle;
        } else if (character > Word32At(map, group + 4)) {
            low = middle + 1;
        } else {
            return Word32At(map, group + 8) + (oneForAll ? 0 : character - Word32At(map, group));
        }
    }
    return 0;
}

} // namespace

CCharacterMap::CCharacterMap(const CFontTables& font, FileFindings& findings) {
    const std::string_view table = font.Find("cmap");
    if (table.empty()) {
        return;
    }
    if (!Holds(table, 0, kMapHead) || !Holds(table, kMapHead, std::size_t{Word16At(table, 2)} * kCharacterEntry)) {
        findings.push_back({Cause::TableMalformed, "table \"cmap\" is too short for its list of maps"});
        return;
    }
    int best = 0;
    for (std::uint32_t i = 0, count = Word16At(table, 2); i < count; ++i) {
        const std::size_t entry = kMapHead + i * kCharacterEntry;
        const std::uint32_t platform = Word16At(table, entry);
        const std::uint32_t encoding = Word16At(table, entry + 2);
        const std::size_t offset = Word32At(table, entry + 4);
        const int rank = RankOf(platform, encoding);
        if (!Holds(table, offset, 2)) {
            findings.push_back(
                {Cause::TableMalformed, "map " + std::to_string(i + 1) + " of table \"cmap\" lies outside it"});
            m_strMap = {};
            return;
        }
        const std::string_view map = table.substr(offset);
        const std::size_t length = rank > best ? LengthOf(map) : 0;
        if (length > map.size()) {
            findings.push_back(
                {Cause::TableMalformed, "map " + std::to_string(i + 1) + " of table \"cmap\" is cut short"});
            m_strMap = {};
            return;
        }
        if (length != 0) {
            m_strMap = map;
            m_bSymbol = platform == 3 && encoding == 0;
            best = rank;
        }
    }
    if (m_strMap.empty()) {
        findings.push_back({Cause::CharactersMissing, "table \"cmap\" has no map from Unicode or of a symbol font"});
    }
}

std::uint32_t CCharacterMap::Lookup(char32_t character) const noexcept {
    switch (Word16At(m_strMap, 0)) {
    case 4:
        return LookupSegments(m_strMap, character);
    case 6: {
        const std::uint32_t first = Word16At(m_strMap, 6);
        return character >= first && character - first < Word16At(m_strMap, 8)
                   ? Word16At(m_strMap, 10 + std::size_t{character - first} * 2)
                   : 0;
    }
    case 10: {
        const std::uint32_t first = Word32At(m_strMap, 12);
        return character >= first && character - first < Word32At(m_strMap, 16)
                   ? Word16At(m_strMap, 20 + std::size_t{character - first} * 2)
                   : 0;
    }
    default:
        return LookupGroups(m_strMap, character, Word16At(m_strMap, 0) == 13);
    }
}

std::uint32_t CCharacterMap::GlyphOf(char32_t character) const noexcept {
    if (m_strMap.empty()) {
        return 0;
    }
    const std::uint32_t glyph = Lookup(character);
    constexpr char32_t kSymbols = 0xF000;
    return glyph == 0 && m_bSymbol && character < 0x100 ? Lookup(kSymbols + character) : glyph;
}
