// All rows of a document, one by one: what the command-line tool needs beyond the operations of the exports. Texts are
// 8-bit. Each function makes one pass under the document's lock, saves nothing, and gives its outcome; a null document
// is one that is not open.

#pragma once

#include "cordelbox.h"
#include "platform/dom.h"
#include "rows/row_table.h"
#include "store/outcome.h"

#include <span>
#include <utility>
#include <vector>

/// An element that rows lie in, or could: one that has children, or that stands directly below the document element.
struct ContainerInfo {
    AnsiString m_strName;     // tag name, prefix included
    bool m_bFirst = false;    // the first of its name: the only one that the library reads and writes
    std::size_t m_nDepth = 0; // 1: directly below the document element
    std::size_t m_nRows = 0;  // children of every kind
    DomPosition m_position;
};

/// One cell of a row.
struct CellValue {
    AnsiString m_strName; // base name
    AnsiString m_strValue;
    DomPosition m_position;
};

/// One child of a container.
struct RowValues {
    RowNumber m_nRow = kNoRow;         // for the functions below
    DomKind m_kind = DomKind::Element; // of any other kind: a bare row, which stops the library's readers
    AnsiString m_strText;              // an element's tag name; of a bare row what it says
    std::vector<CellValue> m_cells;    // in document order
    bool m_bHasChildren = false;
    DomPosition m_position;

    /// The first cell of that name; null when there is none.
    const CellValue* Find(const AnsiString& name) const noexcept;
};

/// Name and value of an attribute to be written.
using NamedValue = std::pair<AnsiString, AnsiString>;

/// Every container, in document order.
COutcome ListContainers(CXmlObject* document, std::vector<ContainerInfo>& containers);

/// The rows of the first container of that name, in document order.
COutcome ListRows(CXmlObject* document, const AnsiString& container, std::vector<RowValues>& rows);

/// The rows of the container whose attribute `name` is `value`, in document order; bare rows are passed over.
COutcome FindRows(CXmlObject* document, const AnsiString& container, const AnsiString& name, const AnsiString& value,
                  std::vector<RowNumber>& rows);

// Row numbers are those of ListRows and FindRows. They stay valid until rows are removed.

/// Sets the first cell of that name. NoSuchRow when the row is gone or lacks it.
COutcome SetCell(CXmlObject* document, const AnsiString& container, RowNumber row, const AnsiString& name,
                 const AnsiString& value);

/// Adds an attribute to a row that has none of this base name.
COutcome AddCell(CXmlObject* document, const AnsiString& container, RowNumber row, const AnsiString& name,
                 const AnsiString& value);

/// Appends an item, also where an equal one is there.
COutcome AppendRow(CXmlObject* document, const AnsiString& container, std::span<const NamedValue> values);

/// Removes rows, in time that grows with their number only.
COutcome RemoveRows(CXmlObject* document, const AnsiString& container, std::span<const RowNumber> rows);

/// Adds an empty container below the document element; AlreadyThere when the document has one of that name.
COutcome AddContainer(CXmlObject* document, const AnsiString& container);
