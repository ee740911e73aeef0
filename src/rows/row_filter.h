// The filter rule: which rows of a container a request means.
//
// With a count of n, a row passes when n of its attributes each equal some pair among the first n pairs, in base name
// and text. Attributes are counted, not pairs. A negative count never passes; a count of 0 is no filter.
// Where there are as many pairs as the count, of different names, an index answers; otherwise the rows are scanned one
// by one.

#pragma once

#include "platform/code_page.h"
#include "rows/row_table.h"

#include <vector>

/// Where a cell stands in its table.
struct CellPlace {
    RowNumber row = kNoRow; // kNoRow: there is no such cell
    std::size_t cell = 0;   // within the row
};

class CRowFilter {
public:
    /// A filter with that count, and room for so many pairs. Throws std::bad_alloc.
    CRowFilter(int32_t count, std::size_t pairs);

    /// Adds a pair, for which there must be room. Name and value must outlive the filter. Throws std::bad_alloc.
    void AddPair(const CRowTable& table, const AnsiString& name, const AnsiString& value);

    /// The first row in document order that passes and, unless `wanted` is kNoName, carries that name; kNoRow when
    /// there is none. Throws DomError when a row without attributes stands before it.
    RowNumber FindFirst(CRowTable& table, NameNumber wanted) const;

    /// The cell with that name in the row that FindFirst gives.
    CellPlace FindFirstCell(CRowTable& table, NameNumber wanted) const;

    /// Appends every row that passes, in document order; rows without attributes are passed over.
    void FindAll(CRowTable& table, std::vector<RowNumber>& rows) const;

    /// The first pair with that name; null when there is none.
    const RowPair* FindPair(NameNumber name) const noexcept;

private:
    bool IsPlain() const noexcept;
    bool Passes(const CRowTable& table, RowNumber row) const noexcept;
    RowNumber Scan(const CRowTable& table, NameNumber wanted) const noexcept;
    RowNumber Probe(CRowTable& table, NameNumber wanted) const;

    int32_t m_nCount;
    std::vector<platform::CDomArgument> m_texts; // of the pairs, which refer to them: they must not move
    std::vector<RowPair> m_pairs;                // at most m_nCount; kNoName for a name that no row carries
};
