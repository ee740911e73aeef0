// The errors of the system as reasons: those of its own functions, and those of COM.

#include "platform/reason.h"

namespace platform {

ReasonKind KindOfError(std::uint32_t error) noexcept {
    switch (error) {
    case ERROR_FILE_NOT_FOUND:
    case ERROR_PATH_NOT_FOUND:
    case ERROR_INVALID_NAME:
        return ReasonKind::Absent;
    case ERROR_ACCESS_DENIED:
    case ERROR_WRITE_PROTECT:
    case ERROR_PRIVILEGE_NOT_HELD:
        return ReasonKind::NotPermitted;
    case ERROR_SHARING_VIOLATION:
    case ERROR_LOCK_VIOLATION:
        return ReasonKind::InUse;
    case ERROR_NOT_ENOUGH_MEMORY:
    case ERROR_OUTOFMEMORY:
    case static_cast<std::uint32_t>(E_OUTOFMEMORY):
        return ReasonKind::OutOfMemory;
    default:
        return ReasonKind::CallFailed;
    }
}

AnsiString WordsOfError(std::uint32_t error) {
    char words[512];
    DWORD length = ::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                                    words, sizeof words, nullptr);
    while (length > 0 && (words[length - 1] == '\r' || words[length - 1] == '\n' || words[length - 1] == ' ')) {
        --length; // the system ends its words with a line end
    }
    return AnsiString(words, length);
}

} // namespace platform
