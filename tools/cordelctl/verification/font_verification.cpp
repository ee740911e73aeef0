#include "font_verification.h"

#include "character_map.h"
#include "facts/font_names.h"
#include "font_tables.h"
#include "glyph_outlines.h"
#include "glyph_places.h"
#include "platform/utf8.h"
#include "table_reader.h"

#include <algorithm>
#include <cstdio>
#include <set>

namespace {

/// The first few of a list, and how many there are.
std::string Some(const std::vector<std::string>& items) {
    constexpr std::size_t kShown = 5;
    std::string text;
    for (std::size_t i = 0; i < std::min(items.size(), kShown); ++i) {
        text += (i == 0 ? "" : ", ") + items[i];
    }
    return items.size() > kShown ? text + " and " + std::to_string(items.size() - kShown) + " more" : text;
}

std::string Spelled(char32_t character) {
    char code[16];
    std::snprintf(code, sizeof code, "U+%04X", static_cast<unsigned int>(character));
    std::string text = code;
    if (character > 0x20 && (character < 0x7F || character > 0xA0)) {
        text += " ";
        AppendUtf8(text, character);
    }
    return text;
}

class CFontCheck {
public:
    CFontCheck(const CFontTables& font, bool inCollection, std::string_view text, FileFindings& findings)
        : m_font(font), m_bInCollection(inCollection), m_strText(text), m_findings(findings) {}

    FontMember Check() {
        CheckTables();
        m_nGlyphs = GlyphCount(m_font, m_findings);
        CheckMeasures(m_font, m_nGlyphs, m_findings);
        FontMember member = CheckNames();
        CheckRights();
        const CCharacterMap characters(m_font, m_findings);
        CheckOutlines(characters);
        CheckText(characters);
        CheckSums(m_font, m_bInCollection, m_findings);
        return member;
    }

private:
    void Add(Cause cause, const std::string& what) { m_findings.push_back({cause, what}); }

    void CheckTables() {
        std::vector<std::string> missing;
        for (const char* const tag : {"head", "hhea", "hmtx", "maxp", "cmap"}) {
            if (!m_font.Lists(tag)) {
                missing.emplace_back(tag);
            }
        }
        if (m_font.HasCompactOutlines()) {
            if (!m_font.Lists("CFF ") && !m_font.Lists("CFF2")) {
                missing.emplace_back("CFF ");
            }
        } else {
            for (const char* const tag : {"loca", "glyf"}) {
                if (!m_font.Lists(tag)) {
                    missing.emplace_back(tag);
                }
            }
        }
        if (!missing.empty()) {
            Add(Cause::TableMissing, (missing.size() == 1 ? "table " : "tables ") + Some(missing));
        }
        for (const FontTable& table : m_font.All()) {
            if (table.length == 0 && (table.tag == "head" || table.tag == "hhea" || table.tag == "hmtx" ||
                                      table.tag == "maxp" || table.tag == "cmap" || table.tag == "loca")) {
                Add(Cause::TableMalformed, "table \"" + table.tag + "\" is empty");
            }
        }
    }

    FontMember CheckNames() {
        const std::string_view table = m_font.Find("name");
        std::vector<FontName> names;
        if (!table.empty()) {
            names = ReadNames(table);
        } else if (m_font.Lists("name")) {
            return {};
        }
        FontMember member{ChooseName(names, kFullName), ChooseName(names, kPostScriptName)};
        const std::string family = ChooseName(names, kFamilyName);
        std::vector<std::string> missing;
        using Named = std::pair<const std::string*, const char*>;
        for (const auto& [name, what] : {Named(&family, "family name"), Named(&member.fullName, "full name"),
                                         Named(&member.postScriptName, "PostScript name")}) {
            if (name->empty()) {
                missing.emplace_back(what);
            }
        }
        if (!missing.empty()) {
            Add(Cause::NamesMissing, "it has no " + Some(missing));
        }
        CheckPostScriptName(member.postScriptName);
        if (member.fullName.empty()) {
            member.fullName = family;
        }
        return member;
    }

    std::vector<FontName> ReadNames(std::string_view table) {
        constexpr std::size_t kHead = 6;
        constexpr std::size_t kRecord = 12;
        std::vector<FontName> names;
        const std::size_t count = table.size() < kHead ? 0 : Word16At(table, 2);
        if (table.size() < kHead || !Holds(table, kHead, count * kRecord)) {
            Add(Cause::TableMalformed, "table \"name\" is too short for its list of names");
            return names;
        }
        const std::size_t texts = Word16At(table, 4);
        bool outside = false;
        for (std::size_t i = 0; i < count; ++i) {
            const std::string_view record = table.substr(kHead + i * kRecord, kRecord);
            const std::size_t length = Word16At(record, 8);
            const std::size_t place = texts + Word16At(record, 10);
            if (!Holds(table, place, length)) {
                outside = true;
                continue;
            }
            names.push_back({Word16At(record, 0), Word16At(record, 2), Word16At(record, 4), Word16At(record, 6),
                             table.substr(place, length)});
        }
        if (outside) {
            Add(Cause::TableMalformed, "a name lies outside table \"name\"");
        }
        return names;
    }

