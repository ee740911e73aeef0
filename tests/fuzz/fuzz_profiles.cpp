// Arbitrary colour profiles: whatever they are, they are looked through to the end.

#include "fuzz_failure.h"
#include "verification/profile_verification.h"

#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view file(reinterpret_cast<const char*>(bytes), size);
    for (const char* const slots : {"0", "2", "3"}) {
        for (const FileFinding& finding : VerifyProfile(file, slots)) {
            Require(!finding.what.empty(), "a finding says what");
        }
    }
    return 0;
}
