// An index over a row table: from the texts of certain attributes to the rows that carry them all, in document order.
//
// A hash table with open addressing. Each slot holds the rows of one combination of texts: the first of them in the
// slot itself, further ones in an ordered set, so that the usual combination, which one row has, costs one slot and
// a lookup one probe. Which rows share texts is decided by comparing the texts; the hash only finds the slot.

#pragma once

#include "platform/dom.h"

#include <cstdint>
#include <limits>
#include <memory>
#include <set>
#include <span>
#include <vector>

class CRowTable;

using RowNumber = std::uint32_t;
using NameNumber = std::uint32_t; // of a base name, within its table

inline constexpr RowNumber kNoRow = std::numeric_limits<RowNumber>::max();
inline constexpr NameNumber kNoName = std::numeric_limits<NameNumber>::max();

/// What one attribute of a row is asked to be.
struct RowPair {
    NameNumber name;
    DomView text;
};

class CRowIndex {
public:
    /// Indexes every row of the table that carries all the names of `pairs`. No row carries a name twice.
    /// Throws std::bad_alloc.
    CRowIndex(const CRowTable& table, std::span<const RowPair> pairs);

    /// True when the index is over the names of `pairs`, in this order.
    bool IsOver(std::span<const RowPair> pairs) const noexcept;
    bool Covers(NameNumber name) const noexcept;

    /// The first row after `previous` that carries all the pairs, which are those of the index's names; kNoRow when
    /// there is none. `previous` is kNoRow for the first one.
    RowNumber Find(const CRowTable& table, std::span<const RowPair> pairs, RowNumber previous) const noexcept;

    /// Takes up a row of the table, if it carries all the names. Throws std::bad_alloc, and is then of no further use.
    void Insert(const CRowTable& table, RowNumber row);

    /// Forgets a row, whose texts are still those of its insertion.
    void Erase(const CRowTable& table, RowNumber row) noexcept;

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t first = kFree;
        std::unique_ptr<std::set<std::uint32_t>> further;
    };
    static constexpr std::uint32_t kFree = 0xFFFFFFFF; // never used: a search ends here
    static constexpr std::uint32_t kLeft = 0xFFFFFFFE; // used once: a search goes on

    static constexpr std::size_t kNoSlot = static_cast<std::size_t>(-1);

    bool TakePairs(const CRowTable& table, RowNumber row) noexcept;
    std::size_t FindSlot(const CRowTable& table, std::span<const RowPair> pairs, std::uint32_t hash) const noexcept;
    static std::size_t FreeSlot(const std::vector<Slot>& slots, std::uint32_t hash) noexcept;
    void Grow();

    std::vector<RowPair> m_pairs; // the index's names, with the texts of the row being inserted or erased
    std::vector<Slot> m_slots;    // a power of two of them, at most three quarters not free
    std::size_t m_nUsed = 0;      // slots that are not free
};
