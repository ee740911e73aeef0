// Reads fonts with FreeType.

#include "font_facts.h"

#include "utf8.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BDF_H
#include FT_FONT_FORMATS_H
#include FT_SFNT_NAMES_H
#include FT_TRUETYPE_IDS_H

#include <stdexcept>
#include <string_view>

namespace {

class CFace {
public:
    explicit CFace(const std::filesystem::path& path) {
        if (FT_Init_FreeType(&m_hLibrary) != 0) {
            throw std::runtime_error("the font reader cannot be started");
        }
        const FT_Error error = FT_New_Face(m_hLibrary, path.string().c_str(), 0, &m_hFace);
        if (error != 0) {
            FT_Done_FreeType(m_hLibrary);
            throw std::runtime_error(error == FT_Err_Cannot_Open_Resource ? "it cannot be opened"
                                                                          : "it is damaged, or is no font");
        }
    }
    ~CFace() {
        FT_Done_Face(m_hFace);
        FT_Done_FreeType(m_hLibrary);
    }
    CFace(const CFace&) = delete;
    CFace& operator=(const CFace&) = delete;
    FT_Face Get() const noexcept { return m_hFace; }

private:
    FT_Library m_hLibrary = nullptr;
    FT_Face m_hFace = nullptr;
};

std::string OrEmpty(const char* text) { return text != nullptr ? text : ""; }

std::string FromUtf16BigEndian(const FT_SfntName& name) {
    std::u16string text;
    for (FT_UInt i = 0; i + 1 < name.string_len; i += 2) {
        text += static_cast<char16_t>((name.string[i] << 8) | name.string[i + 1]);
    }
    return Utf16ToUtf8(text);
}

std::string FromMacRoman(const FT_SfntName& name) {
    constexpr std::u16string_view kUpperHalf = u"ÄÅÇÉÑÖÜáàâäãåçéèêëíìîïñóòôöõúùûü†°¢£§•¶ß®©™´¨≠ÆØ∞±≤≥¥µ∂∑∏π∫ªºΩæø¿¡¬√ƒ≈"
                                               u"∆«»…\u00A0ÀÃÕŒœ–—“”‘’÷◊ÿŸ⁄€‹›ﬁﬂ‡·‚„‰ÂÊÁËÈÍÎÏÌÓÔ\uF8FFÒÚÛÙıˆ˜¯˘˙˚¸˝˛ˇ";
    static_assert(kUpperHalf.size() == 128);
    std::string text;
    for (FT_UInt i = 0; i < name.string_len; ++i) {
        const FT_Byte c = name.string[i];
        AppendUtf8(text, c < 0x80 ? c : kUpperHalf[c - 0x80u]);
    }
    return text;
}

/// How welcome a record of the name table is; 0 when it cannot be decoded.
int Rank(const FT_SfntName& name) {
    if (name.platform_id == TT_PLATFORM_MICROSOFT) {
        const bool utf16 = name.encoding_id == TT_MS_ID_UNICODE_CS || name.encoding_id == TT_MS_ID_UCS_4 ||
                           name.encoding_id == TT_MS_ID_SYMBOL_CS;
        constexpr int kEnglish = 0x09; // primary language, in the low bits
        return !utf16                                                   ? 0
               : name.language_id == TT_MS_LANGID_ENGLISH_UNITED_STATES ? 5
               : (name.language_id & 0x3FF) == kEnglish                 ? 4
                                                                        : 2;
    }
    if (name.platform_id == TT_PLATFORM_APPLE_UNICODE) {
        return 3;
    }
    return name.platform_id == TT_PLATFORM_MACINTOSH && name.encoding_id == TT_MAC_ID_ROMAN ? 1 : 0;
}

std::string NameFromTable(FT_Face face, FT_UInt nameID) {
    FT_SfntName best{};
    int bestRank = 0;
    for (FT_UInt i = 0, count = FT_Get_Sfnt_Name_Count(face); i < count; ++i) {
        FT_SfntName name;
        if (FT_Get_Sfnt_Name(face, i, &name) == 0 && name.name_id == nameID && Rank(name) > bestRank) {
            best = name;
            bestRank = Rank(name);
        }
    }
    return bestRank == 0 ? "" : bestRank == 1 ? FromMacRoman(best) : FromUtf16BigEndian(best);
}

std::string Or(std::string text, const std::string& other) { return !text.empty() ? std::move(text) : other; }

} // namespace

TrueTypeFacts ReadTrueTypeFacts(const std::filesystem::path& path) {
    const CFace face(path);
    if (std::string_view(FT_Get_Font_Format(face.Get())) != "TrueType") {
        throw std::runtime_error("it is a " + std::string(FT_Get_Font_Format(face.Get())) + " font, not TrueType");
    }
    TrueTypeFacts facts;
    facts.family = Or(NameFromTable(face.Get(), TT_NAME_ID_FONT_FAMILY), OrEmpty(face.Get()->family_name));
    facts.style = Or(NameFromTable(face.Get(), TT_NAME_ID_FONT_SUBFAMILY), OrEmpty(face.Get()->style_name));
    facts.fullName = Or(NameFromTable(face.Get(), TT_NAME_ID_FULL_NAME), facts.family + " " + facts.style);
    facts.copyright = NameFromTable(face.Get(), TT_NAME_ID_COPYRIGHT);
    facts.postScriptName =
        Or(NameFromTable(face.Get(), TT_NAME_ID_PS_NAME), OrEmpty(FT_Get_Postscript_Name(face.Get())));
    facts.symbolSet = FT_Select_Charmap(face.Get(), FT_ENCODING_UNICODE) == 0 ? "Unicode" : "Symbol";
    return facts;
}

BitmapFontFacts ReadBitmapFontFacts(const std::filesystem::path& path) {
    const CFace holder(path);
    FT_Face const face = holder.Get();
    if (!FT_HAS_FIXED_SIZES(face) || FT_IS_SCALABLE(face)) {
        throw std::runtime_error("it is no bitmap font");
    }
    const auto property = [face](const char* name) {
        BDF_PropertyRec value;
        return FT_Get_BDF_Property(face, name, &value) == 0 && value.type != BDF_PROPERTY_TYPE_ATOM
                   ? std::to_string(value.u.integer)
                   : std::string();
    };
    const char* encoding = nullptr;
    const char* registry = nullptr;
    BitmapFontFacts facts;
    facts.name = OrEmpty(face->family_name);
    facts.format = FT_Get_Font_Format(face);
    facts.xResolution = property("RESOLUTION_X");
    facts.yResolution = property("RESOLUTION_Y");
    if (FT_Get_BDF_Charset_ID(face, &encoding, &registry) == 0 && registry != nullptr) {
        facts.fontType = OrEmpty(registry) + "-" + OrEmpty(encoding);
    }
    facts.proportional = FT_IS_FIXED_WIDTH(face) ? "0" : "1";
    facts.pitchWidth = std::to_string(face->available_sizes[0].width);
    facts.height = std::to_string(face->available_sizes[0].height);
    facts.style = OrEmpty(face->style_name);
    facts.strokeWeight = (face->style_flags & FT_STYLE_FLAG_BOLD) != 0 ? "Bold" : "Medium";
    return facts;
}
