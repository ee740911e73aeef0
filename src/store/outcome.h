// What came of an operation on a document, for whoever wants to know more than its status.

#pragma once

#include "platform/reason.h"

#include <cstdint>
#include <utility>

enum class What : std::uint8_t {
    Done,
    AlreadyThere, // an equal row stands in the container: nothing was added
    NoSuchRow,    // no row passes the filter and carries the attribute; or there was nothing to do it to
    NoContainer,
    NoDocument, // none is open
    NoUserCopy, // of a save: there is no per-user copy that can be written; the reason says why
    Failed,     // the reason says why; what was done until then stays
};

struct COutcome {
    What m_what = What::Done;
    CReason m_reason;

    explicit operator bool() const noexcept { return m_what == What::Done; }
};

/// What came of adding several rows, of which each is tried.
struct CRowsAdded {
    std::uint32_t m_nAdded = 0;
    std::uint32_t m_nAlreadyThere = 0;
    COutcome m_failure; // of the first row that is neither

    void Note(COutcome outcome) noexcept {
        if (outcome) {
            ++m_nAdded;
        } else if (outcome.m_what == What::AlreadyThere) {
            ++m_nAlreadyThere;
        } else if (m_failure) {
            m_failure = std::move(outcome);
        }
    }
};
