// The DOM off Windows: Expat reads, pugixml holds the tree and writes it.

#include "platform/dom.h"

#include "document_source.h"
#include "platform/document_limits.h"
#include "platform/namespaces.h"
#include "safe_save.h"
#include "shared_names.h"
#include "tree_builder.h"

#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <unordered_set>
#include <utility>

struct DomDocument::Native {
    BuiltDocument m_document;

    /// The file that was loaded, and what it let whom do then, or after the last save.
    std::string m_strPath;
    std::optional<platform::FileRights> m_rights;

    /// Items that were made where a default namespace holds. They are in none, and must say so where they are written.
    std::unordered_set<pugi::xml_node_struct*> m_outsideNamespace;

    void CheckNew(pugi::xml_node element);
    void Remove(pugi::xml_node parent, pugi::xml_node child) noexcept;
    bool Write(const char* path, unsigned format, CReason& reason, const LastLook& isAsLoaded);
};

namespace {

constexpr const char* kDefaultDeclaration = "xmlns";

/// The disk is busy with one piece of a document while the next is made: small enough for many pieces, and large enough
/// for everyday documents to be one.
constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

DomError OutOfMemory() noexcept { return {"the document has no memory left", CReason::Of(ReasonKind::OutOfMemory)}; }

void Require(bool done) {
    if (!done) {
        throw OutOfMemory();
    }
}

/// `wrong`: null, or what is wrong.
void RequireRight(const char* wrong) {
    if (wrong != nullptr) {
        throw DomError(wrong);
    }
}

/// Whether the attribute would be loaded with this text as it is.
void RequireHolds(const CAttributeDeclarations& declarations, pugi::xml_node element, pugi::xml_attribute attribute,
                  DomView text) {
    if (!declarations.CanHold(element.name(), attribute.name(), text)) {
        throw DomError("the attribute is declared to hold tokens");
    }
}

/// The part of an attribute's name after its namespace prefix.
std::string_view BaseName(const char* name) noexcept {
    const char* const colon = std::strchr(name, ':');
    return colon != nullptr ? colon + 1 : name;
}

/// The node after `node` in document order, inside `root`.
pugi::xml_node NextNode(pugi::xml_node node, pugi::xml_node root) noexcept {
    if (!node.first_child().empty()) {
        return node.first_child();
    }
    for (; node != root; node = node.parent()) {
        if (!node.next_sibling().empty()) {
            return node.next_sibling();
        }
    }
    return {};
}

std::size_t DepthOf(pugi::xml_node element) noexcept {
    std::size_t depth = 0;
    for (; element.type() == pugi::node_element; element = element.parent()) {
        ++depth;
    }
    return depth;
}

/// An attribute that is to hold another text.
struct Change {
    pugi::xml_attribute attribute;
    DomView text;
};

/// Null, or what is wrong with the names of an element in its place.
const char* EnterElement(CNamespaceScopes& scopes, std::size_t depth, pugi::xml_node element, const Change& change) {
    std::vector<NamedText> attributes;
    bool bNamespaces = ConcernsNamespaces(element.name());
    for (const pugi::xml_attribute attribute : element.attributes()) {
        attributes.push_back({attribute.name(), attribute == change.attribute ? change.text : attribute.value()});
        bNamespaces = bNamespaces || ConcernsNamespaces(attribute.name());
    }
    return bNamespaces ? scopes.Enter(depth, element.name(), attributes) : nullptr;
}

/// The scopes that an element stands in, itself included.
CNamespaceScopes ScopesOf(pugi::xml_node element) {
    std::vector<pugi::xml_node> path;
    for (; element.type() == pugi::node_element; element = element.parent()) {
        path.push_back(element);
    }
    CNamespaceScopes scopes;
    for (std::size_t depth = 1; depth <= path.size(); ++depth) {
        EnterElement(scopes, depth, path[path.size() - depth], {});
    }
    return scopes;
}

/// Null, or what is wrong with the names of an element and of those within it once the change is made.
const char* CheckNamespaces(pugi::xml_node element, const Change& change) {
    CNamespaceScopes scopes = ScopesOf(element.parent());
    for (pugi::xml_node node = element; !node.empty(); node = NextNode(node, element)) {
        if (node.type() != pugi::node_element) {
            continue;
        }
        const std::size_t depth = DepthOf(node);
        scopes.Leave(depth);
        const char* const wrong = EnterElement(scopes, depth, node, change);
        if (wrong != nullptr) {
            return wrong;
        }
    }
    return nullptr;
}

bool IsInDefaultNamespace(pugi::xml_node element) noexcept {
    for (; element.type() == pugi::node_element; element = element.parent()) {
        const pugi::xml_attribute declaration = element.attribute(kDefaultDeclaration);
        if (!declaration.empty()) {
            return *declaration.value() != '\0';
        }
    }
    return false;
}

/// Declares for some elements that they are in no namespace, as long as it lives.
class COutsideNamespace {
public:
    COutsideNamespace() = default;
    void Declare(const std::unordered_set<pugi::xml_node_struct*>& elements) {
        m_declarations.reserve(elements.size());
        for (pugi::xml_node_struct* const native : elements) {
            pugi::xml_node element(native);
            const pugi::xml_attribute declaration = AppendNamedAttribute(element, kDefaultDeclaration);
            Require(!declaration.empty());
            m_declarations.emplace_back(element, declaration);
        }
    }
    ~COutsideNamespace() {
        for (auto& [element, declaration] : m_declarations) {
            element.remove_attribute(declaration);
        }
    }
    COutsideNamespace(const COutsideNamespace&) = delete;
    COutsideNamespace& operator=(const COutsideNamespace&) = delete;

private:
    std::vector<std::pair<pugi::xml_node, pugi::xml_attribute>> m_declarations;
};

/// Takes a new child back unless it is kept. Where there was no memory for one it is empty, and can be given no name.
class CNewChild {
public:
    explicit CNewChild(pugi::xml_node parent) noexcept : m_parent(parent), m_child(m_parent.append_child()) {}
    ~CNewChild() {
        if (!m_bKept) {
            m_parent.remove_child(m_child);
        }
    }
    CNewChild(const CNewChild&) = delete;
    CNewChild& operator=(const CNewChild&) = delete;
    pugi::xml_node& Node() noexcept { return m_child; }
    pugi::xml_node Keep() noexcept {
        m_bKept = true;
        return m_child;
    }

private:
    pugi::xml_node m_parent;
    pugi::xml_node m_child;
    bool m_bKept = false;
};

/// Gathers the small bits in which a tree is written into pieces that are worth a call to the system. `piece` has room
/// for kPieceBytes. What would be too large to be loaded again is not handed over to its end.
class CPieceWriter : public pugi::xml_writer {
public:
    CPieceWriter(std::string& piece, const platform::PieceSink& sink) noexcept : m_strPiece(piece), m_sink(sink) {}

