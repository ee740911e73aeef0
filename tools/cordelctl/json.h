// JSON, in and out.

#pragma once

#include "value.h"

#include <istream>
#include <string>

/// Deeper JSON is refused: nothing that the tool reads comes near.
inline constexpr std::size_t kDeepestJson = 64;

/// Reads one JSON value, and nothing behind it. Throws std::runtime_error with the reason and the place.
Value ParseJson(std::istream& stream);

/// The value as JSON, indented by two blanks, without a line end behind it. Bytes that are no UTF-8 become U+FFFD.
std::string FormatJson(const Value& value);
