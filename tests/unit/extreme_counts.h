// The ends of what a count may be.

#pragma once

#include <cstdint>
#include <limits>

inline constexpr int32_t kMost = std::numeric_limits<int32_t>::max();
inline constexpr int32_t kLeast = std::numeric_limits<int32_t>::min();
