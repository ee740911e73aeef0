// Why a call of the system's failed, taken from errno right after it.

#pragma once

#include "platform/reason.h"

#include <cerrno>

namespace platform {

/// Stores the call, a literal, and errno as the reason where one is wanted. Always false.
inline bool Failed(const char* call, CReason* reason) noexcept {
    GiveReason(reason, CReason::OfCall(call, static_cast<std::uint32_t>(errno)));
    return false;
}

} // namespace platform