    /// A carriage return as it stands would be read back as a line end. pugixml writes it so in one place only, text
    /// between elements, where a character reference may stand for it.
    void write(const void* data, std::size_t size) override {
        std::string_view text(static_cast<const char*>(data), size);
        for (std::size_t found = 0; (found = text.find('\r')) != std::string_view::npos;
             text.remove_prefix(found + 1)) {
            Append(text.substr(0, found));
            Append("&#13;");
        }
        Append(text);
    }

    void HandOver() {
        m_nBytes += m_strPiece.size();
        if (!IsTooLarge()) {
            m_sink(m_strPiece);
        }
        m_strPiece.clear();
    }

    bool IsTooLarge() const noexcept { return m_nBytes > kMaxDocumentBytes; }

private:
    void Append(std::string_view text) {
        while (m_strPiece.size() + text.size() > kPieceBytes) {
            const std::size_t room = kPieceBytes - m_strPiece.size();
            m_strPiece.append(text, 0, room);
            text.remove_prefix(room);
            HandOver();
        }
        m_strPiece += text;
    }

    std::string& m_strPiece;
    const platform::PieceSink& m_sink;
    std::size_t m_nBytes = 0;
};

} // namespace

DomDocument::DomDocument(std::unique_ptr<Native> native) noexcept : m_pNative(std::move(native)) {}
DomDocument::~DomDocument() = default;

