// An index over a row table: from the texts of certain attributes to the rows that pass the filter of these texts, in
// document order.
//
// A hash table with open addressing, whose slots hold the rows of one hash: the first of them in the slot itself,
// further ones in an ordered set, so that the usual combination of texts, which one row has, costs one slot and a
// lookup one probe. The hash only leads to rows; that they pass is seen by comparing the texts.
//
// A row that has no base name twice passes when it carries all the texts, and has one key: their hash. A row with two
// attributes of one base name may carry several texts for a name, and one text twice, which then counts for another
// name that is missing. It has a key for each choice of texts that is enough to pass; for which of the names texts were
// chosen is the shape of a key, and a lookup tries each shape that occurs. Rows that would have very many keys are kept
// aside and looked at one by one.

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

/// The filter rule: whether `count` attributes of the row each equal some pair.
bool PassesFilter(const CRowTable& table, RowNumber row, std::span<const RowPair> pairs, std::size_t count) noexcept;

class CRowIndex {
public:
    /// Indexes every row of the table by the names of `pairs`, which are different ones, as far as it carries the name
    /// `wanted`; kNoName stands for none. Throws std::bad_alloc.
    CRowIndex(const CRowTable& table, std::span<const RowPair> pairs, NameNumber wanted);

    /// True when the index is over the names of `pairs`, in this order, and over `wanted`.
    bool IsOver(std::span<const RowPair> pairs, NameNumber wanted) const noexcept;
    bool Covers(NameNumber name) const noexcept;

    /// The first row after `previous` that passes the filter of all the pairs, which are those of the index's names,
    /// and carries the wanted name; kNoRow when there is none. `previous` is kNoRow for the first one.
    RowNumber Find(const CRowTable& table, std::span<const RowPair> pairs, RowNumber previous) const;

    /// Takes up a row of the table. Throws std::bad_alloc, and is then of no further use.
    void Insert(const CRowTable& table, RowNumber row);

    /// Forgets a row, whose texts are still those of its insertion. Throws as Insert does.
    void Erase(const CRowTable& table, RowNumber row);

private:
    struct Slot {
        std::uint32_t hash = 0;
        std::uint32_t first = kFree;
        std::unique_ptr<std::set<std::uint32_t>> further;
    };
    static constexpr std::uint32_t kFree = 0xFFFFFFFF; // never used: a search ends here
    static constexpr std::uint32_t kLeft = 0xFFFFFFFE; // used once: a search goes on

    using Shape = std::uint32_t; // a bit for each of the index's names

    /// One text of a row for one of the names.
    struct Choice {
        DomView text;
        std::size_t hits; // attributes that have it
    };

    bool ListKeys(const CRowTable& table, RowNumber row);
    bool ListKeysOfRepeats(const CRowTable& table, RowNumber row);
    bool ChooseTexts(const std::vector<std::vector<Choice>>& choices, std::size_t name, std::size_t hits, Shape shape,
                     std::uint64_t hash);
    Slot* FindSlot(std::uint32_t hash) noexcept;
    const Slot* FindSlot(std::uint32_t hash) const noexcept;
    void InsertKey(std::uint32_t key, RowNumber row);
    void EraseKey(std::uint32_t key, RowNumber row) noexcept;
    static std::size_t FreeSlot(const std::vector<Slot>& slots, std::uint32_t hash) noexcept;
    void Grow();

    const std::vector<NameNumber> m_names;
    const NameNumber m_wanted;
    std::vector<Slot> m_slots; // a power of two of them, at most three quarters not free
    std::size_t m_nUsed = 0;   // slots that are not free
    std::vector<Shape> m_shapes;
    std::set<RowNumber> m_aside;       // rows without keys, because they would have too many
    std::vector<std::uint32_t> m_keys; // of the row being inserted or erased
};
