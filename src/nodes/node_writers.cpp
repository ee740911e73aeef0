#include "nodes/node_writers.h"

#include "platform/code_page.h"
#include "store/locked_pass.h"
#include "store/module_state.h"
#include "rows/row_filter.h"

#include <vector>

namespace {

template <class Pass>
int32_t RunOnCurrent(const CXmlQuery* query, Pass pass) noexcept {
    return RunOnContainer(State().currentDocument, query, pass);
}

/// The first m_nCount pairs of a query as the DOM's text. Surplus rounds of the count take an empty name and text.
class CDomPairs {
public:
    explicit CDomPairs(const CXmlQuery& query) {
        const auto count = static_cast<std::size_t>(query.m_nCount);
        const CXmlAttribute::Pair* pair = query.m_attrs.Head();
        for (std::size_t index = 0; index < count && pair != nullptr; ++index, pair = pair->next) {
            m_arguments.emplace_back(pair->name);
            m_arguments.emplace_back(pair->value);
        }
        for (std::size_t index = 0; index < m_arguments.size(); index += 2) {
            m_pairs.push_back({m_arguments[index].View(), m_arguments[index + 1].View()});
        }
        if (m_pairs.size() < count) {
            m_pairs.push_back({});
        }
    }
    const std::vector<DomPair>& Pairs() const noexcept { return m_pairs; }

private:
    std::vector<platform::CDomArgument> m_arguments;
    std::vector<DomPair> m_pairs;
};

} // namespace

int32_t WriteItem(const CXmlQuery* query) noexcept {
    return RunOnCurrent(query, [&](CDocumentTables& tables, CRowTable& table) {
        if (query->m_nCount < 0) {
            return 1;
        }
        if (query->m_nCount == 0) {
            tables.RemoveAllRows(table, CDocumentTables::Order::LastToFirst);
            return 0;
        }
        // A child without attributes gives 1 wherever it stands: behind an equal one too, and otherwise as an error.
        if (CRowFilter(table, *query).FindFirst(table, kNoName) != kNoRow) {
            return 1;
        }
        tables.AppendItem(table, CDomPairs(*query).Pairs());
        return 0;
    });
}

int32_t WriteAttribute(const CXmlQuery* query) noexcept {
    return RunOnCurrent(query, [&](CDocumentTables& tables, CRowTable& table) {
        const CellPlace found = FindQueriedCell(table, *query);
        if (found.row == kNoRow) {
            return 1;
        }
        tables.SetText(table, found.row, found.cell, platform::CDomArgument(query->m_strValue).View());
        return 0;
    });
}

int32_t RemoveItems(const CXmlQuery* query) noexcept {
    return RunOnCurrent(query, [&](CDocumentTables& tables, CRowTable& table) {
        if (query->m_nCount == 0) {
            const bool bAny = table.LiveCount() != 0;
            tables.RemoveAllRows(table, CDocumentTables::Order::FirstToLast);
            return bAny ? 0 : 1;
        }
        const RowNumber row = CRowFilter(table, *query).FindFirst(table, kNoName);
        if (row == kNoRow) {
            return 1;
        }
        tables.RemoveRow(table, row);
        return 0;
    });
}

int32_t UpdateItem(const CXmlQuery* query) noexcept {
    return RunOnCurrent(query, [&](CDocumentTables& tables, CRowTable& table) {
        const RowNumber row = CRowFilter(table, query->m_strAttr, query->m_strValue).FindFirst(table, kNoName);
        if (row == kNoRow) {
            return 1;
        }
        const CRowFilter pairs(table, *query);
        for (std::size_t cell = 0; cell < table.Cells(row).size(); ++cell) {
            const RowPair* const pair = pairs.FindPair(table.Cells(row)[cell].name);
            if (pair != nullptr) {
                tables.SetText(table, row, cell, pair->text);
            }
        }
        return 0;
    });
}
