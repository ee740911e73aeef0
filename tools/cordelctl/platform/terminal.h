// Whether a person is looking.

#pragma once

namespace platform {

/// True when standard output goes to a terminal that can show colours.
bool IsOutputTerminal();

/// The same for standard error.
bool IsErrorTerminal();

} // namespace platform
