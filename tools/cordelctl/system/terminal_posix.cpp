// Terminals as POSIX has them.

#include "system/terminal.h"

#include <iostream>
#include <sys/ioctl.h>
#include <unistd.h>

namespace host {

bool IsOutputTerminal() { return ::isatty(STDOUT_FILENO) != 0; }
bool IsErrorTerminal() { return ::isatty(STDERR_FILENO) != 0; }
bool IsInputTerminal() { return ::isatty(STDIN_FILENO) != 0; }

std::size_t OutputWidth() {
    struct winsize size = {};
    return IsOutputTerminal() && ::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

void PrepareOutput() {}

void WriteOutput(std::string_view utf8) { std::cout << utf8; }

void WriteError(std::string_view utf8) { std::cerr << utf8 << std::flush; }

bool FlushOutput() { return static_cast<bool>(std::cout.flush()); }

} // namespace host
