// Words and numbers in the lines of a reply.

#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

/// Without the blanks and tabs at both ends.
std::string_view Trimmed(std::string_view text) noexcept;

/// Whether the text begins with this word (given in capitals), in whatever case; cuts it off, with the blanks behind
/// it, when it does.
bool SkipWord(std::string_view& text, std::string_view word) noexcept;

/// Decimal digits and nothing else, within 63 bits.
std::optional<std::int64_t> NumberOf(std::string_view text) noexcept;

/// The value of NAME=VALUE, NAME = "VALUE" and the like, anywhere among the parameters of a line.
std::optional<std::string> ParameterOf(std::string_view parameters, std::string_view name);
