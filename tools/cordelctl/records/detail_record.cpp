// The detail record of a file out of the attributes of its row.

#include "records/detail_record.h"

#include "records/field_text.h"

#include "cordelbox.h"

#include <cstddef>
#include <cstring>

namespace {

constexpr std::size_t kAnyLength = static_cast<std::size_t>(-1);

class CFieldFiller {
public:
    explicit CFieldFiller(const AttributeValues& values) : m_values(values) {}

    template <std::size_t size>
    void operator()(char (&field)[size], const char* attribute) const {
        FillExactly(field, m_values(attribute), std::string("the value of ") + attribute);
    }

private:
    const AttributeValues& m_values;
};

std::vector<char> TrueTypeFont(const CFieldFiller& fill) {
    TrueTypeDetail detail{};
    fill(detail.fontFamilyName, "FontFamilyName");
    fill(detail.trueTypeFontName, "TrueTypeTontName");
    fill(detail.fontStyle, "FontStyle");
    fill(detail.copyright, "Copyright");
    fill(detail.postScriptName, "PostScriptName");
    fill(detail.symbolSet, "SymbolSet");
    return BytesOf(detail);
}

std::vector<char> BitmapFont(const CFieldFiller& fill) {
    BitmapFontDetail detail{};
    fill(detail.bitMapFontName, "BitMapFontName");
    fill(detail.format, "Format");
    fill(detail.xResolution, "Xresolution");
    fill(detail.yResolution, "Yresolution");
    fill(detail.fontType, "FontType");
    fill(detail.symbolSet, "SymbolSet");
    fill(detail.proportional, "Proportional");
    fill(detail.pitchWidth, "PitchWidth");
    fill(detail.height, "Height");
    fill(detail.style, "Style");
    fill(detail.strokeWeight, "StrokeWeight");
    fill(detail.typeFace, "TypeFace");
    fill(detail.escapeSequence, "EscapeSequence");
    return BytesOf(detail);
}

std::vector<char> ColourProfile(const CFieldFiller& fill, const AttributeValues& values) {
    IcmProfileDetail detail{};
    fill(detail.icmType, "ICMType");
    fill(detail.profileType, "ProfileType");
    fill(detail.colorSpace, "ColorSpace");
    fill(detail.description, "Description");
    fill(detail.deviceClass, "DeviceClass");
    fill(detail.copyright, "Copyright");
    const std::string comment = RequireFit(values("Comment"), kAnyLength, "the value of Comment"); // ends the record
    std::vector<char> bytes = BytesOf(detail);
    bytes.resize(offsetof(IcmProfileDetail, comment) + comment.size() + 1);
    std::memcpy(bytes.data() + offsetof(IcmProfileDetail, comment), comment.c_str(), comment.size() + 1);
    return bytes;
}

} // namespace

std::vector<char> DetailRecordOf(const std::string& type, const AttributeValues& values) {
    const CFieldFiller fill(values);
    return type == "5"   ? TrueTypeFont(fill)
           : type == "1" ? BitmapFont(fill)
           : type == "6" ? ColourProfile(fill, values)
                         : std::vector<char>();
}
