// Texts as they may reach a terminal: no control character, and none that changes the direction of writing, passes as
// it is.

#pragma once

#include <string>
#include <string_view>

/// The text with every control character (C0, DEL, C1), every bidirectional control and every byte that is no UTF-8 in
/// a visible form: "\n" as a blank, others as "\u{1B}". Tells nothing about width.
std::string Printable(std::string_view utf8);

/// The same, with line ends left as they are: for texts of several lines that the tool itself put together.
std::string PrintableLines(std::string_view utf8);

/// How many columns of a terminal the text takes: combining marks none, East Asian wide characters two.
std::size_t DisplayWidth(std::string_view utf8);

/// The beginning of the text that takes at most `width` columns, with "~" at its end when something is left out.
std::string FitWidth(std::string_view utf8, std::size_t width);
