// Arbitrary colour profiles: whatever they are, they are looked through to the end.

#include "facts/profile_facts.h"
#include "fuzz_failure.h"
#include "memory_file.h"
#include "verification/profile_verification.h"

#include <cstdint>
#include <stdexcept>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    for (const char* const slots : {"0", "2", "3"}) {
        for (const FileFinding& finding : VerifyProfile(file, slots)) {
            Require(!finding.what.empty(), "a finding says what");
        }
    }
    static CMemoryFile readable;
    try {
        const ProfileFacts facts = ReadProfileFacts(readable.With(file));
        Require(facts.deviceClass.size() <= 4, "a class has four letters at most");
    } catch (const std::runtime_error& error) {
        Require(*error.what() != '\0', "a profile that cannot be read says why");
    }
    return 0;
}