    void CheckPostScriptName(const std::string& name) {
        constexpr std::size_t kLongest = 63;
        constexpr std::string_view kForbidden = "[](){}<>/%";
        if (name.size() > kLongest) {
            Add(Cause::PostScriptName,
                "its PostScript name has " + std::to_string(name.size()) + " characters of at most 63");
        } else if (std::any_of(name.begin(), name.end(), [&](char letter) {
                       return letter <= 0x20 || letter >= 0x7F || kForbidden.find(letter) != std::string_view::npos;
                   })) {
            Add(Cause::PostScriptName,
                "its PostScript name \"" + name + "\" has a character that such names cannot have");
        }
    }

    void CheckRights() {
        constexpr std::size_t kRights = 8;
        const std::string_view table = m_font.Find("OS/2");
        if (!Holds(table, kRights, 2)) {
            if (table.empty() && m_font.Lists("OS/2")) {
                return;
            }
            Add(Cause::RightsUnclear, "it does not say what its maker allows (table \"OS/2\")");
            return;
        }
        constexpr std::uint32_t kRestricted = 0x2;
        constexpr std::uint32_t kUsage = 0xE; // restricted, preview and print, editable
        constexpr std::uint32_t kBitmapsOnly = 0x200;
        const std::uint32_t rights = Word16At(table, kRights);
        const std::uint32_t usage = rights & kUsage;
        if (usage == kRestricted) {
            Add(Cause::RightsRestricted, "its embedding rights are \"restricted\"");
        } else if ((rights & kBitmapsOnly) != 0) {
            Add(Cause::RightsRestricted, "only bitmaps of it may be embedded");
        } else if ((usage & (usage - 1)) != 0) {
            Add(Cause::RightsUnclear, "its embedding rights contradict one another");
        }
    }

    void CheckOutlines(const CCharacterMap& characters) {
        if (m_font.HasCompactOutlines()) {
            Add(Cause::CompactOutlines, "its outlines are compact (CFF)");
        }
        const std::size_t before = m_findings.size();
        const auto places = m_font.HasCompactOutlines() ? std::nullopt : CGlyphPlaces::Read(m_font, m_findings);
        const GlyphOutlines outlines = LoadOutlines(m_font, places);
        if (!outlines.refusal.empty()) {
            // What the engine refuses has mostly been named already.
            if (!HasError(m_findings)) {
                Add(Cause::TableMalformed, outlines.refusal);
            }
            return;
        }
        if (!outlines.unreadable.empty() && m_findings.size() == before) {
            std::vector<std::string> glyphs;
            for (const std::uint32_t glyph : outlines.unreadable) {
                glyphs.push_back(std::to_string(glyph));
            }
            Add(Cause::OutlineUnreadable, (glyphs.size() == 1 ? "glyph " : "glyphs ") + Some(glyphs));
        }
        if (!outlines.empty.empty() &&
            std::all_of(outlines.empty.begin(), outlines.empty.end(), [](bool empty) { return empty; })) {
            Add(Cause::OutlinesMissing, "none of its " + std::to_string(outlines.empty.size()) + " glyphs has a shape");
            return;
        }
        std::vector<std::string> blank;
        for (const char32_t character :
             std::u32string_view(U"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789")) {
            const std::uint32_t glyph = characters.GlyphOf(character);
            if (glyph != 0 && glyph < outlines.empty.size() && outlines.empty[glyph]) {
                blank.push_back(Spelled(character));
            }
        }
        if (!blank.empty()) {
            Add(Cause::CharactersEmpty, Some(blank));
        }
    }

    void CheckText(const CCharacterMap& characters) {
        std::set<char32_t> seen;
        std::vector<std::string> missing;
        for (std::size_t position = 0; position < m_strText.size();) {
            char32_t character = 0;
            if (DecodeUtf8(m_strText, position, character) && character >= 0x20 && seen.insert(character).second &&
                characters.GlyphOf(character) == 0) {
                missing.push_back(Spelled(character));
            }
        }
        if (!missing.empty()) {
            Add(Cause::NotCovered, Some(missing));
        }
    }

    const CFontTables& m_font;
    bool m_bInCollection;
    std::string_view m_strText;
    FileFindings& m_findings;
    std::uint32_t m_nGlyphs = 0;
};

} // namespace

FontVerification VerifyFont(std::string_view file, std::string_view text) {
    FontVerification result;
    const auto fonts = ReadFonts(file, result.findings);
    if (HasError(result.findings)) {
        return result; // whatever else there is comes from it
    }
    for (const CFontTables& font : fonts) {
        FileFindings own;
        result.members.push_back(CFontCheck(font, fonts.size() > 1, text, own).Check());
        for (FileFinding& finding : own) {
            const std::string& name = result.members.back().fullName;
            result.findings.push_back({finding.cause, (fonts.size() > 1 ? name + ": " : "") + finding.what});
        }
    }
    if (fonts.size() > 1) {
        std::vector<std::string> names;
        for (const FontMember& member : result.members) {
            names.push_back(member.fullName);
        }
        result.findings.push_back(
            {Cause::Collection, "it holds " + std::to_string(fonts.size()) + " fonts: " + Some(names)});
    }
    return result;
}
