// Whether a person is looking, and at how wide a screen.

#pragma once

#include <cstddef>
#include <string_view>

namespace host {

/// True when standard output goes to a terminal that can show colours.
bool IsOutputTerminal();

/// The same for standard error.
bool IsErrorTerminal();

/// True when standard input is a terminal.
bool IsInputTerminal();

/// Columns of the terminal that standard output goes to; 0 when it is none, or does not say.
std::size_t OutputWidth();

/// Standard output takes bytes as they are, line ends too.
void PrepareOutput();

/// Writes UTF-8 to standard output or standard error; a terminal gets it as it shows text.
void WriteOutput(std::string_view utf8);
void WriteError(std::string_view utf8);

/// Sends everything on its way. False when some of it could not be written.
bool FlushOutput();

} // namespace host
