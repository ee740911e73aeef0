// Arbitrary bytes as a document that the doctor looks at: every finding says what and where, with the line that it is
// about.

#include "doctor/examination.h"
#include "fuzz_failure.h"
#include "memory_file.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view document(reinterpret_cast<const char*>(bytes), size);
    static CMemoryFile file;
    const std::string path = file.With(document);
    const Examination examination = Examine({path, path, DocumentKind::Printer, std::nullopt, path});
    const auto lineEnds =
        std::count_if(document.begin(), document.end(), [](char c) { return c == '\n' || c == '\r'; });
    for (const Finding& finding : examination.findings) {
        Require(!finding.check.empty() && !finding.what.empty(), "a finding has a name and says what");
        Require(finding.place.line <= lineEnds + 1, "its line is one of the file");
        Require(document.find(finding.source.before + finding.source.behind) != std::string_view::npos,
                "the line shown is one of the file");
    }
    return 0;
}
