// What is recorded of a file on this computer.

#include "records/file_facts.h"

#include "facts/file_bytes.h"
#include "facts/font_facts.h"
#include "facts/profile_facts.h"
#include "facts/soft_font.h"
#include "failure.h"
#include "records/field_text.h"
#include "system/system.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <fstream>
#include <string_view>

namespace {

/// Fills one text field after another, each named in what is said when it is cut.
class CDetailTexts {
public:
    explicit CDetailTexts(const std::filesystem::path& path) : m_strFile(host::TextOf(path)) {}

    template <std::size_t size>
    void Fill(char (&field)[size], const std::string& utf8, const char* what) {
        CopyText(field, FitText(utf8, size - 1, m_strFile + ": the " + what, m_notes));
    }

    std::string Comment(const std::string& utf8) {
        return FitText(utf8, kFieldLength, m_strFile + ": the comment", m_notes);
    }

    FitNotes& Notes() noexcept { return m_notes; }

private:
    std::string m_strFile;
    FitNotes m_notes;
};

FileDetails TrueTypeFont(const std::filesystem::path& path) {
    const TrueTypeFacts facts = ReadTrueTypeFacts(path);
    CDetailTexts texts(path);
    TrueTypeDetail detail{};
    texts.Fill(detail.fontFamilyName, facts.family, "family name");
    texts.Fill(detail.trueTypeFontName, facts.fullName, "full name");
    texts.Fill(detail.fontStyle, facts.style, "style");
    texts.Fill(detail.copyright, facts.copyright, "copyright");
    texts.Fill(detail.postScriptName, facts.postScriptName, "PostScript name");
    texts.Fill(detail.symbolSet, facts.symbolSet, "symbol set");
    return {"5", facts.fullName, "", BytesOf(detail), "fonts", "Fonts", texts.Notes()};
}

BitmapFontFacts BitmapFacts(const std::filesystem::path& path) {
    const std::string bytes = ReadFileBytes(path);
    if (!IsSoftFont(bytes)) {
        return ReadBitmapFontFacts(path);
    }
    FileFindings findings;
    const auto font = ReadSoftFont(bytes, findings);
    if (!font) {
        throw std::runtime_error("it has no header of a font");
    }
    return FactsOf(*font);
}

FileDetails BitmapFont(const std::filesystem::path& path) {
    const BitmapFontFacts facts = BitmapFacts(path);
    CDetailTexts texts(path);
    BitmapFontDetail detail{};
    texts.Fill(detail.bitMapFontName, facts.name, "name");
    texts.Fill(detail.format, facts.format, "format");
    texts.Fill(detail.xResolution, facts.xResolution, "horizontal resolution");
    texts.Fill(detail.yResolution, facts.yResolution, "vertical resolution");
    texts.Fill(detail.fontType, facts.fontType, "font type");
    texts.Fill(detail.symbolSet, facts.symbolSet, "symbol set");
    texts.Fill(detail.proportional, facts.proportional, "pitch");
    texts.Fill(detail.pitchWidth, facts.pitchWidth, "width");
    texts.Fill(detail.height, facts.height, "height");
    texts.Fill(detail.style, facts.style, "style");
    texts.Fill(detail.strokeWeight, facts.strokeWeight, "stroke weight");
    texts.Fill(detail.typeFace, facts.typeFace, "type face");
    texts.Fill(detail.escapeSequence, facts.escapeSequence, "escape sequence");
    return {"1", facts.name, "", BytesOf(detail), "fonts", "Fonts", texts.Notes()};
}

/// Which slots on the printer a profile takes.
std::string ProfileTypeOf(const ProfileFacts& facts) {
    if (facts.deviceClass == "link") {
        return "3";
    }
    if (facts.deviceClass == "prtr") {
        return "2";
    }
    if (facts.colorSpace == "RGB") {
        return "0";
    }
    throw CFailure(ExitCode::Refused,
                   "a profile of class " + facts.deviceClass + " and colour space " + facts.colorSpace +
                       " belongs to none of the kinds for which printers have slots",
                   "if it is meant for one all the same: --profile rgb, printer or linked");
}

std::string IcmTypeOf(const std::string& colorSpace) {
    return colorSpace == "RGB" ? "0" : colorSpace == "CMYK" ? "1" : colorSpace == "GRAY" ? "2" : "3";
}

FileDetails ColourProfile(const std::filesystem::path& path, const std::string& profileType) {
    const ProfileFacts facts = ReadProfileFacts(path);
    const std::string slots = profileType.empty() ? ProfileTypeOf(facts) : profileType;
    CDetailTexts texts(path);
    IcmProfileDetail detail{};
    texts.Fill(detail.description, facts.description, "description");
    texts.Fill(detail.colorSpace, facts.colorSpace, "colour space");
    texts.Fill(detail.deviceClass, facts.deviceClass, "class");
    texts.Fill(detail.copyright, facts.copyright, "copyright");
    CopyText(detail.icmType, IcmTypeOf(facts.colorSpace));
    CopyText(detail.profileType, slots);

    // The comment ends the record and may be as long as the memory behind it.
    std::string comment =
        facts.manufacturer + (facts.manufacturer.empty() || facts.model.empty() ? "" : ", ") + facts.model;
    comment = texts.Comment(comment);
    std::vector<char> bytes = BytesOf(detail);
    bytes.resize(offsetof(IcmProfileDetail, comment) + comment.size() + 1);
    std::memcpy(bytes.data() + offsetof(IcmProfileDetail, comment), comment.c_str(), comment.size() + 1);
    return {"6", facts.description, slots, std::move(bytes), "profiles", "Profiles", texts.Notes()};
}

FileDetails OtherFile(const std::filesystem::path& path, const std::string& type) {
    return type == "2" ? FileDetails{type, host::TextOf(path.stem()), "", {}, "macros", "Macros"}
                       : FileDetails{type, host::TextOf(path.stem()), "", {}, "overlays", "Overlays"};
}

/// A font or profile of which nothing is known but the name of its file.
FileDetails UnreadFile(const std::filesystem::path& path, const std::string& type, const std::string& profileType) {
    const std::string name = host::TextOf(path.stem());
    CDetailTexts texts(path);
    if (type == "6") {
        if (profileType.empty()) {
            throw CFailure(ExitCode::Refused, "which slots it takes cannot be told from its content",
                           "say it: --profile rgb, printer or linked");
        }
        IcmProfileDetail detail{};
        texts.Fill(detail.description, name, "name");
        CopyText(detail.profileType, profileType);
        return {type, name, profileType, BytesOf(detail), "profiles", "Profiles", texts.Notes()};
    }
    if (type == "1") {
        BitmapFontDetail detail{};
        texts.Fill(detail.bitMapFontName, name, "name");
        return {type, name, "", BytesOf(detail), "fonts", "Fonts", texts.Notes()};
    }
    TrueTypeDetail detail{};
    texts.Fill(detail.trueTypeFontName, name, "name");
    return {type, name, "", BytesOf(detail), "fonts", "Fonts", texts.Notes()};
}

} // namespace

