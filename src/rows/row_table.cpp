#include "rows/row_table.h"

#include "platform/code_page.h"

#include <algorithm>
#include <new>

namespace {

/// More indexes than the exports ever use on one container: beyond them the oldest goes, so that a host that filters on
/// ever new attributes does not fill the memory.
constexpr std::size_t kMaxIndexes = 32;

} // namespace

CRowTable::CRowTable(DomDocument& dom, DomNode container) : m_container(std::move(container)) {
    for (DomNode child = dom.FirstChild(m_container); child; child = dom.NextSibling(child)) {
        Append(dom, child);
    }
}

NameNumber CRowTable::FindName(DomView name) const noexcept {
    const auto found = m_names.find(name);
    return found != m_names.end() ? found->second : kNoName;
}

const RowCell* CRowTable::FindCell(RowNumber row, NameNumber name) const noexcept {
    for (const RowCell& cell : Cells(row)) {
        if (cell.name == name) {
            return &cell;
        }
    }
    return nullptr;
}

RowNumber CRowTable::FirstCarrier(NameNumber name) noexcept {
    // The rows that were passed once need never be looked at again, but for one that gains the attribute (AddCell).
    RowNumber& row = m_firstCarriers[name];
    while (row < RowCount() && (!IsLive(row) || FindCell(row, name) == nullptr)) {
        ++row;
    }
    return row < RowCount() ? row : kNoRow;
}

const CRowIndex* CRowTable::Index(std::span<const RowPair> pairs, NameNumber wanted) noexcept {
    if (wanted != kNoName && EveryRowCarries(wanted)) {
        wanted = kNoName; // so that one index serves all the names that every row has
    }
    for (const auto& index : m_indexes) {
        if (index->IsOver(pairs, wanted)) {
            return index.get();
        }
    }
    try {
        auto index = std::make_unique<CRowIndex>(*this, pairs, wanted);
        if (m_indexes.size() == kMaxIndexes) {
            m_indexes.erase(m_indexes.begin());
        }
        m_indexes.push_back(std::move(index));
        return m_indexes.back().get();
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

/// Takes up a child of the container behind all others.
void CRowTable::Append(DomDocument& dom, DomNode node) {
    m_attributes.clear();
    const bool bHasAttributes = dom.ListAttributes(node, m_attributes);
    const RowNumber row = RowCount();
    auto cells = std::make_unique<RowCell[]>(m_attributes.size());
    bool bRepeats = false;
    for (std::size_t position = 0; position < m_attributes.size(); ++position) {
        const NameNumber name = NumberOf(m_attributes[position].baseName.View(), position);
        if (m_lastCarriers[name] == row) {
            bRepeats = true;
        } else {
            ++m_carrierCounts[name];
        }
        m_lastCarriers[name] = row;
        cells[position].name = name;
        cells[position].text = std::move(m_attributes[position].text);
    }
    m_rows.push_back({std::move(node), std::move(cells), static_cast<std::uint32_t>(m_attributes.size()), true,
                      !bHasAttributes, bRepeats});
    ++m_nLive;
    if (!bHasAttributes && m_nFirstBare == kNoRow) {
        m_nFirstBare = row;
    }
    AddToIndexes(row, kNoName);
}

/// Number of a base name, new or not. Rows are mostly alike: the name at the same position of the row before is tried
/// first.
NameNumber CRowTable::NumberOf(DomView name, std::size_t position) {
    if (!m_rows.empty() && position < m_rows.back().cellCount) {
        const NameNumber before = m_rows.back().cells[position].name;
        if (m_nameTexts[before] == name) {
            return before;
        }
    }
    const NameNumber known = FindName(name);
    if (known != kNoName) {
        return known;
    }
    const NameNumber number = NameCount();
    m_firstCarriers.push_back(RowCount());
    m_lastCarriers.push_back(kNoRow);
    m_carrierCounts.push_back(0);
    m_ansiNames.push_back(platform::ToAnsi(name));
    m_nameTexts.push_back(m_names.emplace(name, number).first->first);
    return number;
}

/// Adds a row to the indexes over `name`; to all of them for kNoName. Without memory for that there are no indexes any
/// more: they are made again when they are next asked for.
void CRowTable::AddToIndexes(RowNumber row, NameNumber name) noexcept {
    try {
        for (const auto& index : m_indexes) {
            if (name == kNoName || index->Covers(name)) {
                index->Insert(*this, row);
            }
        }
    } catch (const std::bad_alloc&) {
        m_indexes.clear();
    }
}

void CRowTable::TakeFromIndexes(RowNumber row, NameNumber name) noexcept {
    try {
        for (const auto& index : m_indexes) {
            if (name == kNoName || index->Covers(name)) {
                index->Erase(*this, row);
            }
        }
    } catch (const std::bad_alloc&) {
        m_indexes.clear();
    }
}

void CRowTable::SetText(RowNumber row, std::size_t cell, DomText text) noexcept {
    m_rows[row].cells[cell].text = std::move(text);
}

void CRowTable::AddCell(RowNumber row, DomView baseName, DomText text) {
    Row& owner = m_rows[row];
    const NameNumber name = NumberOf(baseName, owner.cellCount);
    auto cells = std::make_unique<RowCell[]>(owner.cellCount + 1);
    std::move(owner.cells.get(), owner.cells.get() + owner.cellCount, cells.get());
    cells[owner.cellCount].name = name;
    cells[owner.cellCount].text = std::move(text);
    owner.cells = std::move(cells);
    ++owner.cellCount;
    m_firstCarriers[name] = std::min(m_firstCarriers[name], row);
    ++m_carrierCounts[name];
    AddToIndexes(row, name);
}

void CRowTable::MarkGone(RowNumber row) noexcept {
    for (const RowCell& cell : Cells(row)) {
        m_carrierCounts[cell.name] -= FindCell(row, cell.name) == &cell ? 1 : 0;
    }
    m_rows[row].live = false;
    m_rows[row].node = DomNode();
    --m_nLive;
}

/// Forgets every row and every name.
void CRowTable::Clear() noexcept {
    m_rows.clear();
    m_names.clear();
    m_ansiNames.clear();
    m_nameTexts.clear();
    m_firstCarriers.clear();
    m_lastCarriers.clear();
    m_carrierCounts.clear();
    m_indexes.clear();
    m_nFirstBare = kNoRow;
    m_nLive = 0;
}
