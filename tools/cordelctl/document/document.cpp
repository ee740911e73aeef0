// One document, loaded by the library's own loader.

#include "document/document.h"

#include "document/dom_text.h"
#include "document/file_state.h"
#include "failure.h"
#include "platform/reason.h"
#include "schema/schema.h"
#include "system/system.h"

#include <algorithm>

namespace {

/// A path as the library takes it.
std::string WordsOf(const CReason& reason) {
    const std::string words(reason.m_strWords.c_str(), reason.m_strWords.size());
    switch (reason.m_kind) {
    case ReasonKind::Absent:
        return "there is no such file";
    case ReasonKind::NotRegular:
        return "it is no regular file";
    case ReasonKind::NotPermitted:
        return "it may not be read";
    case ReasonKind::InUse:
        return "another program holds it";
    case ReasonKind::OutOfMemory:
        return "there is no memory for it";
    case ReasonKind::NoPath:
        return "its path is too long";
    case ReasonKind::TooLarge:
        return "it is larger than 256 MiB";
    case ReasonKind::TooDeep:
        return "elements lie more than 1,000 deep within each other";
    case ReasonKind::Encoding:
        return "it is not in its encoding" + (words.empty() ? "" : ": " + words);
    case ReasonKind::CallFailed:
        return std::string(reason.m_pCall) + " failed" + (words.empty() ? "" : ": " + words);
    default:
        return words.empty() ? "it is not well-formed" : words;
    }
}

NodeKind KindOf(DomKind kind) {
    switch (kind) {
    case DomKind::Element:
        return NodeKind::Element;
    case DomKind::Comment:
        return NodeKind::Comment;
    case DomKind::Text:
        return NodeKind::Text;
    case DomKind::Cdata:
        return NodeKind::CData;
    default:
        return NodeKind::Instruction;
    }
}

DocumentNode CopyOf(DomDocument& dom, const DomNode& source) {
    DocumentNode node;
    node.kind = KindOf(dom.Kind(source));
    const DomPosition position = dom.Position(source);
    node.place = {static_cast<long>(position.line), static_cast<long>(position.column)};
    if (node.kind != NodeKind::Element) {
        return node;
    }
    node.name = FromDomText(dom.TagName(source).View());
    std::vector<DomAttribute> attributes;
    dom.ListAttributes(source, attributes);
    for (const DomAttribute& attribute : attributes) {
        node.attributes.push_back({FromDomText(attribute.baseName.View()), FromDomText(attribute.text.View())});
    }
    for (DomNode child = dom.FirstChild(source); child; child = dom.NextSibling(child)) {
        node.children.push_back(CopyOf(dom, child));
    }
    return node;
}

Row RowOf(const CRowTable& table, RowNumber number, int position) {
    Row row{number, position, {}};
    for (const RowCell& cell : table.Cells(number)) {
        const AnsiString& name = table.Name(cell.name);
        row.values.emplace_back(std::string(name.c_str(), name.size()), FromDomText(cell.text.View()));
    }
    return row;
}

/// A row's place counts elements alone: in a table that also holds comments and texts, those are the ones without cells
/// that are no elements.
bool IsElement(DomDocument& dom, const CRowTable& table, RowNumber number) {
    return table.IsLive(number) && (!table.Cells(number).empty() || dom.Kind(table.Node(number)) == DomKind::Element);
}

[[noreturn]] void FailFor(const DomError& error, const std::string& what) {
    throw CFailure(ExitCode::Refused, "a document cannot hold " + what + ": " + error.what(),
                   "leave out control characters, and bytes that are no characters");
}

} // namespace

const std::string* Row::Find(std::string_view name) const noexcept {
    const auto found =
        std::find_if(values.begin(), values.end(), [name](const Pair& pair) { return pair.first == name; });
    return found != values.end() ? &found->second : nullptr;
}

std::string Row::Value(std::string_view name) const {
    const std::string* const value = Find(name);
    return value != nullptr ? *value : std::string();
}

CDocument::CDocument(std::filesystem::path file, std::unique_ptr<DomDocument> dom) : m_file(std::move(file)) {
    m_object.m_pDom = std::move(dom);
    ForgetTables();
}

void CDocument::ForgetTables() { m_object.m_pTables = std::make_unique<CDocumentTables>(*m_object.m_pDom); }

