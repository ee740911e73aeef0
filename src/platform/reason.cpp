#include "platform/reason.h"

#include <new>

CReason CReason::Of(ReasonKind kind) noexcept {
    CReason reason;
    reason.m_kind = kind;
    return reason;
}

CReason CReason::Of(ReasonKind kind, const char* words) noexcept {
    CReason reason = Of(kind);
    try {
        reason.m_strWords = words;
    } catch (const std::bad_alloc&) { // without words, then
    }
    return reason;
}

CReason CReason::OfCall(const char* call, std::uint32_t error) noexcept {
    CReason reason = Of(platform::KindOfError(error));
    reason.m_pCall = call;
    reason.m_nError = error;
    return reason;
}

CReason CReason::OfReader(std::size_t line, std::size_t column, const char* words) noexcept {
    CReason reason = Of(ReasonKind::Malformed, words);
    reason.m_nLine = line;
    reason.m_nColumn = column;
    return reason;
}
