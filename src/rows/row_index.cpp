#include "rows/row_index.h"

#include "rows/row_table.h"
#include "rows/text_hash.h"

#include <algorithm>
#include <bit>

namespace {

constexpr std::size_t kFewestSlots = 16;

std::uint32_t HashOf(std::span<const RowPair> pairs) noexcept {
    std::uint64_t hash = 0;
    for (const RowPair& pair : pairs) {
        hash = std::rotl(hash, 27) ^ HashText(pair.text); // turned, so that the order of the texts counts
    }
    return static_cast<std::uint32_t>(hash);
}

bool Carries(const CRowTable& table, RowNumber row, std::span<const RowPair> pairs) noexcept {
    return std::all_of(pairs.begin(), pairs.end(),
                       [&](const RowPair& pair) { return table.FindCell(row, pair.name)->text.View() == pair.text; });
}

} // namespace

CRowIndex::CRowIndex(const CRowTable& table, std::span<const RowPair> pairs) : m_pairs(pairs.begin(), pairs.end()) {
    std::size_t slots = kFewestSlots;
    while (slots / 2 < table.LiveCount()) {
        slots *= 2;
    }
    m_slots.resize(slots);
    for (RowNumber row = 0; row < table.RowCount(); ++row) {
        if (table.IsLive(row)) {
            Insert(table, row);
        }
    }
}

bool CRowIndex::IsOver(std::span<const RowPair> pairs) const noexcept {
    return std::equal(pairs.begin(), pairs.end(), m_pairs.begin(), m_pairs.end(),
                      [](const RowPair& left, const RowPair& right) { return left.name == right.name; });
}

bool CRowIndex::Covers(NameNumber name) const noexcept {
    return std::any_of(m_pairs.begin(), m_pairs.end(), [name](const RowPair& pair) { return pair.name == name; });
}

/// Sets the texts of m_pairs to the row's; false when it lacks one of the names.
bool CRowIndex::TakePairs(const CRowTable& table, RowNumber row) noexcept {
    for (RowPair& pair : m_pairs) {
        const RowCell* const cell = table.FindCell(row, pair.name);
        if (cell == nullptr) {
            return false;
        }
        pair.text = cell->text.View();
    }
    return true;
}

std::size_t CRowIndex::FindSlot(const CRowTable& table, std::span<const RowPair> pairs,
                                std::uint32_t hash) const noexcept {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t position = hash & mask;; position = (position + 1) & mask) {
        const Slot& slot = m_slots[position];
        if (slot.first == kFree) {
            return kNoSlot;
        }
        if (slot.first != kLeft && slot.hash == hash && Carries(table, slot.first, pairs)) {
            return position;
        }
    }
}

std::size_t CRowIndex::FreeSlot(const std::vector<Slot>& slots, std::uint32_t hash) noexcept {
    const std::size_t mask = slots.size() - 1;
    std::size_t position = hash & mask;
    while (slots[position].first != kFree) {
        position = (position + 1) & mask;
    }
    return position;
}

RowNumber CRowIndex::Find(const CRowTable& table, std::span<const RowPair> pairs, RowNumber previous) const noexcept {
    const std::size_t position = FindSlot(table, pairs, HashOf(pairs));
    if (position == kNoSlot) {
        return kNoRow;
    }
    const Slot& slot = m_slots[position];
    if (previous == kNoRow) {
        return slot.first;
    }
    if (slot.further == nullptr) {
        return kNoRow;
    }
    const auto next = slot.further->upper_bound(previous);
    return next != slot.further->end() ? *next : kNoRow;
}

void CRowIndex::Insert(const CRowTable& table, RowNumber row) {
    if (!TakePairs(table, row)) {
        return;
    }
    const std::uint32_t hash = HashOf(m_pairs);
    const std::size_t found = FindSlot(table, m_pairs, hash);
    if (found != kNoSlot) {
        Slot& slot = m_slots[found];
        if (slot.further == nullptr) {
            slot.further = std::make_unique<std::set<RowNumber>>();
        }
        slot.further->insert(slot.further->end(), std::max(row, slot.first));
        slot.first = std::min(row, slot.first);
        return;
    }
    if ((m_nUsed + 1) * 4 > m_slots.size() * 3) {
        Grow();
    }
    Slot& slot = m_slots[FreeSlot(m_slots, hash)];
    slot.hash = hash;
    slot.first = row;
    ++m_nUsed;
}

void CRowIndex::Erase(const CRowTable& table, RowNumber row) noexcept {
    if (!TakePairs(table, row)) {
        return;
    }
    Slot& slot = m_slots[FindSlot(table, m_pairs, HashOf(m_pairs))];
    if (slot.first != row) {
        slot.further->erase(row);
    } else if (slot.further != nullptr) {
        slot.first = *slot.further->begin();
        slot.further->erase(slot.further->begin());
    } else {
        slot.first = kLeft;
    }
    if (slot.further != nullptr && slot.further->empty()) {
        slot.further.reset();
    }
}

void CRowIndex::Grow() {
    const auto used = static_cast<std::size_t>(std::count_if(
        m_slots.begin(), m_slots.end(), [](const Slot& slot) { return slot.first != kFree && slot.first != kLeft; }));
    std::size_t size = kFewestSlots;
    while (size < (used + 1) * 2) {
        size *= 2;
    }
    std::vector<Slot> slots(size);
    for (Slot& slot : m_slots) {
        if (slot.first != kFree && slot.first != kLeft) {
            slots[FreeSlot(slots, slot.hash)] = std::move(slot);
        }
    }
    m_slots = std::move(slots);
    m_nUsed = used;
}
