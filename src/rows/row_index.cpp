#include "rows/row_index.h"

#include "platform/text_hash.h"
#include "rows/row_table.h"

#include <algorithm>
#include <bit>
#include <utility>

namespace {

constexpr std::size_t kFewestSlots = 16;

// A row with more keys, or with keys of yet another shape, is kept aside.
constexpr std::size_t kMaxKeys = 64;
constexpr std::size_t kMaxShapes = 16;
constexpr std::size_t kMaxNames = 32; // that a shape has bits for

std::vector<NameNumber> NamesOf(std::span<const RowPair> pairs) {
    std::vector<NameNumber> names;
    names.reserve(pairs.size());
    for (const RowPair& pair : pairs) {
        names.push_back(pair.name);
    }
    return names;
}

/// Adds a text to the hash of a key; turned, so that the order of the texts counts.
std::uint64_t AddText(std::uint64_t hash, DomView text) noexcept { return std::rotl(hash, 27) ^ HashText(text); }

std::uint32_t KeyOf(std::uint64_t hash, std::uint32_t shape) noexcept {
    return static_cast<std::uint32_t>(hash ^ hash >> 32) + shape * 0x9E3779B9u;
}

constexpr std::uint32_t kWholeShape = 0;

} // namespace

bool PassesFilter(const CRowTable& table, RowNumber row, std::span<const RowPair> pairs, std::size_t count) noexcept {
    std::size_t hits = 0;
    for (const RowCell& cell : table.LookAt(row)) {
        const bool bEqual = std::any_of(pairs.begin(), pairs.end(), [&](const RowPair& pair) {
            return pair.name == cell.name && pair.text == cell.text.View();
        });
        if (bEqual && ++hits == count) {
            return true;
        }
    }
    return false;
}

