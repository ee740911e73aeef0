// The one mutant of a build that a process runs with. Every source that has mutants includes this first.

#pragma once

#include <optional> // for guards that a mutant leaves out

namespace mutants {

extern int g_nChosen;             // 0: none
extern unsigned char* g_pReached; // one byte a mutant, or null when nobody wants to know

inline bool IsChosen(int number) noexcept {
    if (g_pReached != nullptr) {
        g_pReached[number] = 1;
    }
    return number == g_nChosen;
}

/// What the compiler computes stays as it was written.
constexpr bool On(int number) noexcept { return !__builtin_is_constant_evaluated() && IsChosen(number); }

} // namespace mutants
