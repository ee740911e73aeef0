// What is wrong, or may go wrong, with a file that is meant for a printer.

#pragma once

#include <string>
#include <vector>

enum class Severity {
    Warning, // it is worth knowing
    Error    // the printer cannot use the file, or must not
};

enum class Cause {
    Truncated,
    // fonts
    NotAFont,
    DirectoryDamaged,
    TableOutside,
    TableOverlap,
    TableMissing,
    TableChecksum,
    FontChecksum,
    TableMalformed,
    GlyphPlaces,
    OutlineUnreadable,
    OutlinesMissing,
    CharactersEmpty,
    CharactersMissing,
    NamesMissing,
    PostScriptName,
    RightsRestricted,
    RightsUnclear,
    NotCovered,
    CompactOutlines,
    Collection,
    // soft fonts
    NotASoftFont,
    SoftFontHeader,
    SoftFontCharacter,
    SoftFontEmpty,
    SoftFontCount,
    SoftFontID,
    // profiles
    NotAProfile,
    ProfileLength,
    ProfileHeader,
    ProfileVersion,
    TagTableDamaged,
    TagOutside,
    TagTwice,
    TagMissing,
    TagMalformed,
    WhitePoint,
    Illuminant,
    ProfileDigest,
    TransformImpossible,
    ClassForSlot,
    // on this computer
    FileMissing,
    FileUnreadable,
    FileChanged,
    // several files
    SameContent,
    SamePostScriptName,
};

/// What is said of every file with this cause.
struct CauseText {
    Severity severity;
    const char* code;    // for scripts: "table-missing"
    const char* meaning; // what it means on the printer
    const char* advice;  // what to do
};

const CauseText& TextOf(Cause cause) noexcept;

struct FileFinding {
    Cause cause;
    std::string what; // the particulars: which table, which glyph
};

using FileFindings = std::vector<FileFinding>;

bool HasError(const FileFindings& findings) noexcept;