std::unique_ptr<DomDocument> DomDocument::Create() noexcept {
    try {
        return std::unique_ptr<DomDocument>(new DomDocument(std::make_unique<Native>()));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

bool DomDocument::Load(const char* path, CReason* reason, DomPositions positions) {
    try {
        if (positions == DomPositions::Noted) {
            m_pNative->m_document.m_positions.emplace();
        }
        CDocumentSource source;
        if (!source.Open(path, reason) || !BuildTree(source.Text(), m_pNative->m_document, reason)) {
            return false;
        }
        m_pNative->m_strPath = path;
        m_pNative->m_rights = source.Rights();
        return true;
    } catch (const std::bad_alloc&) {
        throw DomError("out of memory while loading a document", CReason::Of(ReasonKind::OutOfMemory));
    }
}

/// Saves the tree in this format.
bool DomDocument::Native::Write(const char* path, unsigned format, CReason& reason, const LastLook& isAsLoaded) {
    COutsideNamespace declarations;
    declarations.Declare(m_outsideNamespace);
    std::string piece;
    piece.reserve(kPieceBytes);
    bool bTooLarge = false;
    const auto writeTree = [&](const platform::PieceSink& sink) {
        CPieceWriter writer(piece, sink);
        m_document.m_tree.save(writer, "  ", format | pugi::format_no_declaration, pugi::encoding_utf8);
        writer.HandOver();
        bTooLarge = writer.IsTooLarge();
        return !bTooLarge;
    };
    const bool bSaved =
        platform::ReplaceContents(path, writeTree, &reason, isAsLoaded, m_strPath == path ? &m_rights : nullptr);
    if (bTooLarge) {
        reason = CReason::Of(ReasonKind::TooLarge);
    }
    return bSaved;
}

void DomDocument::Save(const char* path, const LastLook& isAsLoaded) {
    CReason reason;
    bool bSaved = m_pNative->Write(path, pugi::format_indent, reason, isAsLoaded);
    if (!bSaved && reason.m_kind == ReasonKind::TooLarge) {
        bSaved = m_pNative->Write(path, pugi::format_raw, reason,
                                  isAsLoaded); // blanks may be most of a document that is deep
    }
    if (!bSaved) {
        throw DomError("the document could not be saved", std::move(reason));
    }
}

DomNode DomDocument::DocumentElement() { return m_pNative->m_document.m_tree.document_element(); }

DomNode DomDocument::FirstElementNamed(DomView tagName) {
    const pugi::xml_node root = m_pNative->m_document.m_tree.document_element();
    pugi::xml_node node = NextNode(root, root);
    while (!node.empty() && (node.type() != pugi::node_element || tagName != node.name())) {
        node = NextNode(node, root);
    }
    return node;
}

DomNode DomDocument::FirstChild(const DomNode& node) { return node.first_child(); }

DomNode DomDocument::NextSibling(const DomNode& node) { return node.next_sibling(); }

bool DomDocument::ListAttributes(const DomNode& node, std::vector<DomAttribute>& attributes) {
    if (node.type() != pugi::node_element) {
        return false;
    }
    for (const pugi::xml_attribute attribute : node.attributes()) {
        attributes.push_back({DomText(BaseName(attribute.name())), DomText(attribute.value())});
    }
    return true;
}

DomKind DomDocument::Kind(const DomNode& node) {
    switch (node.type()) {
    case pugi::node_element:
        return DomKind::Element;
    case pugi::node_pcdata:
        return DomKind::Text;
    case pugi::node_cdata:
        return DomKind::Cdata;
    case pugi::node_comment:
        return DomKind::Comment;
    case pugi::node_pi:
        return DomKind::Instruction;
    default:
        return DomKind::Other;
    }
}

DomText DomDocument::Text(const DomNode& node) { return DomText(node.value()); }

DomPosition DomDocument::Position(const DomNode& node) {
    const auto& positions = m_pNative->m_document.m_positions;
    return positions.has_value() ? positions->Of(node) : DomPosition();
}

DomPosition DomDocument::AttributePosition(const DomNode& element, std::size_t index) {
    const auto& positions = m_pNative->m_document.m_positions;
    return positions.has_value() ? positions->OfAttribute(element, index) : DomPosition();
}

DomText DomDocument::TagName(const DomNode& node) { return DomText(node.name()); }

bool DomDocument::HasChildren(const DomNode& node) { return !node.first_child().empty(); }

DomText DomDocument::SetAttributeText(const DomNode& element, std::size_t index, DomView text) {
    pugi::xml_attribute attribute = element.first_attribute();
    for (; index > 0; --index) {
        attribute = attribute.next_attribute();
    }
    RequireHolds(m_pNative->m_document.m_declarations, element, attribute, text);
    if (DeclaresNamespace(attribute.name())) {
        RequireRight(CheckNamespaces(element, {attribute, text}));
    }
    Require(attribute.set_value(std::string(text).c_str()));
    return DomText(attribute.value());
}

DomText DomDocument::AddAttribute(const DomNode& element, const DomPair& attribute) {
    pugi::xml_node owner = element;
    const std::string name(attribute.name);
    pugi::xml_attribute added = AppendNamedAttribute(owner, name.c_str());
    try {
        Require(added.set_value(std::string(attribute.text).c_str()));
        RequireHolds(m_pNative->m_document.m_declarations, owner, added, attribute.text);
        if (ConcernsNamespaces(name)) {
            RequireRight(CheckNamespaces(owner, {}));
        }
    } catch (const std::exception&) {
        owner.remove_attribute(added);
        throw;
    }
    return DomText(added.value());
}

/// Throws DomError when the document could not be loaded again with this new element, or the element would then not be
/// the same.
void DomDocument::Native::CheckNew(pugi::xml_node element) {
    const std::size_t depth = DepthOf(element);
    if (depth > kMaxElementDepth) {
        throw DomError("an element would lie too deep", CReason::Of(ReasonKind::TooDeep));
    }
    std::vector<NamedText> attributes; // as they would be loaded
    bool bNamespaces = ConcernsNamespaces(element.name());
    const auto add = [&](DomView name, DomView text) {
        attributes.push_back({name, text});
        bNamespaces = bNamespaces || ConcernsNamespaces(name);
    };
    for (const pugi::xml_attribute attribute : element.attributes()) {
        RequireHolds(m_document.m_declarations, element, attribute, attribute.value());
        add(attribute.name(), attribute.value());
    }
    bool bOutside = IsInDefaultNamespace(element);
    std::size_t defaultBytes = m_document.m_nDefaultBytes;
    for (const auto& [name, declaration] : m_document.m_declarations.Of(element.name())) {
        if (declaration.bDefault && element.attribute(name.c_str()).empty()) {
            defaultBytes += name.size() + declaration.strDefault.size();
            add(name, declaration.strDefault);
            bOutside = bOutside || name == kDefaultDeclaration;
        }
    }
    if (defaultBytes > kMaxDocumentBytes) {
        throw DomError("the defaults of attributes are too large", CReason::Of(ReasonKind::TooLarge));
    }
    if (bNamespaces) {
        RequireRight(ScopesOf(element.parent()).Enter(depth, element.name(), attributes));
    }
    if (bOutside && element.attribute(kDefaultDeclaration).empty()) {
        m_outsideNamespace.insert(element.internal_object());
    }
    m_document.m_nDefaultBytes = defaultBytes;
}

DomNode DomDocument::AppendElement(const DomNode& parent, DomView tagName, const std::vector<DomPair>& attributes) {
    try {
        CNewChild element(parent);
        Require(element.Node().set_name(std::string(tagName).c_str()));
        for (const DomPair& pair : attributes) {
            const std::string name(pair.name);
            pugi::xml_attribute attribute = element.Node().attribute(name.c_str());
            if (attribute.empty()) {
                attribute = AppendNamedAttribute(element.Node(), name.c_str());
            }
            Require(!attribute.empty() && attribute.set_value(std::string(pair.text).c_str()));
        }
        m_pNative->CheckNew(element.Node());
        return element.Keep();
    } catch (const std::bad_alloc&) {
        throw OutOfMemory();
    }
}

/// Removes a child without calling itself for what lies within, as pugixml does: that may be deeper than the stack.
void DomDocument::Native::Remove(pugi::xml_node parent, pugi::xml_node child) noexcept {
    pugi::xml_node node = child;
    for (;;) {
        if (!node.first_child().empty()) {
            node = node.first_child();
            continue;
        }
        const bool bLast = node == child;
        pugi::xml_node outer = bLast ? parent : node.parent();
        m_outsideNamespace.erase(node.internal_object());
        if (m_document.m_positions.has_value()) {
            m_document.m_positions->Forget(node); // its place in memory may be another node's soon
        }
        outer.remove_child(node);
        if (bLast) {
            return;
        }
        node = outer;
    }
}

void DomDocument::RemoveChild(const DomNode& container, const DomNode& child) { m_pNative->Remove(container, child); }
