// The row tables of one document: finds containers, and makes every change to the DOM and to its copies together.
//
// A container is the first element with a tag name below the document element. Which element that is is remembered, and
// so is that there is none. A change of structure can make another element the first of its name, or take a
// container away that is nested in what is removed: what was remembered is then forgotten, and found anew when it is
// next asked for.

#pragma once

#include "platform/dom.h"
#include "rows/row_table.h"
#include "rows/text_map.h"

#include <memory>
#include <span>
#include <vector>

class CDocumentTables {
public:
    explicit CDocumentTables(DomDocument& dom) noexcept : m_dom(dom) {}

    DomDocument& Dom() noexcept { return m_dom; }

    /// The rows of the container with this tag name; null when there is none. Valid until the next change.
    /// Throws DomError, std::bad_alloc.
    CRowTable* FindTable(DomView tagName);

    // Changes. Each throws DomError when the DOM refuses it, or std::bad_alloc, and has then changed nothing unless it
    // says otherwise. The table must not be used afterwards, unless it says so.

    /// Appends an item with these attributes to the container.
    void AppendItem(CRowTable& table, const std::vector<DomPair>& attributes);

    /// Sets the text of one cell of a row. The table stays valid.
    void SetText(CRowTable& table, RowNumber row, std::size_t cell, DomView text);

    /// Adds a cell to a row that has none with this base name. The table stays valid.
    void AddCell(CRowTable& table, RowNumber row, const DomPair& attribute);

    /// Removes one child of the container.
    void RemoveRow(CRowTable& table, RowNumber row);

    /// Removes several, in time that grows with their number. What was removed before an error stays removed.
    void RemoveRows(CRowTable& table, std::span<const RowNumber> rows);

    /// Adds an empty container of this name, which the document lacks, behind all others.
    void AddContainer(DomView tagName);

    enum class Order { FirstToLast, LastToFirst };
    /// Removes every child of the container, those without attributes too. What was removed before an error stays
    /// removed.
    void RemoveAllRows(CRowTable& table, Order order);

private:
    void RemoveNode(const CRowTable& table, RowNumber row);
    void TakeRow(CRowTable& table, RowNumber row);
    void ForgetIfSparse(const CRowTable& table) noexcept;
    void Forget(const CRowTable& table) noexcept;

    DomDocument& m_dom;
    CTextMap<std::unique_ptr<CRowTable>> m_containers; // null: there is no such container
};
