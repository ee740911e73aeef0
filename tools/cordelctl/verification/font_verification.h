// Whether a font will work on a printer: its structure, its outlines, its names, its embedding rights and the
// characters that it has.

#pragma once

#include "file_finding.h"

#include <string>
#include <string_view>
#include <vector>

/// One font of a file.
struct FontMember {
    std::string fullName;
    std::string postScriptName;
};

struct FontVerification {
    std::vector<FontMember> members; // more than one in a collection
    FileFindings findings;
};

/// `text` (UTF-8) is what shall be printed with the font; empty when that is not asked. Every font of a collection is
/// looked at, and has to have all characters.
FontVerification VerifyFont(std::string_view file, std::string_view text = {});
