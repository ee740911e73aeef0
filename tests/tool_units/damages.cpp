#include "damages.h"

#include "facts/file_bytes.h"
#include "verification/table_reader.h"

#include <functional>
#include <stdexcept>

namespace {

const std::string kFonts = "/usr/share/fonts/truetype/";
const std::string kSansFont = kFonts + "dejavu/DejaVuSans.ttf";
const std::string kMonoFont = kFonts + "dejavu/DejaVuSansMono-Bold.ttf";
const std::string kCollection = kFonts + "wqy/wqy-microhei.ttc";
const std::string kCompact = "/usr/share/fonts/opentype/tlwg/Loma.otf";
const std::string kProfiles = "/usr/share/color/icc/";
const std::string kRgb = kProfiles + "sRGB.icc";
const std::string kRgb4 = kProfiles + "colord/AdobeRGB1998.icc";
const std::string kGray = kProfiles + "Gray.icc";
const std::string kLab = kProfiles + "LCMSLABI.ICM";

void Put8(std::string& bytes, std::size_t place, unsigned int value) { bytes.at(place) = static_cast<char>(value); }

void Put16(std::string& bytes, std::size_t place, unsigned int value) {
    Put8(bytes, place, value >> 8 & 0xFF);
    Put8(bytes, place + 1, value & 0xFF);
}

void Put32(std::string& bytes, std::size_t place, std::uint32_t value) {
    Put16(bytes, place, value >> 16);
    Put16(bytes, place + 2, value & 0xFFFF);
}

/// A font whose tables can be changed, with the sums made right again, so that these do not tell of the change.
class CFontEditor {
public:
    explicit CFontEditor(std::string bytes) : m_strBytes(std::move(bytes)) {}

    std::string& Bytes() { return m_strBytes; }
    std::size_t EntryOf(const std::string& tag) const {
        for (std::size_t i = 0, count = Word16At(m_strBytes, 4); i < count; ++i) {
            if (m_strBytes.compare(12 + i * 16, 4, tag) == 0) {
                return 12 + i * 16;
            }
        }
        throw std::runtime_error("no table " + tag);
    }
    std::size_t PlaceOf(const std::string& tag) const { return Word32At(m_strBytes, EntryOf(tag) + 8); }
    std::size_t LengthOf(const std::string& tag) const { return Word32At(m_strBytes, EntryOf(tag) + 12); }

    bool HasWidePlaces() const { return Word16At(m_strBytes, PlaceOf("head") + 50) == 1; }
    void SetGlyphPlace(std::uint32_t glyph, std::size_t place) {
        if (HasWidePlaces()) {
            Put32(m_strBytes, PlaceOf("loca") + glyph * 4, static_cast<std::uint32_t>(place));
        } else {
            Put16(m_strBytes, PlaceOf("loca") + glyph * 2, static_cast<unsigned int>(place / 2));
        }
    }
    std::size_t GlyphPlace(std::uint32_t glyph) const {
        return HasWidePlaces() ? Word32At(m_strBytes, PlaceOf("loca") + glyph * 4)
                               : std::size_t{Word16At(m_strBytes, PlaceOf("loca") + glyph * 2)} * 2;
    }
    std::uint32_t GlyphCount() const { return Word16At(m_strBytes, PlaceOf("maxp") + 4); }
    /// Where the first glyph begins that is simple, or put together; in the file.
    std::size_t FirstGlyph(bool simple) const {
        for (std::uint32_t glyph = 0; glyph < GlyphCount(); ++glyph) {
            const std::size_t place = PlaceOf("glyf") + GlyphPlace(glyph);
            if (GlyphPlace(glyph + 1) - GlyphPlace(glyph) > 20 && (Word16At(m_strBytes, place) < 0x8000) == simple) {
                m_nGlyph = glyph;
                return place;
            }
        }
        throw std::runtime_error("no such glyph");
    }
    std::uint32_t GlyphOfFirst() const { return m_nGlyph; }

    /// Where the outline of a glyph begins in a compact font; in the file.
    std::size_t CompactGlyph(std::size_t glyph) const {
        const std::size_t table = PlaceOf("CFF ");
        const std::size_t dictionaries = EndOfIndex(table + ByteAt(m_strBytes, table + 2));
        std::size_t outlines = 0;
        std::size_t number = 0;
        for (std::size_t place = EntryOfIndex(dictionaries, 0); outlines == 0;) {
            constexpr unsigned int kOutlines = 17; // the operator whose number is their place
            const unsigned int first = ByteAt(m_strBytes, place);
            outlines = first == kOutlines ? number : 0;
            number = first == 29 ? Word32At(m_strBytes, place + 1) : Word16At(m_strBytes, place + 1);
            place += first == 29 ? 5 : first == 28 ? 3 : first == 12 || first >= 247 ? 2 : 1;
        }
        return EntryOfIndex(table + outlines, glyph);
    }

