#include "nodes/node_writers.h"

#include "platform/code_page.h"
#include "store/locked_pass.h"
#include "store/query_filter.h"

#include <vector>

namespace {

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

int32_t WriteItem(CXmlObject* document, const CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables& tables, CRowTable& table) {
        if (query->m_nCount < 0) {
            return What::NoSuchRow;
        }
        if (query->m_nCount == 0) {
            tables.RemoveAllRows(table, CDocumentTables::Order::LastToFirst);
            return What::Done;
        }
        // A child without attributes gives 1 wherever it stands: behind an equal one too, and otherwise as an error.
        if (FilterOf(table, *query).FindFirst(table, kNoName) != kNoRow) {
            return What::AlreadyThere;
        }
        tables.AppendItem(table, CDomPairs(*query).Pairs());
        return What::Done;
    });
}

int32_t WriteAttribute(CXmlObject* document, const CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables& tables, CRowTable& table) {
        const CellPlace found = FindQueriedCell(table, *query);
        if (found.row == kNoRow) {
            return What::NoSuchRow;
        }
        tables.SetText(table, found.row, found.cell, platform::CDomArgument(query->m_strValue).View());
        return What::Done;
    });
}

int32_t RemoveItems(CXmlObject* document, const CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables& tables, CRowTable& table) {
        if (query->m_nCount == 0) {
            const bool bAny = table.LiveCount() != 0;
            tables.RemoveAllRows(table, CDocumentTables::Order::FirstToLast);
            return bAny ? What::Done : What::NoSuchRow;
        }
        const RowNumber row = FilterOf(table, *query).FindFirst(table, kNoName);
        if (row == kNoRow) {
            return What::NoSuchRow;
        }
        tables.RemoveRow(table, row);
        return What::Done;
    });
}

int32_t UpdateItem(CXmlObject* document, const CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables& tables, CRowTable& table) {
        const RowNumber row = KeyFilterOf(table, *query).FindFirst(table, kNoName);
        if (row == kNoRow) {
            return What::NoSuchRow;
        }
        const CRowFilter pairs = FilterOf(table, *query);
        for (std::size_t cell = 0; cell < table.Cells(row).size(); ++cell) {
            const RowPair* const pair = pairs.FindPair(table.Cells(row)[cell].name);
            if (pair != nullptr) {
                tables.SetText(table, row, cell, pair->text);
            }
        }
        return What::Done;
    });
}