std::unique_ptr<CDocument> CDocument::TryLoad(const std::filesystem::path& file, DocumentError& error,
                                              DomPositions positions) {
    CReason reason;
    try {
        auto dom = DomDocument::Create();
        if (dom == nullptr) {
            error = {"the system has no XML DOM", {}};
            return nullptr;
        }
        if (dom->Load(LibraryPath(file).c_str(), &reason, positions)) {
            return std::unique_ptr<CDocument>(new CDocument(file, std::move(dom)));
        }
    } catch (const DomError& failed) {
        reason = failed.Reason();
    }
    error = {WordsOf(reason),
             {static_cast<long>(reason.m_nLine), static_cast<long>(reason.m_nColumn)},
             reason.m_kind == ReasonKind::TooLarge};
    return nullptr;
}

std::unique_ptr<CDocument> CDocument::Load(const std::filesystem::path& file, const std::string& title) {
    DocumentError error;
    auto document = TryLoad(file, error);
    if (document == nullptr) {
        throw CFailure(ExitCode::NoDocument,
                       title + " cannot be read: " + host::TextOf(file) +
                           (error.place.line > 0 ? ", line " + std::to_string(error.place.line) + ", column " +
                                                       std::to_string(error.place.column)
                                                 : "") +
                           ": " + error.reason,
                       "see the place and what to do: cordelctl doctor; former states: cordelctl history; to put the "
                       "installed one in its place: cordelctl reset");
    }
    document->m_strTitle = title;
    return document;
}

DocumentNode CDocument::Tree() const { return CopyOf(*m_object.m_pDom, m_object.m_pDom->DocumentElement()); }

CRowTable* CDocument::FindTable(const std::string& container) {
    m_used.insert(container);
    return m_object.m_pTables->FindTable(ToDomText(container));
}

CRowTable& CDocument::RequireTable(const std::string& container) {
    CRowTable* const table = FindTable(container);
    if (table == nullptr) {
        const bool known = FindContainerSchema(container) != nullptr;
        throw CFailure(ExitCode::Missing, m_strTitle + " has no container " + container,
                       known ? "add it where it is missing: cordelctl doctor --fix"
                             : "see which it has: cordelctl tree");
    }
    return *table;
}

bool CDocument::HasContainer(const std::string& container) { return FindTable(container) != nullptr; }

std::vector<Row> CDocument::Rows(const std::string& container) {
    const CRowTable& table = RequireTable(container);
    std::vector<Row> rows;
    rows.reserve(table.LiveCount());
    for (RowNumber number = 0; number < table.RowCount(); ++number) {
        if (IsElement(*m_object.m_pDom, table, number)) {
            rows.push_back(RowOf(table, number, static_cast<int>(rows.size()) + 1));
        }
    }
    return rows;
}

std::vector<Row> CDocument::RowsOrNone(const std::string& container) {
    return HasContainer(container) ? Rows(container) : std::vector<Row>();
}

std::vector<Row> CDocument::RowsWhere(const std::string& container, const Filter& filter) {
    std::vector<Row> rows = Rows(container);
    std::erase_if(rows, [&](const Row& row) {
        return !std::all_of(filter.begin(), filter.end(), [&](const Pair& wanted) {
            const std::string* const value = row.Find(wanted.first);
            return value != nullptr && *value == wanted.second;
        });
    });
    return rows;
}

std::optional<std::string> CDocument::FirstValue(const std::string& container, std::string_view attribute) {
    for (const Row& row : RowsOrNone(container)) {
        if (const std::string* const value = row.Find(attribute)) {
            return *value;
        }
    }
    return std::nullopt;
}

std::optional<std::string> CDocument::ErrorIn(const std::string& container) {
    const CRowTable* const table = FindTable(container);
    if (table == nullptr) {
        return std::nullopt;
    }
    if (table->FirstBareRow() != kNoRow) {
        int before = 0;
        for (RowNumber number = 0; number < table->FirstBareRow(); ++number) {
            before += table->IsLive(number) ? 1 : 0;
        }
        return "something that is no item stands " +
               (before == 0 ? "before the first item" : "behind item " + std::to_string(before)) +
               ", and hosts read no further";
    }
    const ContainerSchema* const schema = FindContainerSchema(container);
    if (schema == nullptr || schema->key.empty()) {
        return std::nullopt;
    }
    const std::string key(schema->key);
    std::set<std::string> keys;
    for (const Row& row : Rows(container)) {
        const std::string* const value = row.Find(key);
        if (value == nullptr) {
            return "item " + std::to_string(row.position) + " has no " + key;
        }
        if (!keys.insert(*value).second) {
            return "item " + std::to_string(row.position) + " has the " + key + " \"" + *value + "\" of another";
        }
    }
    return std::nullopt;
}

