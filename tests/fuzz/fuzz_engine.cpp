// The bytes are choices: of a document, and of a sequence of operations on it, which the engine and the reference
// engine run side by side.

#include "comparison.h"
#include "fuzz_failure.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    CChoices choices(bytes, size);
    const Case made = RandomCase(choices);
    const std::string difference = FindDifference(made);
    Require(difference.empty(), difference + "\n" + Describe(made));
    return 0;
}
