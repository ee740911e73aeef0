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
    const RowNumber row = m_nCount == 0  ? table.FirstCarrier(wanted)
                          : m_nCount < 0 ? kNoRow
                          : IsPlain()    ? Probe(table, wanted)
                                         : Scan(table, wanted);
    if (table.FirstBareRow() < row) {
        throw DomError("a child of the container has no attributes");
    }
    return row;
}

void CRowFilter::FindAll(CRowTable& table, std::vector<RowNumber>& rows) const {
    const CRowIndex* const index = IsPlain() ? table.Index(m_pairs, kNoName) : nullptr;
    if (index != nullptr) {
        for (RowNumber row = index->Find(table, m_pairs, kNoRow); row != kNoRow;
             row = index->Find(table, m_pairs, row)) {
            rows.push_back(row);
        }
        return;
    }
    for (RowNumber row = 0; row < table.RowCount(); ++row) {
        if (table.IsLive(row) && Passes(table, row)) {
            rows.push_back(row);
        }
    }
}

const RowPair* CRowFilter::FindPair(NameNumber name) const noexcept {
    const auto found =
        std::find_if(m_pairs.begin(), m_pairs.end(), [name](const RowPair& pair) { return pair.name == name; });
    return found != m_pairs.end() ? &*found : nullptr;
}

/// True when an index answers: as many pairs as the count, of different names. Names that no row carries may be the
/// same, since nothing equals their pairs.
bool CRowFilter::IsPlain() const noexcept {
    if (m_nCount <= 0 || m_pairs.size() != static_cast<std::size_t>(m_nCount)) {
        return false;
    }
    for (auto pair = m_pairs.begin(); pair != m_pairs.end(); ++pair) {
        if (pair->name != kNoName &&
            std::any_of(m_pairs.begin(), pair, [&](const RowPair& other) { return other.name == pair->name; })) {
            return false;
        }
    }
    return true;
}

bool CRowFilter::Passes(const CRowTable& table, RowNumber row) const noexcept {
    return m_nCount > 0 && PassesFilter(table, row, m_pairs, static_cast<std::size_t>(m_nCount));
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
    const CRowIndex* const index = table.Index(m_pairs, wanted);
    return index != nullptr ? index->Find(table, m_pairs, kNoRow) : Scan(table, wanted);
}

CellPlace CRowFilter::FindFirstCell(CRowTable& table, NameNumber wanted) const {
    const RowNumber row = FindFirst(table, wanted);
    if (row == kNoRow) {
        return {};
    }
    return {row, static_cast<std::size_t>(table.FindCell(row, wanted) - table.Cells(row).data())};
}