    /// Makes the sums right.
    std::string Done() {
        for (std::size_t i = 0, count = Word16At(m_strBytes, 4); i < count; ++i) {
            const std::size_t entry = 12 + i * 16;
            const std::size_t place = Word32At(m_strBytes, entry + 8);
            const std::size_t length = Word32At(m_strBytes, entry + 12);
            if (Holds(m_strBytes, place, length)) {
                if (m_strBytes.compare(entry, 4, "head") == 0) {
                    Put32(m_strBytes, place + 8, 0);
                }
                Put32(m_strBytes, entry + 4, SumOf(place, length));
            }
        }
        const std::size_t head = FindHead();
        if (head != 0) {
            Put32(m_strBytes, head + 8, 0xB1B0AFBA - SumOf(0, m_strBytes.size()));
        }
        return m_strBytes;
    }

private:
    std::size_t EntryOfIndex(std::size_t index, std::size_t entry) const {
        const std::size_t size = ByteAt(m_strBytes, index + 2);
        const std::size_t bytes = index + 2 + (std::size_t{Word16At(m_strBytes, index)} + 1) * size;
        std::size_t place = 0;
        for (std::size_t i = 0; i < size; ++i) {
            place = place << 8 | ByteAt(m_strBytes, index + 3 + entry * size + i);
        }
        return bytes + place;
    }
    std::size_t EndOfIndex(std::size_t index) const { return EntryOfIndex(index, Word16At(m_strBytes, index)); }

    std::size_t FindHead() const {
        for (std::size_t i = 0, count = Word16At(m_strBytes, 4); i < count; ++i) {
            const std::size_t entry = 12 + i * 16;
            if (m_strBytes.compare(entry, 4, "head") == 0 && Holds(m_strBytes, Word32At(m_strBytes, entry + 8), 12)) {
                return Word32At(m_strBytes, entry + 8);
            }
        }
        return 0;
    }
    std::uint32_t SumOf(std::size_t place, std::size_t length) const {
        std::string part = m_strBytes.substr(place, length);
        part.resize((part.size() + 3) / 4 * 4, '\0');
        std::uint32_t sum = 0;
        for (std::size_t i = 0; i < part.size(); i += 4) {
            sum += Word32At(part, i);
        }
        return sum;
    }

    std::string m_strBytes;
    mutable std::uint32_t m_nGlyph = 0;
};

class CDamages {
public:
    std::vector<Damage> Make() {
        for (const std::string& font : {kSansFont, kMonoFont}) {
            Begin(font, FileKind::Font);
            DamageWholeFont();
            DamageDirectory();
            DamageMeasures();
            DamageGlyphs();
            DamageTexts();
        }
        Begin(kCollection, FileKind::Font);
        DamageCollection();
        Begin(kCompact, FileKind::Font);
        DamageCompactFont();
        for (const std::string& profile : {kRgb, kRgb4, kGray, kLab}) {
            Begin(profile, FileKind::Profile);
            DamageProfile();
        }
        DamageTables();
        DamageSoftFont();
        return std::move(m_damages);
    }

private:
    void Begin(const std::string& path, FileKind kind) {
        m_strWhole = ReadFileBytes(path);
        m_strName = path.substr(path.rfind('/') + 1);
        m_eKind = kind;
    }

    void Add(const std::string& name, Cause cause, std::string bytes) {
        m_damages.push_back({m_strName + ": " + name, m_eKind, std::move(bytes), cause});
    }

    /// Changes the font and makes its sums right.
    void AddFont(const std::string& name, Cause cause, const std::function<void(CFontEditor&)>& change) {
        CFontEditor font(m_strWhole);
        change(font);
        Add(name, cause, font.Done());
    }

    void AddChanged(const std::string& name, Cause cause, const std::function<void(std::string&)>& change) {
        std::string bytes = m_strWhole;
        change(bytes);
        Add(name, cause, std::move(bytes));
    }

    void AddTruncations(const std::vector<std::size_t>& sizes) {
        for (const std::size_t size : sizes) {
            Add("cut after " + std::to_string(size) + " bytes", Cause::Truncated, m_strWhole.substr(0, size));
        }
    }

