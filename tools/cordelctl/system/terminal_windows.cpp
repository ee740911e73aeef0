// Consoles, which take colours when they are asked to, and text as UTF-16.

#include "system/terminal.h"

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <iostream>
#include <string>

namespace host {

namespace {

bool TakesColours(DWORD stream) {
    const HANDLE console = GetStdHandle(stream);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

/// True when the stream is a console and the text was written to it.
bool WriteToConsole(DWORD stream, std::string_view utf8) {
    const HANDLE console = GetStdHandle(stream);
    DWORD mode = 0;
    if (!GetConsoleMode(console, &mode)) {
        return false;
    }
    const int size = static_cast<int>(utf8.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, utf8.data(), size, wide.data(), static_cast<int>(wide.size()));
    DWORD written = 0;
    WriteConsoleW(console, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
    return true;
}

} // namespace

bool IsOutputTerminal() { return TakesColours(STD_OUTPUT_HANDLE); }
bool IsErrorTerminal() { return TakesColours(STD_ERROR_HANDLE); }

bool IsInputTerminal() {
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &mode) != 0;
}

std::size_t OutputWidth() {
    CONSOLE_SCREEN_BUFFER_INFO facts;
    return GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &facts)
               ? static_cast<std::size_t>(facts.srWindow.Right - facts.srWindow.Left + 1)
               : 0;
}

void PrepareOutput() {
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stdin), _O_BINARY);
}

void WriteOutput(std::string_view utf8) {
    if (!WriteToConsole(STD_OUTPUT_HANDLE, utf8)) {
        std::cout << utf8;
    }
}

void WriteError(std::string_view utf8) {
    if (!WriteToConsole(STD_ERROR_HANDLE, utf8)) {
        std::cerr << utf8 << std::flush;
    }
}

bool FlushOutput() { return static_cast<bool>(std::cout.flush()); }

} // namespace host