std::string FileTypeOf(const std::filesystem::path& path) {
    constexpr std::size_t kSignatureOffset = 36;
    std::array<char, 40> bytes{};
    std::ifstream stream(path, std::ios::binary);
    stream.read(bytes.data(), bytes.size());
    if (stream.bad() || (!stream && !stream.eof())) {
        throw CFailure(ExitCode::Refused, "it cannot be read");
    }
    const std::string_view all(bytes.data(), bytes.size());
    const std::string_view start = all.substr(0, 4);
    if (start == std::string_view("\0\1\0\0", 4) || start == "true" || start == "ttcf") {
        return "5";
    }
    if (IsSoftFont(all) && all.find(")s") != std::string_view::npos) {
        return "1";
    }
    return all.substr(kSignatureOffset, 4) == "acsp" ? "6" : "";
}

FileDetails ReadFileDetails(const std::filesystem::path& path, const std::string& type, const std::string& profileType,
                            Unreadable unreadable) {
    try {
        if (type == "5") {
            return TrueTypeFont(path);
        }
        if (type == "1") {
            return BitmapFont(path);
        }
        if (type == "6") {
            return ColourProfile(path, profileType);
        }
    } catch (const CFailure&) {
        throw;
    } catch (const std::runtime_error& error) {
        if (unreadable == Unreadable::Taken) {
            return UnreadFile(path, type, profileType);
        }
        throw CFailure(ExitCode::Refused, error.what(), "to add it all the same: --force");
    }
    return OtherFile(path, type);
}