    void DamageWholeFont() {
        const std::size_t size = m_strWhole.size();
        Add("empty", Cause::NotAFont, "");
        AddTruncations({8, 12, 100, size / 16, size / 4, size / 2, size * 3 / 4, size * 9 / 10, size - 1000, size - 8});
        AddChanged("zeros in front", Cause::NotAFont, [](std::string& bytes) { Put32(bytes, 0, 0); });
        AddChanged("text in front", Cause::NotAFont, [](std::string& bytes) { bytes.insert(0, "<html>"); });
        AddChanged("line ends changed", Cause::NotAFont, [](std::string& bytes) { bytes.insert(1, "\r"); });
        for (const char* const tag : {"cmap", "glyf", "head", "hhea", "hmtx", "loca", "maxp", "name", "OS/2", "post"}) {
            AddChanged(std::string("sum of ") + tag, Cause::TableChecksum, [&](std::string& bytes) {
                const std::size_t entry = CFontEditor(bytes).EntryOf(tag);
                Put32(bytes, entry + 4, Word32At(bytes, entry + 4) + 1);
            });
        }
        for (const char* const tag : {"glyf", "hmtx", "OS/2", "post", "name"}) {
            AddChanged(std::string("one bit in ") + tag, Cause::TableChecksum, [&](std::string& bytes) {
                const CFontEditor font(bytes);
                const std::size_t place = font.PlaceOf(tag) + font.LengthOf(tag) / 2;
                Put8(bytes, place, ByteAt(bytes, place) ^ 0x10);
            });
        }
        AddChanged("sum of the whole", Cause::FontChecksum, [](std::string& bytes) {
            const std::size_t place = CFontEditor(bytes).PlaceOf("head") + 8;
            Put32(bytes, place, Word32At(bytes, place) ^ 0x5555);
        });
    }

    void DamageDirectory() {
        for (const char* const tag : {"cmap", "glyf", "head", "hmtx", "loca", "name", "OS/2"}) {
            AddFont(std::string("place of ") + tag + " beyond the end", Cause::TableOutside,
                    [&](CFontEditor& font) { Put32(font.Bytes(), font.EntryOf(tag) + 8, 0x7FFFFFF0); });
            AddFont(std::string("length of ") + tag + " beyond the end", Cause::TableOutside,
                    [&](CFontEditor& font) { Put32(font.Bytes(), font.EntryOf(tag) + 12, 0xFFFFFFF0); });
        }
        for (const char* const tag : {"cmap", "head", "hmtx", "name", "loca"}) {
            AddFont(std::string("place of ") + tag + " within another", Cause::TableOverlap, [&](CFontEditor& font) {
                Put32(font.Bytes(), font.EntryOf(tag) + 8, static_cast<std::uint32_t>(font.PlaceOf("glyf") + 64));
            });
        }
        for (const char* const tag : {"cmap", "glyf", "head", "hhea", "hmtx", "loca", "maxp"}) {
            AddFont(std::string("without ") + tag, Cause::TableMissing,
                    [&](CFontEditor& font) { font.Bytes()[font.EntryOf(tag) + 1] = '_'; });
        }
        AddFont("without name", Cause::NamesMissing,
                [](CFontEditor& font) { font.Bytes()[font.EntryOf("name")] = '_'; });
        AddFont("without OS/2", Cause::RightsUnclear,
                [](CFontEditor& font) { font.Bytes()[font.EntryOf("OS/2")] = '_'; });
        for (const unsigned int count : {0U, 3U, 200U, 65535U}) {
            AddChanged(std::to_string(count) + " tables", Cause::DirectoryDamaged,
                       [&](std::string& bytes) { Put16(bytes, 4, count); });
        }
        AddChanged("zeros in the directory", Cause::DirectoryDamaged,
                   [](std::string& bytes) { bytes.replace(28, 32, 32, '\0'); });
        AddChanged("a table listed twice", Cause::DirectoryDamaged,
                   [](std::string& bytes) { bytes.replace(44, 16, bytes, 28, 16); });
    }

