// A last look at a file before it is replaced.

#pragma once

#include "platform/reason.h"

#include <functional>

/// Whether the file is still the one that is to be replaced. Throws nothing.
using LastLook = std::function<bool()>;

namespace platform {

/// True when there is nothing to ask, or the answer is yes; otherwise says why not.
inline bool IsStillWanted(const LastLook& isAsLoaded, CReason* reason) noexcept {
    if (!isAsLoaded || isAsLoaded()) {
        return true;
    }
    GiveReason(reason, CReason::Of(ReasonKind::Overtaken));
    return false;
}

} // namespace platform
