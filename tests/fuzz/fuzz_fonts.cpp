// Arbitrary fonts and soft fonts: whatever they are, they are looked through to the end, and what is found says where.

#include "facts/font_facts.h"
#include "facts/soft_font.h"
#include "fuzz_failure.h"
#include "memory_file.h"
#include "verification/font_verification.h"

#include <cstdint>
#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    FileFindings findings = VerifyFont(file, "Aa").findings;
    ReadSoftFont(file, findings);
    // No input is a whole font and a whole soft font at once.
    Require(!findings.empty(), "something is wrong with every input");
    for (const FileFinding& finding : findings) {
        Require(!finding.what.empty(), "a finding says what");
    }
    static CMemoryFile readable;
    try {
        const TrueTypeFacts facts = ReadTrueTypeFacts(readable.With(file));
        Require(!facts.symbolSet.empty(), "every font has a symbol set");
    } catch (const std::runtime_error& error) {
        Require(*error.what() != '\0', "a font that cannot be read says why");
    }
    return 0;
}
