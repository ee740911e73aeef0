#include "rows/row_filter.h"

#include <algorithm>

CRowFilter::CRowFilter(int32_t count, std::size_t pairs) : m_nCount(count) {
    m_texts.reserve(pairs);
    m_pairs.reserve(pairs);
}

void CRowFilter::AddPair(const CRowTable& table, const AnsiString& name, const AnsiString& value) {
    m_texts.emplace_back(value);
    m_pairs.push_back({table.FindName(platform::CDomArgument(name).View()), m_texts.back().View()});
}

RowNumber CRowFilter::FindFirst(CRowTable& table, NameNumber wanted) const {
    const RowNumber row = m_nCount == 0    ? table.FirstCarrier(wanted)
                          : m_nCount < 0   ? kNoRow
                          : IsPlain(table) ? Probe(table, wanted)
                                           : Scan(table, wanted);
    if (table.FirstBareRow() < row) {
        throw DomError("a child of the container has no attributes");
    }
    return row;
}

void CRowFilter::FindAll(CRowTable& table, std::vector<RowNumber>& rows) const {
    const bool bPlain =
        m_nCount > 0 && IsPlain(table) &&
        std::none_of(m_pairs.begin(), m_pairs.end(), [](const RowPair& pair) { return pair.name == kNoName; });
    const CRowIndex* const index = bPlain ? table.Index(m_pairs) : nullptr;
    if (index != nullptr) {
        for (RowNumber row = index->Find(table, m_pairs, kNoRow); row != kNoRow;
             row = index->Find(table, m_pairs, row)) {
            rows.push_back(row);
        }
        return;
    }
    for (RowNumber row = 0; row < table.RowCount(); ++row) {
        if (table.IsLive(row) && !table.IsBare(row) && Passes(table, row)) {
            rows.push_back(row);
        }
    }
}

const RowPair* CRowFilter::FindPair(NameNumber name) const noexcept {
    const auto found =
        std::find_if(m_pairs.begin(), m_pairs.end(), [name](const RowPair& pair) { return pair.name == name; });
    return found != m_pairs.end() ? &*found : nullptr;
}

/// True when passing means to carry every pair.
bool CRowFilter::IsPlain(const CRowTable& table) const noexcept {
    if (table.HasRepeatedNames() || m_pairs.size() != static_cast<std::size_t>(m_nCount)) {
        return false;
    }
    for (auto pair = m_pairs.begin(); pair != m_pairs.end(); ++pair) {
        if (std::any_of(m_pairs.begin(), pair, [&](const RowPair& other) { return other.name == pair->name; })) {
            return false;
        }
    }
    return true;
}

bool CRowFilter::Passes(const CRowTable& table, RowNumber row) const noexcept {
    int32_t hits = 0;
    for (const RowCell& cell : table.Cells(row)) {
        const bool bEqual = std::any_of(m_pairs.begin(), m_pairs.end(), [&](const RowPair& pair) {
            return pair.name == cell.name && pair.text == cell.text.View();
        });
        if (bEqual && ++hits == m_nCount) {
            return true;
        }
    }
    return false;
}

RowNumber CRowFilter::Scan(const CRowTable& table, NameNumber wanted) const noexcept {
    for (RowNumber row = 0; row < table.RowCount(); ++row) {
        if (table.IsLive(row) && Passes(table, row) && (wanted == kNoName || table.FindCell(row, wanted) != nullptr)) {
            return row;
        }
    }
    return kNoRow;
}

RowNumber CRowFilter::Probe(CRowTable& table, NameNumber wanted) const {
    if (std::any_of(m_pairs.begin(), m_pairs.end(), [](const RowPair& pair) { return pair.name == kNoName; })) {
        return kNoRow;
    }
    const CRowIndex* const index = table.Index(m_pairs);
    if (index == nullptr) {
        return Scan(table, wanted);
    }
    RowNumber row = index->Find(table, m_pairs, kNoRow);
    while (row != kNoRow && wanted != kNoName && table.FindCell(row, wanted) == nullptr) {
        row = index->Find(table, m_pairs, row);
    }
    return row;
}

CellPlace CRowFilter::FindFirstCell(CRowTable& table, NameNumber wanted) const {
    const RowNumber row = FindFirst(table, wanted);
    if (row == kNoRow) {
        return {};
    }
    return {row, static_cast<std::size_t>(table.FindCell(row, wanted) - table.Cells(row).data())};
}