std::vector<std::string> CDocument::ErrorsInUse() {
    std::vector<std::string> errors;
    for (const std::string& container : std::set<std::string>(m_used)) {
        if (const auto error = ErrorIn(container)) {
            errors.push_back(container + " of " + m_strTitle + " has an error: " + *error + "; see: cordelctl doctor");
        }
    }
    return errors;
}

void CDocument::SetValue(const std::string& container, Row& row, const std::string& attribute,
                         const std::string& value) {
    CRowTable& table = RequireTable(container);
    const auto known =
        std::find_if(row.values.begin(), row.values.end(), [&](const Pair& pair) { return pair.first == attribute; });
    const std::basic_string<DomChar> text = ToDomText(value);
    try {
        if (known != row.values.end()) {
            if (known->second == value) {
                return;
            }
            m_object.m_pTables->SetText(table, row.number, static_cast<std::size_t>(known - row.values.begin()), text);
            known->second = value;
        } else {
            const std::basic_string<DomChar> name = ToDomText(attribute);
            m_object.m_pTables->AddCell(table, row.number, {name, text});
            row.values.emplace_back(attribute, value);
        }
    } catch (const DomError& error) {
        FailFor(error, "this value of " + container + " " + attribute);
    }
    m_bChanged = true;
}

void CDocument::AppendRow(const std::string& container, const std::vector<Pair>& values) {
    CRowTable& table = RequireTable(container);
    std::vector<std::basic_string<DomChar>> texts;
    texts.reserve(values.size() * 2);
    std::vector<DomPair> pairs;
    for (const auto& [name, value] : values) {
        texts.push_back(ToDomText(name));
        texts.push_back(ToDomText(value));
        pairs.push_back({texts[texts.size() - 2], texts.back()});
    }
    try {
        m_object.m_pTables->AppendItem(table, pairs);
    } catch (const DomError& error) {
        FailFor(error, "this item of " + container);
    }
    m_bChanged = true;
}

void CDocument::RemoveRows(const std::string& container, const std::vector<Row>& rows) {
    CRowTable& table = RequireTable(container);
    std::vector<RowNumber> numbers;
    std::transform(rows.begin(), rows.end(), std::back_inserter(numbers), [](const Row& row) { return row.number; });
    try {
        m_object.m_pTables->RemoveRows(table, numbers);
    } catch (const DomError& error) {
        throw CFailure(ExitCode::Refused, "an item of " + container + " cannot be removed: " + error.what());
    }
    m_bChanged = m_bChanged || !rows.empty();
}

std::size_t CDocument::RemoveAllChildren(const std::string& container) {
    CRowTable& table = RequireTable(container);
    const std::size_t count = table.LiveCount();
    if (count > 0) {
        m_object.m_pTables->RemoveAllRows(table, CDocumentTables::Order::FirstToLast);
        m_bChanged = true;
    }
    return count;
}

void CDocument::RemoveComments(const std::string& container) {
    DomDocument& dom = *m_object.m_pDom;
    const DomNode element = RequireTable(container).Container();
    std::vector<DomNode> comments;
    for (DomNode child = dom.FirstChild(element); child; child = dom.NextSibling(child)) {
        if (dom.Kind(child) == DomKind::Comment) {
            comments.push_back(child);
        }
    }
    for (const DomNode& comment : comments) {
        dom.RemoveChild(element, comment);
        m_bChanged = true;
    }
    ForgetTables();
}

void CDocument::AddContainer(const std::string& name) {
    try {
        m_object.m_pTables->AddContainer(ToDomText(name));
    } catch (const DomError& error) {
        FailFor(error, "a container " + name);
    }
    m_bChanged = true;
}

bool CDocument::SaveOver(const std::filesystem::path& file, const LastLook& isAsLoaded) {
    try {
        m_object.m_pDom->Save(LibraryPath(file).c_str(), isAsLoaded);
        return true;
    } catch (const DomError& error) {
        if (error.Reason().m_kind == ReasonKind::Overtaken) {
            return false;
        }
        throw CFailure(ExitCode::NotKept,
                       "nothing was changed: " + host::TextOf(file) + " could not be saved: " + WordsOf(error.Reason()),
                       "see whether the disk is full or the folder read-only, then try again");
    }
}
