// Random sequences of operations on random documents, by both engines.

#include "comparison.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace {

std::uint64_t FromEnvironment(const char* name, std::uint64_t otherwise) {
    const char* const text = std::getenv(name);
    return text != nullptr ? std::strtoull(text, nullptr, 10) : otherwise;
}

} // namespace

TEST(TheEngine, DoesWhatTheReferenceEngineDoes) {
    const std::uint64_t first = FromEnvironment("CORDELBOX_SEED", 1);
    const std::uint64_t count = FromEnvironment("CORDELBOX_SEQUENCES", 5000);
    const std::filesystem::path file = std::filesystem::read_symlink("/proc/self/exe").parent_path() / "saved.xml";
    std::size_t steps = 0;
    std::uint64_t saved = 0;
    for (std::uint64_t seed = first; seed < first + count; ++seed) {
        CChoices choices(seed);
        const Case wanted = RandomCase(choices);
        steps += wanted.steps.size();
        const bool bSave = seed % 50 == 0;
        saved += bSave ? 1 : 0;
        const char* const savedTo = bSave ? file.c_str() : nullptr;
        const std::string difference = FindDifference(wanted, savedTo);
        if (!difference.empty()) {
            const Case shortest = Shrink(wanted, savedTo);
            FAIL() << "CORDELBOX_SEED=" << seed << ": " << difference
                   << "\nshortest case: " << FindDifference(shortest, savedTo) << "\n"
                   << Describe(shortest);
        }
    }
    std::filesystem::remove(file);
    std::printf("%llu sequences, %zu operations, %llu of the documents saved and loaded again\n",
                static_cast<unsigned long long>(count), steps, static_cast<unsigned long long>(saved));
}
