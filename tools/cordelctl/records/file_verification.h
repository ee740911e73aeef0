// Whether a file will work on a printer, as what it is meant for.

#pragma once

#include "value.h"
#include "verification/file_finding.h"

#include <string>
#include <string_view>
#include <vector>

struct ContentVerification {
    FileFindings findings;
    std::vector<std::string> postScriptNames; // of the fonts in it
};

/// Whether files of this Type have a form that can be checked: fonts and colour profiles.
bool HasForm(const std::string& type);

/// By the Type of its row; `slots` is the ProfileType of a profile, or empty. `text` (UTF-8) is to be printed with a
/// font; empty when that is not asked. Files of other Types have no form to check.
ContentVerification VerifyContent(std::string_view file, const std::string& type, const std::string& slots,
                                  std::string_view text);

/// "table-missing: table cmap; the printer refuses ...".
std::string SpokenFinding(const FileFinding& finding);

/// Severity, code, what, meaning and advice.
Value::Record DataOf(const FileFinding& finding);
