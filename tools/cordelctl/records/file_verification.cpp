#include "records/file_verification.h"

#include "facts/soft_font.h"
#include "verification/font_verification.h"
#include "verification/profile_verification.h"

ContentVerification VerifyContent(std::string_view file, const std::string& type, const std::string& slots,
                                  std::string_view text) {
    ContentVerification result;
    if (type == "5") {
        FontVerification font = VerifyFont(file, text);
        result.findings = std::move(font.findings);
        if (!font.members.empty()) {
            result.postScriptName = font.members.front().postScriptName;
        }
    } else if (type == "6") {
        result.findings = VerifyProfile(file, slots);
    } else if (type == "1" && IsSoftFont(file)) {
        ReadSoftFont(file, result.findings); // other forms of bitmap fonts are the font engine's
    }
    return result;
}

std::string SpokenFinding(const FileFinding& finding) {
    const CauseText& text = TextOf(finding.cause);
    return std::string(text.code) + ": " + finding.what + "; " + text.meaning;
}
