// Replacing a file in one step.

#pragma once

#include "platform/reason.h"

#include <string_view>

namespace platform {

/// Replaces the contents of a file that exists, by way of a temporary file in the same folder: whoever opens the file,
/// at any time and after any end of this process, finds the old contents or the new ones. Attributes and permissions
/// are kept, and a link stays a link. Only where the folder takes no new file is the file itself written to, after its
/// space is reserved. Temporary files that killed processes left in the folder are removed.
/// False: the file is as it was, unless writing in place failed; `reason`, where one is wanted, says why.
bool ReplaceContents(const char* path, std::string_view contents, CReason* reason = nullptr) noexcept;

} // namespace platform
