// The children of one container as rows of (base name, text), read through the DOM once.
//
// The DOM stays the truth and the table is a copy, kept in step by CDocumentTables, the only writer. Row numbers follow
// document order and do not change as long as the table lives: rows are only ever appended, or marked as gone.

#pragma once

#include "cordelbox.h"
#include "platform/dom.h"
#include "rows/row_index.h"
#include "rows/text_map.h"

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

/// One attribute of one row. There are hundreds of thousands of them: the number takes what room the text leaves.
struct RowCell {
    [[no_unique_address]] DomText text;
    NameNumber name;
};

class CRowTable {
public:
    /// Reads every child of the container. Throws DomError, std::bad_alloc.
    CRowTable(DomDocument& dom, DomNode container);

    const DomNode& Container() const noexcept { return m_container; }

    /// Number of rows, those included that are gone.
    RowNumber RowCount() const noexcept { return static_cast<RowNumber>(m_rows.size()); }
    /// Number of rows that are there.
    RowNumber LiveCount() const noexcept { return m_nLive; }
    bool IsLive(RowNumber row) const noexcept { return m_rows[row].live; }
    const DomNode& Node(RowNumber row) const noexcept { return m_rows[row].node; }
    std::span<const RowCell> Cells(RowNumber row) const noexcept {
        return {m_rows[row].cells.get(), m_rows[row].cellCount};
    }

    /// Whether the row is of a kind without attributes (a comment, text).
    bool IsBare(RowNumber row) const noexcept { return m_rows[row].bare; }

    /// The first row that is bare, or kNoRow.
    RowNumber FirstBareRow() const noexcept { return m_nFirstBare; }

    /// Whether the row has two attributes with one base name.
    bool HasRepeatedNames(RowNumber row) const noexcept { return m_rows[row].repeats; }

    /// The cells of a row that a lookup compares with what it looks for. They are counted, so that a test can tell what
    /// a lookup costs.
    std::span<const RowCell> LookAt(RowNumber row) const noexcept {
        ++m_nLookedAt;
        return Cells(row);
    }
    std::uint64_t LookedAt() const noexcept { return m_nLookedAt; }

    /// Number of a base name; kNoName when no row ever carried it.
    NameNumber FindName(DomView name) const noexcept;
    NameNumber NameCount() const noexcept { return static_cast<NameNumber>(m_ansiNames.size()); }
    /// A base name as 8-bit text.
    const AnsiString& Name(NameNumber name) const noexcept { return m_ansiNames[name]; }

    /// The first cell of the row with that name; null when there is none.
    const RowCell* FindCell(RowNumber row, NameNumber name) const noexcept;

    /// The first row that is there and carries the name, or kNoRow.
    RowNumber FirstCarrier(NameNumber name) noexcept;

    /// The index over the names of `pairs`, which are different ones, of the rows that carry `wanted` (kNoName: of
    /// all), made on first use; null when there is no memory for it.
    const CRowIndex* Index(std::span<const RowPair> pairs, NameNumber wanted) noexcept;

private:
    friend class CDocumentTables; // keeps the table in step with the DOM

    struct Row {
        DomNode node;
        std::unique_ptr<RowCell[]> cells;
        std::uint32_t cellCount;
        bool live;
        bool bare;
        bool repeats;
    };

    void Append(DomDocument& dom, DomNode node);
    void AddToIndexes(RowNumber row, NameNumber name) noexcept;
    void TakeFromIndexes(RowNumber row, NameNumber name) noexcept;
    void SetText(RowNumber row, std::size_t cell, DomText text) noexcept;
    void AddCell(RowNumber row, DomView baseName, DomText text);
    void MarkGone(RowNumber row) noexcept;
    void Clear() noexcept;
    NameNumber NumberOf(DomView name, std::size_t position);
    bool EveryRowCarries(NameNumber name) const noexcept { return m_carrierCounts[name] == m_nLive; }

    const DomNode m_container;
    std::vector<Row> m_rows;
    std::vector<DomAttribute> m_attributes; // of the row being read
    CTextMap<NameNumber> m_names;
    std::vector<AnsiString> m_ansiNames;
    std::vector<DomView> m_nameTexts;       // by name: its text in m_names
    std::vector<RowNumber> m_firstCarriers; // by name: no row before this one carries it
    std::vector<RowNumber> m_lastCarriers;  // by name: the last row that was read with it
    std::vector<RowNumber> m_carrierCounts; // by name: how many rows carry it
    std::vector<std::unique_ptr<CRowIndex>> m_indexes;
    RowNumber m_nFirstBare = kNoRow;
    RowNumber m_nLive = 0;
    mutable std::uint64_t m_nLookedAt = 0;
};
