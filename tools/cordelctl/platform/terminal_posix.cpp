// Terminals as POSIX has them.

#include "terminal.h"

#include <unistd.h>

namespace platform {

bool IsOutputTerminal() { return ::isatty(STDOUT_FILENO) != 0; }
bool IsErrorTerminal() { return ::isatty(STDERR_FILENO) != 0; }

} // namespace platform
