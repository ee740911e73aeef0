// Why something could not be done, for whoever wants to know: loads, saves and the operations on documents hand one up.
// The exported functions pass over it.

#pragma once

#include "cordelbox.h"

#include <cstddef>
#include <cstdint>

enum class ReasonKind : std::uint8_t {
    None,         // nothing went wrong
    Absent,       // there is no such file
    NotRegular,   // a folder, a pipe, a device
    NotPermitted, // the rights do not allow it
    InUse,        // another program holds the file
    Overtaken,    // another program wrote the file meanwhile
    CallFailed,   // a call of the system's failed for another reason
    OutOfMemory,
    NoPath,    // the path cannot be had or is too long
    Malformed, // no XML document
    TooLarge,  // more bytes than kMaxDocumentBytes
    TooDeep,   // elements nested deeper than kMaxElementDepth
    Encoding,  // an encoding that is not known, or bytes that are not in it
    Refused,   // the tree does not take the change: a name or a text that XML cannot hold, a row without attributes
};

struct CReason {
    ReasonKind m_kind = ReasonKind::None;

    /// Name of the call that failed, a literal, and the system's number for why (errno; GetLastError or an HRESULT on
    /// Windows). Of other kinds empty and 0.
    const char* m_pCall = "";
    std::uint32_t m_nError = 0;

    /// Where in the file, from 1. 0: not known, or not a matter of a place.
    std::size_t m_nLine = 0;
    std::size_t m_nColumn = 0; // in characters

    /// The words of whoever found it: the XML reader, the DOM. Empty when there are none, or no memory for them.
    AnsiString m_strWords;

    explicit operator bool() const noexcept { return m_kind != ReasonKind::None; }

    static CReason Of(ReasonKind kind) noexcept;

    /// With words of one's own.
    static CReason Of(ReasonKind kind, const char* words) noexcept;

    /// A call of the system's that failed; the kind follows from the error.
    static CReason OfCall(const char* call, std::uint32_t error) noexcept;

    /// What a reader says of a document.
    static CReason OfReader(std::size_t line, std::size_t column, const char* words) noexcept;
};

/// Stores a reason where one is wanted.
inline void GiveReason(CReason* wanted, CReason reason) noexcept {
    if (wanted != nullptr) {
        *wanted = static_cast<CReason&&>(reason);
    }
}

namespace platform {

/// The kind of an error of the system's, and the system's own words for it in the user's language.
ReasonKind KindOfError(std::uint32_t error) noexcept;
AnsiString WordsOfError(std::uint32_t error);

} // namespace platform
