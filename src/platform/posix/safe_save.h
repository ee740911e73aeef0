// Replacing a file in one step.

#pragma once

#include <string_view>

namespace platform {

/// Replaces the contents of a file that exists. Whatever happens, the file holds its old contents or the new ones: the
/// new ones are written to a temporary file beside it, flushed to disk and renamed over it. Permissions and, where
/// the process may, ownership are kept; a symbolic link stays one, and its target is replaced. A temporary file
/// that a killed process left behind is used up by the next save. Only where the folder takes no new file is the file
/// written in place, after its space is reserved.
/// Processes that save the same file at the same time take turns. False: the file is as it was, unless writing in place
/// failed.
bool ReplaceContents(const char* path, std::string_view contents) noexcept;

} // namespace platform
