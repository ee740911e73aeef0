// How a fuzz target says that something is wrong.

#pragma once

#include <cstdio>
#include <cstdlib>
#include <string>

/// Prints the reason and stops, which the fuzzer takes for a crash.
[[noreturn]] inline void Fail(const std::string& reason) {
    std::fprintf(stderr, "%s\n", reason.c_str());
    std::abort();
}

inline void Require(bool condition, const std::string& reason) {
    if (!condition) {
        Fail(reason);
    }
}
