// The filter rule: which rows of a container a request means.
//
// With a count of n, a row passes when n of its attributes each equal some pair among the first n pairs, in base name
// and text. Attributes are counted, not pairs. A negative count never passes; a count of 0 is no filter.
// Where the pairs have different names and no row has two attributes of one name, that is the same as carrying
// all the pairs, and an index answers it; otherwise the rows are scanned one by one.

#pragma once

#include "platform/code_page.h"
#include "rows/row_table.h"
#include "store/xml_query.h"

#include <vector>

class CRowFilter {
public:
    /// The filter of a query: its first m_nCount pairs. The query must outlive it. Throws std::bad_alloc.
    CRowFilter(const CRowTable& table, const CXmlQuery& query);

    /// The filter of one pair.
    CRowFilter(const CRowTable& table, const AnsiString& name, const AnsiString& value);

    /// The first row in document order that passes and, unless `wanted` is kNoName, carries that name; kNoRow when
    /// there is none. Throws DomError when a row without attributes stands before it.
    RowNumber FindFirst(CRowTable& table, NameNumber wanted) const;

    /// The first pair with that name; null when there is none.
    const RowPair* FindPair(NameNumber name) const noexcept;

private:
    void AddPair(const CRowTable& table, const AnsiString& name, const AnsiString& value);
    bool IsPlain(const CRowTable& table) const noexcept;
    bool Passes(const CRowTable& table, RowNumber row) const noexcept;
    RowNumber Scan(const CRowTable& table, NameNumber wanted) const noexcept;
    RowNumber Probe(CRowTable& table, NameNumber wanted) const;

    const int32_t m_nCount;
    std::vector<platform::CDomArgument> m_texts; // of the pairs
    std::vector<RowPair> m_pairs;                // at most m_nCount; kNoName for a name that no row carries
};

/// The place of a cell in its table.
struct CellPlace {
    RowNumber row = kNoRow; // kNoRow: there is no such cell
    std::size_t cell = 0;   // within the row
};

/// The attribute that a query means: m_strAttr of the first child that passes the filter and carries it. Throws
/// DomError when a row without attributes stands before it, std::bad_alloc.
CellPlace FindQueriedCell(CRowTable& table, const CXmlQuery& query);