    void DamageMeasures() {
        const auto in = [&](const char* tag, std::size_t place, unsigned int value, Cause cause,
                            const std::string& name) {
            AddFont(std::string(tag) + ": " + name, cause,
                    [&](CFontEditor& font) { Put16(font.Bytes(), font.PlaceOf(tag) + place, value); });
        };
        in("head", 12, 0, Cause::TableMalformed, "mark");
        in("head", 18, 0, Cause::TableMalformed, "no units");
        in("head", 18, 8, Cause::TableMalformed, "few units");
        in("head", 18, 65535, Cause::TableMalformed, "many units");
        in("head", 50, 7, Cause::TableMalformed, "form of places");
        in("head", 50, CFontEditor(m_strWhole).HasWidePlaces() ? 0 : 1, Cause::GlyphPlaces, "other form of places");
        in("maxp", 0, 9, Cause::TableMalformed, "version");
        in("maxp", 4, 0, Cause::TableMalformed, "no glyphs");
        in("maxp", 4, 65535, Cause::GlyphPlaces, "many glyphs");
        in("hhea", 34, 0, Cause::TableMalformed, "no widths");
        in("hhea", 34, 65535, Cause::TableMalformed, "many widths");
        for (const auto& [tag, length] :
             {std::pair("head", 20U), std::pair("hhea", 8U), std::pair("maxp", 4U), std::pair("hmtx", 6U)}) {
            AddFont(std::string(tag) + " cut short", Cause::TableMalformed,
                    [&, name = tag, size = length](CFontEditor& font) {
                        Put32(font.Bytes(), font.EntryOf(name) + 12, size);
                    });
        }
        in("OS/2", 8, 0x0002, Cause::RightsRestricted, "restricted");
        in("OS/2", 8, 0x0102, Cause::RightsRestricted, "restricted, no subsets");
        in("OS/2", 8, 0x0200, Cause::RightsRestricted, "bitmaps only");
        in("OS/2", 8, 0x0006, Cause::RightsUnclear, "restricted and preview");
    }

    void DamageGlyphs() {
        AddFont("all outlines empty", Cause::OutlinesMissing, [](CFontEditor& font) {
            for (std::uint32_t glyph = 0; glyph <= font.GlyphCount(); ++glyph) {
                font.SetGlyphPlace(glyph, 0);
            }
        });
        AddFont("all glyphs without contours", Cause::OutlinesMissing, [](CFontEditor& font) {
            for (std::uint32_t glyph = 0; glyph < font.GlyphCount(); ++glyph) {
                if (font.GlyphPlace(glyph + 1) > font.GlyphPlace(glyph)) {
                    Put16(font.Bytes(), font.PlaceOf("glyf") + font.GlyphPlace(glyph), 0);
                }
            }
        });
        for (const std::uint32_t letter : {36U, 68U}) { // A and a in these fonts
            AddFont("glyph " + std::to_string(letter) + " without contours", Cause::CharactersEmpty,
                    [&](CFontEditor& font) { Put16(font.Bytes(), font.PlaceOf("glyf") + font.GlyphPlace(letter), 0); });
        }
        AddFont("places descend", Cause::GlyphPlaces,
                [](CFontEditor& font) { font.SetGlyphPlace(5, font.GlyphPlace(200)); });
        AddFont("place beyond the outlines", Cause::GlyphPlaces,
                [](CFontEditor& font) { font.SetGlyphPlace(font.GlyphCount(), font.LengthOf("glyf") + 4000); });
        AddFont("places cut short", Cause::GlyphPlaces,
                [](CFontEditor& font) { Put32(font.Bytes(), font.EntryOf("loca") + 12, 400); });
        AddFont("outlines cut short", Cause::GlyphPlaces,
                [](CFontEditor& font) { Put32(font.Bytes(), font.EntryOf("glyf") + 12, 4000); });
        const auto simple = [&](const std::string& name, const std::function<void(std::string&, std::size_t)>& change) {
            AddFont(name, Cause::OutlineUnreadable,
                    [&](CFontEditor& font) { change(font.Bytes(), font.FirstGlyph(true)); });
        };
        simple("30000 contours", [](std::string& bytes, std::size_t glyph) { Put16(bytes, glyph, 30000); });
        simple("a contour of 60000 points",
               [](std::string& bytes, std::size_t glyph) { Put16(bytes, glyph + 10, 60000); });
        simple("60000 instructions", [](std::string& bytes, std::size_t glyph) {
            Put16(bytes, glyph + 10 + std::size_t{Word16At(bytes, glyph)} * 2, 60000);
        });
        AddFont("glyph cut to its head", Cause::OutlineUnreadable, [](CFontEditor& font) {
            font.FirstGlyph(true);
            const std::uint32_t glyph = font.GlyphOfFirst();
            // What is cut off goes to the glyph before.
            font.SetGlyphPlace(glyph, font.GlyphPlace(glyph + 1) - 4);
        });
        const auto composite = [&](const std::string& name,
                                   const std::function<void(CFontEditor&, std::size_t)>& change) {
            AddFont(name, Cause::OutlineUnreadable, [&](CFontEditor& font) { change(font, font.FirstGlyph(false)); });
        };
        composite("part that is no glyph",
                  [](CFontEditor& font, std::size_t glyph) { Put16(font.Bytes(), glyph + 12, 65000); });
        composite("part of itself",
                  [](CFontEditor& font, std::size_t glyph) { Put16(font.Bytes(), glyph + 12, font.GlyphOfFirst()); });
        composite("part put at a point that is not there", [](CFontEditor& font, std::size_t glyph) {
            Put16(font.Bytes(), glyph + 10, Word16At(font.Bytes(), glyph + 10) & ~2U);
        });
        composite("endless parts", [](CFontEditor& font, std::size_t glyph) {
            const std::size_t end = font.PlaceOf("glyf") + font.GlyphPlace(font.GlyphOfFirst() + 1);
            for (std::size_t place = glyph + 10; place + 2 <= end; place += 6) {
                Put16(font.Bytes(), place, 0x20);
                if (place + 4 <= end) {
                    Put16(font.Bytes(), place + 2, 0);
                }
            }
        });
    }

