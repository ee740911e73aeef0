// The end of the process where going on would lose or corrupt data.

#pragma once

namespace platform {

/// Writes "cordelbox: " and the line to standard error and stops the process without running anything else.
[[noreturn]] void StopProcess(const char* line) noexcept;

} // namespace platform
