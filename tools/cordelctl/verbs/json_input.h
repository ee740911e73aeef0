// JSON that a verb reads from a file or from standard input.

#pragma once

#include "value.h"

#include <string>

/// Reads the file, or standard input for "-". Throws CFailure (Refused), calling it `what`, with `shape` as advice.
Value ReadJsonInput(const std::string& file, const std::string& what, const std::string& shape);