    void DamageTexts() {
        const auto in = [&](const char* tag, std::size_t place, unsigned int value, Cause cause,
                            const std::string& name) {
            AddFont(std::string(tag) + ": " + name, cause,
                    [&](CFontEditor& font) { Put16(font.Bytes(), font.PlaceOf(tag) + place, value); });
        };
        in("cmap", 2, 65535, Cause::TableMalformed, "many maps");
        in("cmap", 8, 0x7FFF, Cause::TableMalformed, "place of a map");
        AddFont("cmap: no map from Unicode", Cause::CharactersMissing, [](CFontEditor& font) {
            const std::size_t table = font.PlaceOf("cmap");
            for (std::size_t i = 0, count = Word16At(font.Bytes(), table + 2); i < count; ++i) {
                Put16(font.Bytes(), table + 4 + i * 8, 9);
            }
        });
        AddFont("cmap: no maps", Cause::CharactersMissing,
                [](CFontEditor& font) { Put16(font.Bytes(), font.PlaceOf("cmap") + 2, 0); });
        AddFont("cmap: cut short", Cause::TableMalformed,
                [](CFontEditor& font) { Put32(font.Bytes(), font.EntryOf("cmap") + 12, 60); });
        in("name", 2, 65535, Cause::TableMalformed, "many names");
        in("name", 4, 65535, Cause::TableMalformed, "place of the texts");
        AddFont("name: cut short", Cause::TableMalformed,
                [](CFontEditor& font) { Put32(font.Bytes(), font.EntryOf("name") + 12, 40); });
        const auto names = [&](const std::string& name, Cause cause, unsigned int which,
                               const std::function<void(std::string&, std::size_t, std::size_t)>& change) {
            AddFont(name, cause, [&](CFontEditor& font) {
                const std::size_t table = font.PlaceOf("name");
                std::string& bytes = font.Bytes();
                for (std::size_t i = 0, count = Word16At(bytes, table + 2); i < count; ++i) {
                    const std::size_t record = table + 6 + i * 12;
                    if (Word16At(bytes, record + 6) == which) {
                        change(bytes, record, table + Word16At(bytes, table + 4) + Word16At(bytes, record + 10));
                    }
                }
            });
        };
        names("no PostScript name", Cause::NamesMissing, 6,
              [](std::string& bytes, std::size_t record, std::size_t) { Put16(bytes, record + 6, 300); });
        names("no family name", Cause::NamesMissing, 1,
              [](std::string& bytes, std::size_t record, std::size_t) { Put16(bytes, record + 6, 300); });
        names("empty full name", Cause::NamesMissing, 4,
              [](std::string& bytes, std::size_t record, std::size_t) { Put16(bytes, record + 8, 0); });
        names("PostScript name with a bracket", Cause::PostScriptName, 6,
              [](std::string& bytes, std::size_t, std::size_t text) { Put8(bytes, text + 1, '('); });
    }

    void DamageCollection() {
        AddTruncations({10, 14, 40, m_strWhole.size() / 2, m_strWhole.size() - 100});
        AddChanged("no fonts", Cause::DirectoryDamaged, [](std::string& bytes) { Put32(bytes, 8, 0); });
        AddChanged("many fonts", Cause::DirectoryDamaged, [](std::string& bytes) { Put32(bytes, 8, 0x10000000); });
        AddChanged("place of the second font", Cause::DirectoryDamaged,
                   [](std::string& bytes) { Put32(bytes, 16, 12); });
        AddChanged("place of the first font", Cause::Truncated,
                   [](std::string& bytes) { Put32(bytes, 12, 0x7FFFFFFF); });
        AddChanged("restricted", Cause::RightsRestricted, [](std::string& bytes) {
            const std::size_t start = Word32At(bytes, 12);
            for (std::size_t i = 0, count = Word16At(bytes, start + 4); i < count; ++i) {
                if (bytes.compare(start + 12 + i * 16, 4, "OS/2") == 0) {
                    Put16(bytes, Word32At(bytes, start + 12 + i * 16 + 8) + 8, 2);
                }
            }
        });
    }

