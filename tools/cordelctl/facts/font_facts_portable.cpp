// Reads TrueType fonts from their tables, where FreeType is not to be had. What it tells is what FreeType tells.

#include "file_bytes.h"
#include "font_facts.h"
#include "font_names.h"

#include <algorithm>
#include <map>
#include <stdexcept>
#include <vector>

namespace {

using Tables = std::map<std::string, std::string_view>;

/// The tables of the first font of the file; those that do not lie within it are left out.
Tables ReadTables(std::string_view bytes) {
    std::size_t start = 0;
    if (Part(bytes, 0, 4) == "ttcf") {
        start = BigEndian32(bytes, 12);
    }
    const std::string_view version = Part(bytes, start, 4);
    if (version == "OTTO") {
        throw std::runtime_error("it is a CFF font, not TrueType");
    }
    if (version != std::string_view("\0\1\0\0", 4) && version != "true") {
        throw std::out_of_range("no font");
    }
    Tables tables;
    for (std::size_t i = 0, count = BigEndian16(bytes, start + 4); i < count; ++i) {
        const std::string_view entry = Part(bytes, start + 12 + i * 16, 16);
        const std::size_t offset = BigEndian32(entry, 8);
        const std::size_t length = BigEndian32(entry, 12);
        if (offset <= bytes.size() && length <= bytes.size() - offset) {
            tables.emplace(entry.substr(0, 4), bytes.substr(offset, length));
        }
    }
    for (const char* const needed : {"head", "hhea", "hmtx", "maxp", "loca", "glyf"}) {
        if (tables.find(needed) == tables.end()) {
            throw std::out_of_range("a table is missing");
        }
    }
    return tables;
}

std::string_view TableOrNothing(const Tables& tables, const char* name) {
    const auto found = tables.find(name);
    return found != tables.end() ? found->second : std::string_view();
}

/// Records whose text does not lie within the table are left out.
std::vector<FontName> ReadNames(std::string_view table) {
    std::vector<FontName> names;
    if (table.empty()) {
        return names;
    }
    const std::size_t texts = BigEndian16(table, 4);
    for (std::uint32_t i = 0, count = BigEndian16(table, 2); i < count; ++i) {
        const std::string_view entry = Part(table, 6 + i * 12, 12);
        const std::size_t length = BigEndian16(entry, 8);
        const std::size_t offset = texts + BigEndian16(entry, 10);
        if (offset <= table.size() && length <= table.size() - offset) {
            names.push_back({BigEndian16(entry, 0), BigEndian16(entry, 2), BigEndian16(entry, 4), BigEndian16(entry, 6),
                             table.substr(offset, length)});
        }
    }
    return names;
}

struct CharacterMaps {
    bool unicode = false;
    bool symbol = false;
};

CharacterMaps ReadCharacterMaps(std::string_view table) {
    CharacterMaps maps;
    for (std::uint32_t i = 0, count = table.empty() ? 0 : BigEndian16(table, 2); i < count; ++i) {
        const std::string_view entry = Part(table, 4 + i * 8, 8);
        const std::uint32_t platform = BigEndian16(entry, 0);
        const std::uint32_t encoding = BigEndian16(entry, 2);
        constexpr std::uint32_t kVariationSequences = 5;
        maps.unicode = maps.unicode || (platform == 0 && encoding != kVariationSequences) ||
                       (platform == 2 && encoding == 1) || (platform == 3 && (encoding == 1 || encoding == 10));
        maps.symbol = maps.symbol || (platform == 3 && encoding == 0);
    }
    return maps;
}

/// Whether a character map can be made of the glyphs' names: one of them is a name that every such font knows.
bool NamesGlyphs(std::string_view table) {
    constexpr std::size_t kHeaderSize = 32;
    constexpr std::uint32_t kFirstCharacter = 3; // of the standard names; before it stand those of no character
    constexpr std::uint32_t kStandardNames = 258;
    if (table.size() < kHeaderSize) {
        return false;
    }
    const std::uint32_t version = BigEndian32(table, 0);
    if (version != 0x20000) {
        return version == 0x10000;
    }
    for (std::size_t i = 0, count = BigEndian16(table, kHeaderSize); i < count; ++i) {
        const std::uint32_t name = BigEndian16(table, kHeaderSize + 2 + i * 2);
        if (name >= kFirstCharacter && name < kStandardNames) {
            return true;
        }
    }
    return false;
}

} // namespace

TrueTypeFacts ReadTrueTypeFacts(const std::filesystem::path& path) {
    const std::string bytes = ReadFileBytes(path);
    try {
        const Tables tables = ReadTables(bytes);
        const std::vector<FontName> names = ReadNames(TableOrNothing(tables, "name"));
        TrueTypeFacts facts;
        facts.family = ChooseName(names, kFamilyName);
        facts.style = ChooseName(names, kStyleName);
        facts.fullName = ChooseName(names, kFullName);
        if (facts.fullName.empty()) {
            facts.fullName = facts.family + " " + facts.style;
        }
        facts.copyright = ChooseName(names, kCopyrightName);
        facts.postScriptName = ChooseName(names, kPostScriptName);
        const CharacterMaps maps = ReadCharacterMaps(TableOrNothing(tables, "cmap"));
        const bool unicode = maps.unicode || (!maps.symbol && NamesGlyphs(TableOrNothing(tables, "post")));
        facts.symbolSet = unicode ? "Unicode" : "Symbol";
        return facts;
    } catch (const std::out_of_range&) {
        throw std::runtime_error("it is damaged, or is no font");
    }
}

BitmapFontFacts ReadBitmapFontFacts(const std::filesystem::path&) {
    throw std::runtime_error("of bitmap fonts only soft fonts can be read on this system");
}
