// Consoles, which take colours when they are asked to.

#include "terminal.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

namespace platform {

namespace {

bool TakesColours(DWORD stream) {
    const HANDLE console = GetStdHandle(stream);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

} // namespace

bool IsOutputTerminal() { return TakesColours(STD_OUTPUT_HANDLE); }
bool IsErrorTerminal() { return TakesColours(STD_ERROR_HANDLE); }

} // namespace platform