    void DamageCompactFont() {
        const std::size_t size = m_strWhole.size();
        AddTruncations({100, size / 2, size - 600});
        AddFont("without CFF", Cause::TableMissing,
                [](CFontEditor& font) { font.Bytes()[font.EntryOf("CFF ")] = '_'; });
        AddFont("restricted", Cause::RightsRestricted,
                [](CFontEditor& font) { Put16(font.Bytes(), font.PlaceOf("OS/2") + 8, 2); });
        AddFont("head of CFF", Cause::TableMalformed,
                [](CFontEditor& font) { Put8(font.Bytes(), font.PlaceOf("CFF ") + 2, 255); });
        AddFont("index of CFF", Cause::TableMalformed,
                [](CFontEditor& font) { Put16(font.Bytes(), font.PlaceOf("CFF ") + 4, 60000); });
        AddFont("CFF cut short", Cause::TableMalformed,
                [](CFontEditor& font) { Put32(font.Bytes(), font.EntryOf("CFF ") + 12, 400); });
        const auto outline = [&](const std::string& name, const std::string& code) {
            AddFont("outline " + name, Cause::OutlineUnreadable,
                    [&](CFontEditor& font) { font.Bytes().replace(font.CompactGlyph(40), code.size(), code); });
        };
        outline("with a move to nowhere", "\x15");
        outline("with half a line", "\x8B\x05");
        outline("that calls what is not there", std::string("\x1C\x7F\xFF\x1D"));
        outline("that returns to nothing", "\x0B");
        outline("that ends with numbers left", "\x8B\x8B\x0E");
        AddChanged("one bit in CFF", Cause::TableChecksum, [](std::string& bytes) {
            const CFontEditor font(bytes);
            const std::size_t place = font.PlaceOf("CFF ") + font.LengthOf("CFF ") / 2;
            Put8(bytes, place, ByteAt(bytes, place) ^ 1);
        });
    }

    std::size_t TagEntry(const std::string& bytes, const std::string& name) const {
        for (std::size_t i = 0, count = Word32At(bytes, 128); i < count; ++i) {
            if (bytes.compare(132 + i * 12, 4, name) == 0) {
                return 132 + i * 12;
            }
        }
        throw std::runtime_error("no tag " + name);
    }

    void AddTag(const std::string& name, Cause cause, const std::string& tag,
                const std::function<void(std::string&, std::size_t)>& change) {
        AddChanged(tag + ": " + name, cause,
                   [&](std::string& bytes) { change(bytes, Word32At(bytes, TagEntry(bytes, tag) + 4)); });
    }

