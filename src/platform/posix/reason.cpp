// The errors of the system as reasons.

#include "platform/reason.h"

#include <cerrno>
#include <clocale>
#include <cstring>

namespace platform {

ReasonKind KindOfError(std::uint32_t error) noexcept {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return ReasonKind::Absent;
    case EISDIR:
        return ReasonKind::NotRegular;
    case EACCES:
    case EPERM:
    case EROFS:
        return ReasonKind::NotPermitted;
    case EAGAIN:
    case EBUSY:
    case ETXTBSY:
        return ReasonKind::InUse;
    case ENOMEM:
        return ReasonKind::OutOfMemory;
    default:
        return ReasonKind::CallFailed;
    }
}

AnsiString WordsOfError(std::uint32_t error) { return strerror_l(static_cast<int>(error), uselocale(nullptr)); }

} // namespace platform
