// Copies of one string in several threads share one buffer, which goes with the last of them.

#include "cordelbox.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

TEST(SharedStrings, AreCopiedReadAndDroppedInAllThreads) {
    std::vector<std::thread> threads;
    {
        const AnsiString shared("a text that several threads share");
        for (int thread = 0; thread < 4; ++thread) {
            threads.emplace_back([copy = shared] {
                std::vector<AnsiString> copies;
                for (int round = 0; round < 2000; ++round) {
                    copies.push_back(copy);
                    ASSERT_EQ(copies.back(), "a text that several threads share");
                    if (copies.size() == 10) {
                        copies.clear();
                    }
                }
            });
        }
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}