    void DamageProfile() {
        const std::size_t size = m_strWhole.size();
        Add("empty", Cause::NotAProfile, "");
        AddTruncations({80, 131, 140, size / 2, size - 40});
        const auto at = [&](std::size_t place, std::uint32_t value, Cause cause, const std::string& name) {
            AddChanged(name, cause, [&](std::string& bytes) { Put32(bytes, place, value); });
        };
        at(36, 0, Cause::NotAProfile, "no mark");
        at(0, 0x7FFFFFFF, Cause::ProfileHeader, "size too large");
        at(0, 200, Cause::ProfileHeader, "size too small");
        AddChanged("bytes behind the end", Cause::ProfileLength, [](std::string& bytes) { bytes += "</body></html>"; });
        at(8, 0x05000000, Cause::ProfileVersion, "version 5");
        at(8, 0, Cause::ProfileVersion, "no version");
        at(12, 0x3F3F3F3F, Cause::ProfileHeader, "class");
        at(16, 0x41424344, Cause::ProfileHeader, "colour space");
        at(20, 0x52474220, Cause::ProfileHeader, "connection space");
        at(64, 77, Cause::ProfileHeader, "rendering intent");
        AddChanged("illuminant of zero", Cause::Illuminant,
                   [](std::string& bytes) { bytes.replace(68, 12, 12, '\0'); });
        at(68, 0x0000F333, Cause::Illuminant, "illuminant of a screen"); // 0.95
        at(128, 0, Cause::TagTableDamaged, "no tags");
        at(128, 100000, Cause::TagTableDamaged, "many tags");
        at(132, 0, Cause::TagTableDamaged, "a tag without a name");
        at(136, 0x7FFFFFFF, Cause::TagOutside, "place of the first tag");
        at(136, 4, Cause::TagOutside, "first tag over the header");
        at(140, 0x7FFFFFFF, Cause::TagOutside, "length of the first tag");
        AddChanged("a tag listed twice", Cause::TagTwice,
                   [](std::string& bytes) { bytes.replace(144, 12, bytes, 132, 12); });
        for (const char* const tag : {"desc", "cprt", "wtpt"}) {
            AddChanged(std::string("without ") + tag, Cause::TagMissing,
                       [&](std::string& bytes) { bytes[TagEntry(bytes, tag)] = '_'; });
        }
        AddTag("of zeros", Cause::WhitePoint, "wtpt",
               [](std::string& bytes, std::size_t tag) { bytes.replace(tag + 8, 12, 12, '\0'); });
        AddTag("dark", Cause::WhitePoint, "wtpt",
               [](std::string& bytes, std::size_t tag) { Put32(bytes, tag + 12, 0x0500); });
        AddTag("of a negative amount", Cause::WhitePoint, "wtpt",
               [](std::string& bytes, std::size_t tag) { Put32(bytes, tag + 8, 0xFFFF0000); });
        for (const char* const tag : {"wtpt", "desc", "cprt"}) {
            AddTag("of another type", Cause::TagMalformed, tag,
                   [](std::string& bytes, std::size_t place) { Put32(bytes, place, 0x6F6F6F6F); });
        }
        DamageColours();
    }

    void DamageColours() {
        if (m_strName == "Gray.icc") {
            AddChanged("without kTRC", Cause::TagMissing,
                       [&](std::string& bytes) { bytes[TagEntry(bytes, "kTRC")] = '_'; });
            DamageCurve("kTRC");
        } else if (m_strName != "LCMSLABI.ICM") {
            for (const char* const tag : {"rXYZ", "bXYZ", "gTRC", "bTRC"}) {
                AddChanged(std::string("without ") + tag, Cause::TagMissing,
                           [&](std::string& bytes) { bytes[TagEntry(bytes, tag)] = '_'; });
            }
            DamageCurve("gTRC");
            AddTag("of another type", Cause::TagMalformed, "gXYZ",
                   [](std::string& bytes, std::size_t place) { Put32(bytes, place, 0x6D667431); });
            AddTag("of zeros", Cause::TransformImpossible, "gXYZ",
                   [](std::string& bytes, std::size_t place) { bytes.replace(place + 8, 12, 12, '\0'); });
            AddChanged("red is blue", Cause::TransformImpossible, [&](std::string& bytes) {
                bytes.replace(TagEntry(bytes, "rXYZ") + 4, 8, bytes, TagEntry(bytes, "bXYZ") + 4, 8);
            });
        }
        if (Word32At(m_strWhole, 8) >> 24 == 4) {
            AddTag("one bit", Cause::ProfileDigest, "rXYZ", [](std::string& bytes, std::size_t place) {
                Put8(bytes, place + 11, ByteAt(bytes, place + 11) ^ 1);
            });
        }
    }

    void DamageCurve(const std::string& tag) {
        AddTag("of another type", Cause::TagMalformed, tag,
               [](std::string& bytes, std::size_t place) { Put32(bytes, place, 0x58595A20); });
        AddTag("too long", Cause::TagMalformed, tag, [](std::string& bytes, std::size_t place) {
            if (bytes.compare(place, 4, "curv") == 0) {
                Put32(bytes, place + 8, 0x10000000);
            } else {
                Put16(bytes, place + 8, 9); // a form that is not known
            }
        });
    }

    void DamageTables() {
        Begin(kLab, FileKind::Profile);
        for (const char* const tag : {"A2B0", "B2A0"}) {
            AddChanged(std::string("without ") + tag, Cause::TagMissing,
                       [&](std::string& bytes) { bytes[TagEntry(bytes, tag)] = '_'; });
        }
        for (const char* const tag : {"A2B0", "B2A0", "A2B1", "B2A2"}) {
            AddTag("of another type", Cause::TagMalformed, tag,
                   [](std::string& bytes, std::size_t place) { Put32(bytes, place, 0x74657874); });
            AddTag("of nine channels", Cause::TagMalformed, tag,
                   [](std::string& bytes, std::size_t place) { Put8(bytes, place + 8, 9); });
            AddTag("without a result", Cause::TagMalformed, tag,
                   [](std::string& bytes, std::size_t place) { Put8(bytes, place + 9, 0); });
            AddTag("of a large grid", Cause::TagMalformed, tag,
                   [](std::string& bytes, std::size_t place) { Put8(bytes, place + 10, 255); });
            AddTag("of long curves", Cause::TagMalformed, tag,
                   [](std::string& bytes, std::size_t place) { Put16(bytes, place + 48, 65535); });
        }
    }

