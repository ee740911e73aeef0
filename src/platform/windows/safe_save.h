// Replacing a file in one step.

#pragma once

#include "platform/last_look.h"
#include "platform/reason.h"

#include <string_view>

namespace platform {

/// Replaces the contents of a file that exists, by way of a new temporary file in the same folder, of a name that
/// nobody can foresee: whoever opens the file, at any time and after any end of this process, finds the old contents or
/// the new ones. The temporary file has the access rights of the file from the start, or its owner's alone where those
/// cannot be had; attributes and rights are kept, and a link stays a link. Only where the folder does not take a new
/// file in the place of the old one is the file itself written to, after its space is reserved, and only when it has no
/// other name. Temporary files that
/// killed processes left in the folder are removed. Waits for nobody longer than a fifth of a second. `isAsLoaded` is
/// asked immediately before the rename, or before the first byte in place. False: the file is as it was, unless writing
/// in place failed; `reason`, where one is wanted, says why.
bool ReplaceContents(const char* path, std::string_view contents, CReason* reason = nullptr,
                     const LastLook& isAsLoaded = {}) noexcept;

} // namespace platform
