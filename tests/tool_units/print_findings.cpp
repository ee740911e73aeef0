// Prints what is found in files: one line for each finding, or one that says that there is none.
//
//     print_findings FILE...

#include "facts/file_bytes.h"
#include "facts/soft_font.h"
#include "verification/font_verification.h"
#include "verification/profile_verification.h"

#include <cstdio>

namespace {

FileFindings Verify(std::string_view file) {
    constexpr std::size_t kProfileMark = 36;
    if (file.size() >= kProfileMark + 4 && file.substr(kProfileMark, 4) == "acsp") {
        return VerifyProfile(file);
    }
    FileFindings findings;
    if (IsSoftFont(file)) {
        ReadSoftFont(file, findings);
        return findings;
    }
    return VerifyFont(file).findings;
}

} // namespace

int main(int argumentCount, char** arguments) {
    for (int i = 1; i < argumentCount; ++i) {
        const FileFindings findings = Verify(ReadFileBytes(arguments[i]));
        if (findings.empty()) {
            std::printf("%s: nothing\n", arguments[i]);
        }
        for (const FileFinding& finding : findings) {
            const CauseText& text = TextOf(finding.cause);
            std::printf("%s: %s: %s: %s\n", arguments[i], text.severity == Severity::Error ? "error" : "warning",
                        text.code, finding.what.c_str());
        }
    }
}
