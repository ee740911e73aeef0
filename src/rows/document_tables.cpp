#include "rows/document_tables.h"

#include "platform/xml_characters.h"

#include <iterator>
#include <string>

namespace {

/// More names than the documents know containers: beyond them all are forgotten, so that a host that asks for ever new
/// names does not fill the memory.
constexpr std::size_t kMaxContainers = 64;

/// A removed row leaves its place in the table; tables that consist mostly of such places are made anew.
constexpr RowNumber kFewRows = 64;

const std::basic_string<DomChar> kItemName{'I', 't', 'e', 'm'};

void RequireName(DomView name) {
    if (!IsXmlNameInEveryEdition(name)) {
        throw DomError("XML cannot hold this name");
    }
}

void RequireText(DomView text) {
    if (!IsXmlText(text)) {
        throw DomError("XML cannot hold this text");
    }
}

} // namespace

CRowTable* CDocumentTables::FindTable(DomView tagName) {
    const auto known = m_containers.find(tagName);
    if (known != m_containers.end()) {
        return known->second.get();
    }
    if (!IsXmlName(tagName)) {
        return nullptr; // and not a pattern either, as some DOMs take it
    }
    DomNode container = m_dom.FirstElementNamed(tagName);
    auto table = container ? std::make_unique<CRowTable>(m_dom, std::move(container)) : nullptr;
    if (m_containers.size() >= kMaxContainers) {
        m_containers.clear();
    }
    return m_containers.emplace(tagName, std::move(table)).first->second.get();
}

void CDocumentTables::AppendItem(CRowTable& table, const std::vector<DomPair>& attributes) {
    for (const DomPair& pair : attributes) {
        RequireName(pair.name);
        RequireText(pair.text);
    }
    DomNode item = m_dom.AppendElement(table.Container(), kItemName, attributes);
    try {
        table.Append(m_dom, std::move(item));
    } catch (const std::exception&) {
        Forget(table); // the item is there all the same
    }
    m_containers.erase(kItemName); // the new element may be the first of its name
}

void CDocumentTables::SetText(CRowTable& table, RowNumber row, std::size_t cell, DomView text) {
    RequireText(text);
    const NameNumber name = table.Cells(row)[cell].name;
    table.TakeFromIndexes(row, name);
    try {
        table.SetText(row, cell, m_dom.SetAttributeText(table.Node(row), cell, text));
    } catch (const std::exception&) {
        table.AddToIndexes(row, name);
        throw;
    }
    table.AddToIndexes(row, name);
}

void CDocumentTables::AddCell(CRowTable& table, RowNumber row, const DomPair& attribute) {
    RequireName(attribute.name);
    RequireText(attribute.text);
    DomView baseName = attribute.name;
    baseName.remove_prefix(baseName.find(DomChar{':'}) + 1); // nothing where there is none
    const NameNumber known = table.FindName(baseName);
    if (table.IsBare(row) || (known != kNoName && table.FindCell(row, known) != nullptr)) {
        throw DomError("the row cannot have one more attribute of this name");
    }
    DomText text = m_dom.AddAttribute(table.Node(row), attribute);
    try {
        table.AddCell(row, baseName, std::move(text));
    } catch (const std::exception&) {
        Forget(table); // the attribute is there all the same
    }
}

void CDocumentTables::RemoveRow(CRowTable& table, RowNumber row) {
    TakeRow(table, row);
    ForgetIfSparse(table);
}

void CDocumentTables::RemoveRows(CRowTable& table, std::span<const RowNumber> rows) {
    for (const RowNumber row : rows) {
        if (table.IsLive(row)) {
            TakeRow(table, row);
        }
    }
    ForgetIfSparse(table);
}

void CDocumentTables::AddContainer(DomView tagName) {
    RequireName(tagName);
    const std::basic_string<DomChar> name(tagName);
    m_dom.AppendElement(m_dom.DocumentElement(), tagName, {});
    m_containers.erase(name); // that there was none
}

void CDocumentTables::TakeRow(CRowTable& table, RowNumber row) {
    table.TakeFromIndexes(row, kNoName);
    try {
        RemoveNode(table, row);
    } catch (const std::exception&) {
        table.AddToIndexes(row, kNoName);
        throw;
    }
    table.MarkGone(row);
}

void CDocumentTables::ForgetIfSparse(const CRowTable& table) noexcept {
    if (table.RowCount() > kFewRows && table.LiveCount() < table.RowCount() / 2) {
        Forget(table);
    }
}

void CDocumentTables::RemoveAllRows(CRowTable& table, Order order) {
    const RowNumber count = table.RowCount();
    try {
        for (RowNumber step = 0; step < count; ++step) {
            const RowNumber row = order == Order::FirstToLast ? step : count - 1 - step;
            if (table.IsLive(row)) {
                RemoveNode(table, row);
            }
        }
    } catch (const std::exception&) {
        Forget(table);
        throw;
    }
    table.Clear();
}

/// Removes a row's node from the DOM, and forgets the containers that go with it.
void CDocumentTables::RemoveNode(const CRowTable& table, RowNumber row) {
    const DomNode& node = table.Node(row);
    const bool bNested = m_dom.HasChildren(node);
    const std::basic_string<DomChar> tagName(m_dom.TagName(node).View());
    m_dom.RemoveChild(table.Container(), node);
    std::erase_if(m_containers, [&](const auto& known) {
        return known.second.get() != &table && (bNested || known.first == tagName);
    });
}

void CDocumentTables::Forget(const CRowTable& table) noexcept {
    std::erase_if(m_containers, [&](const auto& known) { return known.second.get() == &table; });
}