    void DamageSoftFont() {
        m_strWhole = WholeSoftFont();
        m_strName = "soft font";
        m_eKind = FileKind::SoftFont;
        Add("empty", Cause::NotASoftFont, "");
        Add("text", Cause::NotASoftFont, "%!PS-Adobe");
        AddTruncations({3, 10, 40, m_strWhole.size() / 2, m_strWhole.size() - 1});
        const std::size_t header = m_strWhole.find("W") + 1;
        const auto at = [&](std::size_t place, unsigned int value, Cause cause, const std::string& name) {
            AddChanged(name, cause, [&](std::string& bytes) { Put16(bytes, header + place, value); });
        };
        at(0, 60, Cause::SoftFontHeader, "header of 60 bytes");
        at(0, 200, Cause::SoftFontHeader, "header of 200 bytes");
        at(2, 0x0F00, Cause::SoftFontHeader, "header of a scalable font");
        at(2, 0x0009, Cause::SoftFontHeader, "font type");
        at(12, 0x0900, Cause::SoftFontHeader, "orientation");
        at(10, 0, Cause::SoftFontHeader, "no height");
        at(38, 90, Cause::SoftFontCount, "last character");
        AddChanged("no number", Cause::SoftFontID, [](std::string& bytes) { bytes.erase(0, bytes.find('\x1B', 1)); });
        AddChanged("no characters", Cause::SoftFontEmpty, [&](std::string& bytes) { bytes.resize(header + 64); });
        const std::size_t character = m_strWhole.find("W", header + 64) + 1;
        AddChanged("size of a character", Cause::SoftFontCharacter,
                   [&](std::string& bytes) { Put16(bytes, character + 10, 0); });
        AddChanged("wide character", Cause::SoftFontCharacter,
                   [&](std::string& bytes) { Put16(bytes, character + 10, 800); });
        AddChanged("form of a character", Cause::SoftFontCharacter,
                   [&](std::string& bytes) { Put8(bytes, character, 9); });
        AddChanged("character twice", Cause::SoftFontCharacter, [&](std::string& bytes) {
            const std::size_t first = bytes.find("*c65E");
            bytes.insert(first - 1, bytes.substr(first - 1, bytes.find("*c66E") - first));
        });
        AddChanged("text between", Cause::SoftFontCharacter,
                   [&](std::string& bytes) { bytes.insert(bytes.find("*c66E") - 1, "oops"); });
    }

    std::vector<Damage> m_damages;
    std::string m_strWhole;
    std::string m_strName;
    FileKind m_eKind = FileKind::Font;
};

} // namespace

const std::vector<std::string>& UndamagedFonts() {
    static const std::vector<std::string> fonts{kSansFont, kMonoFont, kCollection, kCompact};
    return fonts;
}

const std::vector<std::string>& UndamagedProfiles() {
    static const std::vector<std::string> profiles{kRgb, kRgb4, kGray, kLab};
    return profiles;
}

std::string WholeSoftFont() {
    std::string header(64, '\0');
    Put16(header, 0, 64);
    Put8(header, 3, 1);   // 8-bit
    Put16(header, 6, 12); // baseline
    Put16(header, 8, 8);  // cell
    Put16(header, 10, 16);
    Put16(header, 14, 277); // 8U
    Put16(header, 16, 32);  // pitch of 8 dots
    Put16(header, 18, 64);  // height of 16 dots
    Put8(header, 24, 3);    // bold
    Put8(header, 25, 4);
    Put8(header, 26, 16);
    Put16(header, 36, 65);
    Put16(header, 38, 67);
    header.replace(48, 4, "Tiny");
    std::string font = "\x1B*c7D\x1B)s64W" + header;
    for (const char* const code : {"65", "66", "67"}) {
        std::string character(16, '\0');
        Put8(character, 0, 4);
        Put8(character, 2, 14);
        Put8(character, 3, 1);
        Put16(character, 10, 8);
        Put16(character, 12, 12);
        Put16(character, 14, 32);
        font += std::string("\x1B*c") + code + "E\x1B(s28W" + character + std::string(12, '\x7E');
    }
    return font;
}

std::vector<Damage> MakeDamages() { return CDamages().Make(); }
