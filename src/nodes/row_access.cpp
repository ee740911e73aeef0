#include "nodes/row_access.h"

#include "platform/code_page.h"
#include "platform/text_hash.h"
#include "rows/row_filter.h"
#include "store/locked_pass.h"

#include <string>
#include <unordered_set>

using platform::CDomArgument;
using platform::ToAnsi;

namespace {

constexpr RowNumber kFirstRow = 0;

/// Walks the elements below another one.
class CContainerWalk {
public:
    CContainerWalk(DomDocument& dom, std::vector<ContainerInfo>& containers) : m_dom(dom), m_containers(containers) {}

    void Run() {
        std::vector<DomNode> path{m_dom.DocumentElement()}; // no recursion: a document may be deeper than the stack
        DomNode node = m_dom.FirstChild(path.back());
        while (node || path.size() > 1) {
            if (!node) {
                node = m_dom.NextSibling(path.back());
                path.pop_back();
                continue;
            }
            if (m_dom.Kind(node) == DomKind::Element) {
                Note(node, path.size());
                DomNode child = m_dom.FirstChild(node);
                if (child) {
                    path.push_back(std::move(node));
                    node = std::move(child);
                    continue;
                }
            }
            node = m_dom.NextSibling(node);
        }
    }

private:
    void Note(const DomNode& element, std::size_t depth) {
        const DomText name = m_dom.TagName(element);
        const bool bFirst = m_names.emplace(name.View()).second;
        if (depth > 1 && !m_dom.HasChildren(element)) {
            return;
        }
        std::size_t rows = 0;
        for (DomNode child = m_dom.FirstChild(element); child; child = m_dom.NextSibling(child)) {
            ++rows;
        }
        m_containers.push_back({ToAnsi(name.View()), bFirst, depth, rows, m_dom.Position(element)});
    }

    DomDocument& m_dom;
    std::vector<ContainerInfo>& m_containers;
    std::unordered_set<std::basic_string<DomChar>, TextHash<DomChar>> m_names;
};

RowValues ReadRow(DomDocument& dom, const CRowTable& table, RowNumber row) {
    const DomNode& node = table.Node(row);
    RowValues values;
    values.m_nRow = row;
    values.m_kind = dom.Kind(node);
    const bool bElement = values.m_kind == DomKind::Element;
    const DomText text = bElement ? dom.TagName(node) : dom.Text(node);
    values.m_strText = ToAnsi(text.View());
    values.m_bHasChildren = dom.HasChildren(node);
    values.m_position = dom.Position(node);
    const std::span<const RowCell> cells = table.Cells(row);
    values.m_cells.reserve(cells.size());
    for (std::size_t cell = 0; cell < cells.size(); ++cell) {
        values.m_cells.push_back(
            {table.Name(cells[cell].name), ToAnsi(cells[cell].text.View()), dom.AttributePosition(node, cell)});
    }
    return values;
}

bool IsThere(const CRowTable& table, RowNumber row) noexcept { return row < table.RowCount() && table.IsLive(row); }

} // namespace

const CellValue* RowValues::Find(const AnsiString& name) const noexcept {
    for (const CellValue& cell : m_cells) {
        if (cell.m_strName == name) {
            return &cell;
        }
    }
    return nullptr;
}

COutcome ListContainers(CXmlObject* document, std::vector<ContainerInfo>& containers) {
    COutcome outcome;
    RunLocked(document, &outcome, [&](CDocumentTables& tables) {
        CContainerWalk(tables.Dom(), containers).Run();
        return What::Done;
    });
    return outcome;
}

COutcome ListRows(CXmlObject* document, const AnsiString& container, std::vector<RowValues>& rows) {
    COutcome outcome;
    RunOnContainer(document, container, &outcome, [&](CDocumentTables& tables, const CRowTable& table) {
        rows.reserve(rows.size() + table.LiveCount());
        for (RowNumber row = kFirstRow; row < table.RowCount(); ++row) {
            if (table.IsLive(row)) {
                rows.push_back(ReadRow(tables.Dom(), table, row));
            }
        }
        return What::Done;
    });
    return outcome;
}

COutcome FindRows(CXmlObject* document, const AnsiString& container, const AnsiString& name, const AnsiString& value,
                  std::vector<RowNumber>& rows) {
    COutcome outcome;
    RunOnContainer(document, container, &outcome, [&](CDocumentTables&, CRowTable& table) {
        CRowFilter filter(1, 1);
        filter.AddPair(table, name, value);
        filter.FindAll(table, rows);
        return rows.empty() ? What::NoSuchRow : What::Done;
    });
    return outcome;
}

COutcome SetCell(CXmlObject* document, const AnsiString& container, RowNumber row, const AnsiString& name,
                 const AnsiString& value) {
    COutcome outcome;
    RunOnContainer(document, container, &outcome, [&](CDocumentTables& tables, CRowTable& table) {
        const NameNumber number = table.FindName(CDomArgument(name).View());
        const RowCell* const cell = number != kNoName && IsThere(table, row) ? table.FindCell(row, number) : nullptr;
        if (cell == nullptr) {
            return What::NoSuchRow;
        }
        tables.SetText(table, row, static_cast<std::size_t>(cell - table.Cells(row).data()),
                       CDomArgument(value).View());
        return What::Done;
    });
    return outcome;
}

COutcome AddCell(CXmlObject* document, const AnsiString& container, RowNumber row, const AnsiString& name,
                 const AnsiString& value) {
    COutcome outcome;
    RunOnContainer(document, container, &outcome, [&](CDocumentTables& tables, CRowTable& table) {
        if (!IsThere(table, row)) {
            return What::NoSuchRow;
        }
        const CDomArgument nameArgument(name);
        const CDomArgument valueArgument(value);
        tables.AddCell(table, row, {nameArgument.View(), valueArgument.View()});
        return What::Done;
    });
    return outcome;
}

COutcome AppendRow(CXmlObject* document, const AnsiString& container, std::span<const NamedValue> values) {
    COutcome outcome;
    RunOnContainer(document, container, &outcome, [&](CDocumentTables& tables, CRowTable& table) {
        std::vector<CDomArgument> arguments;
        arguments.reserve(2 * values.size());
        std::vector<DomPair> attributes;
        for (const auto& [name, value] : values) {
            const DomView nameView = arguments.emplace_back(name).View();
            attributes.push_back({nameView, arguments.emplace_back(value).View()});
        }
        tables.AppendItem(table, attributes);
        return What::Done;
    });
    return outcome;
}

COutcome RemoveRows(CXmlObject* document, const AnsiString& container, std::span<const RowNumber> rows) {
    COutcome outcome;
    RunOnContainer(document, container, &outcome, [&](CDocumentTables& tables, CRowTable& table) {
        for (const RowNumber row : rows) {
            if (!IsThere(table, row)) {
                return What::NoSuchRow;
            }
        }
        tables.RemoveRows(table, rows);
        return What::Done;
    });
    return outcome;
}

COutcome AddContainer(CXmlObject* document, const AnsiString& container) {
    COutcome outcome;
    RunLocked(document, &outcome, [&](CDocumentTables& tables) {
        const CDomArgument name(container);
        if (tables.FindTable(name.View()) != nullptr) {
            return What::AlreadyThere;
        }
        tables.AddContainer(name.View());
        return What::Done;
    });
    return outcome;
}
