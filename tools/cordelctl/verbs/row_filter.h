// The option --where NAME=VALUE, which picks a row.

#pragma once

#include "failure.h"

#include <optional>
#include <string>
#include <utility>

using RowFilter = std::optional<std::pair<std::string, std::string>>;

/// Throws when the text has no name or no '='. No text gives no filter.
inline RowFilter ParseRowFilter(const std::string& text) {
    if (text.empty()) {
        return std::nullopt;
    }
    const auto separator = text.find('=');
    if (separator == std::string::npos || separator == 0) {
        throw CFailure(ExitCode::Usage, "--where \"" + text + "\" is not of the form NAME=VALUE");
    }
    return std::pair(text.substr(0, separator), text.substr(separator + 1));
}
