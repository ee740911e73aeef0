// Numbers that nobody can foresee.

#pragma once

#include <cstdint>

namespace platform {

/// A number from the system's generator; where it has none to give, one of the time and the process's addresses.
std::uint64_t RandomNumber() noexcept;

} // namespace platform
