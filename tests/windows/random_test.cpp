// Numbers that nobody foresees: the system's, and what stands in for them.

#include "platform/random.h"

#include "system_calls_windows.h"

#include <gtest/gtest.h>

TEST(RandomNumbers, AreTheOnesThatTheSystemGives) {
    const CSystemCallWatch watch([](std::size_t, const SystemCall&) {
        Fate fate;
        fate.nChance = 0xA5;
        return fate;
    });
    EXPECT_EQ(platform::RandomNumber(), 0xA5A5A5A5A5A5A5A5u);
}

TEST(RandomNumbers, ThatTheSystemCannotGiveAreDrawnFromTheTime) {
    const CSystemCallWatch watch([](std::size_t, const SystemCall&) { return Fate{ERROR_GEN_FAILURE}; });
    const std::uint64_t first = platform::RandomNumber();
    ::Sleep(0);
    bool bOther = false;
    for (int attempt = 0; attempt < 100000 && !bOther; ++attempt) { // the clock may be slower than the processor
        bOther = platform::RandomNumber() != first;
    }
    EXPECT_TRUE(bOther);
}
