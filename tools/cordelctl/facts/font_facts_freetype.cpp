// Reads fonts with FreeType.

#include "font_facts.h"
#include "font_names.h"

#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_BDF_H
#include FT_FONT_FORMATS_H
#include FT_SFNT_NAMES_H

#include <stdexcept>
#include <string_view>
#include <vector>

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

/// The records refer to texts that the face holds.
std::vector<FontName> NamesOf(FT_Face face) {
    std::vector<FontName> names;
    for (FT_UInt i = 0, count = FT_Get_Sfnt_Name_Count(face); i < count; ++i) {
        FT_SfntName name;
        if (FT_Get_Sfnt_Name(face, i, &name) == 0) {
            names.push_back({name.platform_id,
                             name.encoding_id,
                             name.language_id,
                             name.name_id,
                             {reinterpret_cast<const char*>(name.string), name.string_len}});
        }
    }
    return names;
}

std::string Or(const std::string& text, const std::string& other) { return text.empty() ? other : text; }

} // namespace

TrueTypeFacts ReadTrueTypeFacts(const std::filesystem::path& path) {
    const CFace face(path);
    if (std::string_view(FT_Get_Font_Format(face.Get())) != "TrueType") {
        throw std::runtime_error("it is a " + std::string(FT_Get_Font_Format(face.Get())) + " font, not TrueType");
    }
    const std::vector<FontName> names = NamesOf(face.Get());
    TrueTypeFacts facts;
    facts.family = Or(ChooseName(names, kFamilyName), OrEmpty(face.Get()->family_name));
    facts.style = Or(ChooseName(names, kStyleName), OrEmpty(face.Get()->style_name));
    facts.fullName = Or(ChooseName(names, kFullName), facts.family + " " + facts.style);
    facts.copyright = ChooseName(names, kCopyrightName);
    facts.postScriptName = Or(ChooseName(names, kPostScriptName), OrEmpty(FT_Get_Postscript_Name(face.Get())));
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
    facts.typeFace = facts.name;
    return facts;
}
