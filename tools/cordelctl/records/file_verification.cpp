#include "records/file_verification.h"

#include "facts/soft_font.h"
#include "verification/font_verification.h"
#include "verification/profile_verification.h"

namespace {

/// Whether it begins as a bitmap font in one of the forms for screens (BDF, PCF, or one of them compressed), which
/// hosts turn into soft fonts.
bool IsFontForScreens(std::string_view file) {
    for (const std::string_view start : {"STARTFONT", "\1fcp", "\x1F\x8B"}) {
        if (file.substr(0, start.size()) == start) {
            return true;
        }
    }
    return false;
}

} // namespace

bool HasForm(const std::string& type) { return type == "1" || type == "5" || type == "6"; }

ContentVerification VerifyContent(std::string_view file, const std::string& type, const std::string& slots,
                                  std::string_view text) {
    ContentVerification result;
    if (type == "5") {
        FontVerification font = VerifyFont(file, text);
        result.findings = std::move(font.findings);
        for (FontMember& member : font.members) {
            result.postScriptNames.push_back(std::move(member.postScriptName));
        }
    } else if (type == "6") {
        result.findings = VerifyProfile(file, slots);
    } else if (type == "1" && !IsFontForScreens(file)) {
        ReadSoftFont(file, result.findings);
    }
    return result;
}

std::string SpokenFinding(const FileFinding& finding) {
    const CauseText& text = TextOf(finding.cause);
    return std::string(text.code) + ": " + finding.what + "; " + text.meaning;
}

Value::Record DataOf(const FileFinding& finding) {
    const CauseText& text = TextOf(finding.cause);
    return {{"severity", text.severity == Severity::Error ? "error" : "warning"},
            {"code", text.code},
            {"what", finding.what},
            {"meaning", text.meaning},
            {"advice", text.advice}};
}
