#include "file_finding.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

namespace {

struct Entry {
    Cause cause;
    CauseText text;
};

constexpr const char* kFreshCopy = "get a fresh copy of the file";
constexpr const char* kFreshFont = "get a fresh copy of the font, or another version of it";
constexpr const char* kFreshProfile = "get a fresh copy of the profile, or have it made anew";
constexpr const char* kRefusesFont = "the printer refuses the font, or prints with another one in its place";
constexpr const char* kWrongShapes = "characters may print with wrong shapes";
constexpr const char* kRefusesProfile = "the printer refuses the profile, or prints with its own colours";
constexpr const char* kWrongColours = "colours print wrong";

// In the order of the causes.
constexpr Entry kEntries[] = {
    {Cause::Truncated,
     {Severity::Error, "truncated", "the printer stores a file that it cannot use",
      "copy or download the file again: its end is missing"}},
    {Cause::NotAFont,
     {Severity::Error, "not-a-font", kRefusesFont, "give the file its right kind with --type, or leave it out"}},
    {Cause::DirectoryDamaged, {Severity::Error, "directory-damaged", kRefusesFont, kFreshCopy}},
    {Cause::TableOutside, {Severity::Error, "table-outside", kRefusesFont, kFreshCopy}},
    {Cause::TableOverlap,
     {Severity::Error, "table-overlap", "the printer takes something else for a part of the font", kFreshCopy}},
    {Cause::TableMissing, {Severity::Error, "table-missing", kRefusesFont, kFreshFont}},
    {Cause::TableChecksum,
     {Severity::Warning, "table-checksum",
      "the font was changed after it was made: characters may print wrong, and strict "
      "printers refuse it",
      kFreshCopy}},
    {Cause::FontChecksum,
     {Severity::Warning, "font-checksum", "the font was changed after it was made; strict printers refuse it",
      kFreshCopy}},
    {Cause::TableMalformed, {Severity::Error, "table-malformed", kRefusesFont, kFreshFont}},
    {Cause::GlyphPlaces,
     {Severity::Error, "glyph-places", "characters print as something else, or not at all", kFreshCopy}},
    {Cause::OutlineUnreadable,
     {Severity::Error, "outline-unreadable", "a page with such a character stops with an error, or lacks it",
      kFreshFont}},
    {Cause::OutlinesMissing, {Severity::Error, "outlines-missing", "pages with this font print empty", kFreshFont}},
    {Cause::CharactersEmpty, {Severity::Error, "characters-empty", "these characters print as blanks", kFreshFont}},
    {Cause::CharactersMissing,
     {Severity::Error, "characters-missing", "no character can be printed: none has a shape assigned", kFreshFont}},
    {Cause::NamesMissing,
     {Severity::Warning, "names-missing", "documents find the font on the printer by its name, and it has none",
      "use a version of the font that has its names"}},
    {Cause::PostScriptName,
     {Severity::Warning, "postscript-name", "PostScript jobs cannot ask for the font by this name",
      "use a version of the font with a proper PostScript name"}},
    {Cause::RightsRestricted,
     {Severity::Error, "rights-restricted", "its maker does not allow that the font is stored in a printer",
      "ask its maker for a licence; with one, add it with --force"}},
    {Cause::RightsUnclear,
     {Severity::Warning, "rights-unclear", "whether its maker allows that it is stored in a printer is not clear",
      "read the licence of the font"}},
    {Cause::NotCovered,
     {Severity::Error, "not-covered", "these characters of the text do not print", "choose a font that has them"}},
    {Cause::CompactOutlines,
     {Severity::Warning, "compact-outlines", "printers that take TrueType fonts only refuse it",
      "use the TrueType version of the font"}},
    {Cause::Collection,
     {Severity::Warning, "collection", "many printers know the first font of it only",
      "take the collection apart and add the fonts that are needed"}},
    {Cause::NotASoftFont,
     {Severity::Error, "not-a-soft-font", "the printer takes it for a print job",
      "give the file its right kind with --type, or leave it out"}},
    {Cause::SoftFontHeader, {Severity::Error, "soft-font-header", kRefusesFont, kFreshFont}},
    {Cause::SoftFontCharacter, {Severity::Error, "soft-font-character", kWrongShapes, kFreshFont}},
    {Cause::SoftFontEmpty, {Severity::Error, "soft-font-empty", "pages with this font print empty", kFreshFont}},
    {Cause::SoftFontCount,
     {Severity::Warning, "soft-font-count", "some characters that the font promises do not print",
      "see whether they are needed; else use a complete version of the font"}},
    {Cause::SoftFontID,
     {Severity::Warning, "soft-font-id", "the printer stores it under the last number that was in use before it",
      "give it a number of its own in front: ESC *c#D"}},
    {Cause::NotAProfile,
     {Severity::Error, "not-a-profile", kRefusesProfile, "give the file its right kind with --type, or leave it out"}},
    {Cause::ProfileLength,
     {Severity::Warning, "profile-length", "the printer stores more than the profile; strict ones refuse it",
      kFreshProfile}},
    {Cause::ProfileHeader, {Severity::Error, "profile-header", kRefusesProfile, kFreshProfile}},
    {Cause::ProfileVersion,
     {Severity::Error, "profile-version", kRefusesProfile, "have the profile made in version 2 or 4"}},
    {Cause::TagTableDamaged, {Severity::Error, "tag-table-damaged", kRefusesProfile, kFreshProfile}},
    {Cause::TagOutside, {Severity::Error, "tag-outside", kRefusesProfile, kFreshProfile}},
    {Cause::TagTwice, {Severity::Error, "tag-twice", kRefusesProfile, kFreshProfile}},
    {Cause::TagMissing, {Severity::Error, "tag-missing", kRefusesProfile, kFreshProfile}},
    {Cause::TagMalformed, {Severity::Error, "tag-malformed", kRefusesProfile, kFreshProfile}},
    {Cause::WhitePoint,
     {Severity::Error, "white-point", "white does not print white, and all colours shift", kFreshProfile}},
    {Cause::Illuminant, {Severity::Error, "illuminant", "all colours shift", kFreshProfile}},
    {Cause::ProfileDigest,
     {Severity::Warning, "profile-digest", "the profile was changed after it was made: colours may print wrong",
      kFreshProfile}},
    {Cause::TransformImpossible, {Severity::Error, "transform-impossible", kWrongColours, kFreshProfile}},
    {Cause::ClassForSlot,
     {Severity::Warning, "class-for-slot", kWrongColours,
      "choose the slots that the profile is made for: --profile rgb, printer or linked"}},
    {Cause::FileMissing,
     {Severity::Error, "file-missing", "the file cannot be sent",
      "bring the file back, or take it from the list: cordelctl files remove FILE"}},
    {Cause::FileUnreadable, {Severity::Error, "file-unreadable", "the file cannot be sent", "make the file readable"}},
    {Cause::FileChanged,
     {Severity::Warning, "file-changed", "another file is sent than was added, and its space is worked out wrongly",
      "record what it is now: cordelctl files renew FILE"}},
    {Cause::SameContent,
     {Severity::Warning, "same-content", "the same file takes its space twice",
      "remove one of the two from the project"}},
    {Cause::SamePostScriptName,
     {Severity::Warning, "same-postscript-name", "which of the fonts a document gets is left to the printer",
      "keep one of them for each printer"}},
};

constexpr bool AreInOrder() {
    for (std::size_t i = 0; i < std::size(kEntries); ++i) {
        if (static_cast<std::size_t>(kEntries[i].cause) != i) {
            return false;
        }
    }
    return std::size(kEntries) == static_cast<std::size_t>(Cause::SamePostScriptName) + 1;
}
static_assert(AreInOrder());

} // namespace

const CauseText& TextOf(Cause cause) noexcept { return kEntries[static_cast<std::size_t>(cause)].text; }

bool HasError(const FileFindings& findings) noexcept {
    return std::any_of(findings.begin(), findings.end(),
                       [](const FileFinding& finding) { return TextOf(finding.cause).severity == Severity::Error; });
}
