#include "store/node_readers.h"

#include "platform/code_page.h"
#include "store/locked_pass.h"
#include "store/query_filter.h"

#include <vector>

namespace {

void Deliver(CXmlAttribute& attributes, const CRowTable& table, const RowCell& cell) {
    if (attributes.Add(table.Name(cell.name), platform::ToAnsi(cell.text.View())) != 0) {
        throw std::bad_alloc();
    }
}

/// Delivers cells of all rows one by one, so that an error leaves what came before it.
template <class Choose>
What DeliverFromAllRows(CXmlQuery& query, const CRowTable& table, Choose isChosen) {
    query.m_attrs.Clear();
    query.m_nCount = 0;
    for (RowNumber row = 0; row < table.RowCount(); ++row) {
        if (row == table.FirstBareRow()) {
            throw DomError("a child of the container has no attributes");
        }
        if (!table.IsLive(row)) {
            continue;
        }
        for (const RowCell& cell : table.Cells(row)) {
            if (isChosen(cell)) {
                Deliver(query.m_attrs, table, cell);
                ++query.m_nCount;
            }
        }
    }
    return query.m_nCount != 0 ? What::Done : What::NoSuchRow;
}

/// Replaces the query's pairs by some of a row's cells, all or none.
void DeliverRow(CXmlQuery& query, const CRowTable& table, std::span<const RowCell> cells) {
    CXmlAttribute delivered;
    for (const RowCell& cell : cells) {
        Deliver(delivered, table, cell);
    }
    query.m_attrs.Swap(delivered);
    query.m_nCount = query.m_attrs.Count();
}

} // namespace

int32_t ReadAttribute(CXmlObject* document, CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables&, CRowTable& table) {
        const CellPlace found = FindQueriedCell(table, *query);
        if (found.row == kNoRow) {
            return What::NoSuchRow;
        }
        DeliverRow(*query, table, table.Cells(found.row).subspan(found.cell, 1));
        return What::Done;
    });
}

int32_t ListAllAttributes(CXmlObject* document, CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables&, const CRowTable& table) {
        return DeliverFromAllRows(*query, table, [](const RowCell&) { return true; });
    });
}

int32_t CollectAttribute(CXmlObject* document, CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables&, const CRowTable& table) {
        if (query->m_nCount != 0) {
            return What::NoSuchRow;
        }
        std::vector<bool> wanted; // by name: several base names may be one 8-bit text
        for (NameNumber name = 0; name < table.NameCount(); ++name) {
            wanted.push_back(table.Name(name) == query->m_strAttr);
        }
        return DeliverFromAllRows(*query, table, [&](const RowCell& cell) { return wanted[cell.name]; });
    });
}

int32_t ReadChild(CXmlObject* document, CXmlQuery* query, COutcome* outcome) noexcept {
    return RunOnContainer(document, query, outcome, [&](CDocumentTables&, CRowTable& table) {
        const CRowFilter filter = query->m_nCount == 0 ? KeyFilterOf(table, *query) : FilterOf(table, *query);
        const RowNumber row = filter.FindFirst(table, kNoName);
        if (row == kNoRow) {
            return What::NoSuchRow;
        }
        DeliverRow(*query, table, table.Cells(row));
        return What::Done;
    });
}