CRowIndex::CRowIndex(const CRowTable& table, std::span<const RowPair> pairs, NameNumber wanted)
    : m_names(NamesOf(pairs)), m_wanted(wanted), m_shapes{kWholeShape} {
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

bool CRowIndex::IsOver(std::span<const RowPair> pairs, NameNumber wanted) const noexcept {
    return wanted == m_wanted && std::equal(pairs.begin(), pairs.end(), m_names.begin(), m_names.end(),
                                            [](const RowPair& pair, NameNumber name) { return pair.name == name; });
}

bool CRowIndex::Covers(NameNumber name) const noexcept {
    return name != kNoName && (name == m_wanted || std::find(m_names.begin(), m_names.end(), name) != m_names.end());
}

/// Fills m_keys with the keys of a row; none for a row that cannot pass. False when the row is to be kept aside.
bool CRowIndex::ListKeys(const CRowTable& table, RowNumber row) {
    m_keys.clear();
    if (m_wanted != kNoName && table.FindCell(row, m_wanted) == nullptr) {
        return true;
    }
    if (table.HasRepeatedNames(row)) {
        return ListKeysOfRepeats(table, row);
    }
    std::uint64_t hash = 0;
    for (const NameNumber name : m_names) {
        const RowCell* const cell = table.FindCell(row, name);
        if (cell == nullptr) {
            return true;
        }
        hash = AddText(hash, cell->text.View());
    }
    m_keys.push_back(KeyOf(hash, kWholeShape));
    return true;
}

bool CRowIndex::ListKeysOfRepeats(const CRowTable& table, RowNumber row) {
    if (m_names.size() > kMaxNames) {
        return false;
    }
    std::vector<std::vector<Choice>> choices(m_names.size());
    for (const RowCell& cell : table.Cells(row)) {
        const auto name = std::find(m_names.begin(), m_names.end(), cell.name);
        if (name == m_names.end()) {
            continue;
        }
        std::vector<Choice>& texts = choices[static_cast<std::size_t>(name - m_names.begin())];
        if (texts.size() == kMaxKeys) {
            return false;
        }
        const DomView text = cell.text.View();
        const auto known =
            std::find_if(texts.begin(), texts.end(), [&](const Choice& choice) { return choice.text == text; });
        if (known != texts.end()) {
            ++known->hits;
        } else {
            texts.push_back({text, 1});
        }
    }
    return ChooseTexts(choices, 0, 0, kWholeShape, 0);
}

/// Adds the keys that begin with the texts that were chosen for the names before `name`. False when they are too many.
bool CRowIndex::ChooseTexts(const std::vector<std::vector<Choice>>& choices, std::size_t name, std::size_t hits,
                            Shape shape, std::uint64_t hash) {
    if (hits >= m_names.size()) {
        for (; name < m_names.size(); ++name) {
            shape |= Shape{1} << name; // left out
        }
        if (std::find(m_shapes.begin(), m_shapes.end(), shape) == m_shapes.end()) {
            if (m_shapes.size() == kMaxShapes) {
                return false;
            }
            m_shapes.push_back(shape);
        }
        m_keys.push_back(KeyOf(hash, shape));
        return m_keys.size() <= kMaxKeys;
    }
    std::size_t most = hits; // that the row can come to from here
    for (std::size_t further = name; further < m_names.size(); ++further) {
        std::size_t best = 0;
        for (const Choice& choice : choices[further]) {
            best = std::max(best, choice.hits);
        }
        most += best;
    }
    if (most < m_names.size()) {
        return true;
    }
    for (const Choice& choice : choices[name]) {
        if (!ChooseTexts(choices, name + 1, hits + choice.hits, shape, AddText(hash, choice.text))) {
            return false;
        }
    }
    return ChooseTexts(choices, name + 1, hits, shape | Shape{1} << name, hash);
}

const CRowIndex::Slot* CRowIndex::FindSlot(std::uint32_t hash) const noexcept {
    const std::size_t mask = m_slots.size() - 1;
    for (std::size_t position = hash & mask;; position = (position + 1) & mask) {
        const Slot& slot = m_slots[position];
        if (slot.first == kFree) {
            return nullptr;
        }
        if (slot.first != kLeft && slot.hash == hash) {
            return &slot;
        }
    }
}

CRowIndex::Slot* CRowIndex::FindSlot(std::uint32_t hash) noexcept {
    return const_cast<Slot*>(std::as_const(*this).FindSlot(hash));
}

std::size_t CRowIndex::FreeSlot(const std::vector<Slot>& slots, std::uint32_t hash) noexcept {
    const std::size_t mask = slots.size() - 1;
    std::size_t position = hash & mask;
    while (slots[position].first != kFree) {
        position = (position + 1) & mask;
    }
    return position;
}

RowNumber CRowIndex::Find(const CRowTable& table, std::span<const RowPair> pairs, RowNumber previous) const {
    const auto isNext = [&](RowNumber row) {
        return (previous == kNoRow || row > previous) && PassesFilter(table, row, pairs, pairs.size());
    };
    RowNumber found = kNoRow;
    for (const Shape shape : m_shapes) {
        std::uint64_t hash = 0;
        for (std::size_t name = 0; name < pairs.size(); ++name) {
            if (name >= kMaxNames || (shape >> name & 1) == 0) {
                hash = AddText(hash, pairs[name].text);
            }
        }
        const Slot* const slot = FindSlot(KeyOf(hash, shape));
        if (slot == nullptr) {
            continue;
        }
        if (isNext(slot->first)) {
            found = std::min(found, slot->first);
        } else if (slot->further != nullptr) {
            const auto from = previous == kNoRow ? slot->further->begin() : slot->further->upper_bound(previous);
            const auto next = std::find_if(from, slot->further->end(), isNext);
            found = next != slot->further->end() ? std::min(found, *next) : found;
        }
    }
    for (auto row = previous == kNoRow ? m_aside.begin() : m_aside.upper_bound(previous);
         row != m_aside.end() && *row < found; ++row) {
        if (isNext(*row)) {
            return *row;
        }
    }
    return found;
}

void CRowIndex::Insert(const CRowTable& table, RowNumber row) {
    if (!ListKeys(table, row)) {
        m_aside.insert(row);
        return;
    }
    for (const std::uint32_t key : m_keys) {
        InsertKey(key, row);
    }
}

void CRowIndex::InsertKey(std::uint32_t key, RowNumber row) {
    Slot* const known = FindSlot(key);
    if (known != nullptr) {
        if (row == known->first) {
            return; // two keys of one row that meet
        }
        if (known->further == nullptr) {
            known->further = std::make_unique<std::set<RowNumber>>();
        }
        known->further->insert(known->further->end(), std::max(row, known->first));
        known->first = std::min(row, known->first);
        return;
    }
    if ((m_nUsed + 1) * 4 > m_slots.size() * 3) {
        Grow();
    }
    Slot& slot = m_slots[FreeSlot(m_slots, key)];
    slot.hash = key;
    slot.first = row;
    ++m_nUsed;
}

void CRowIndex::Erase(const CRowTable& table, RowNumber row) {
    if (m_aside.erase(row) != 0 || !ListKeys(table, row)) {
        return;
    }
    for (const std::uint32_t key : m_keys) {
        EraseKey(key, row);
    }
}

void CRowIndex::EraseKey(std::uint32_t key, RowNumber row) noexcept {
    Slot* const slot = FindSlot(key);
    if (slot == nullptr) {
        return; // it met another key of the row, which went with it
    }
    if (slot->first != row) {
        if (slot->further != nullptr) {
            slot->further->erase(row);
        }
    } else if (slot->further != nullptr) {
        slot->first = *slot->further->begin();
        slot->further->erase(slot->further->begin());
    } else {
        slot->first = kLeft;
    }
    if (slot->further != nullptr && slot->further->empty()) {
        slot->further.reset();
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
