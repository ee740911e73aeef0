// The DOM off Windows: Expat reads, pugixml holds the tree and writes it.

#include "platform/dom.h"

#include "document_source.h"
#include "safe_save.h"
#include "shared_names.h"
#include "tree_builder.h"

#include <cstring>
#include <new>
#include <string>

struct DomDocument::Native {
    pugi::xml_document m_tree;
};

namespace {

constexpr const char* kItemName = "Item";

/// The disk is busy with one piece of a document while the next is made: small enough for many pieces, and large enough
/// for everyday documents to be one.
constexpr std::size_t kPieceBytes = std::size_t{1} << 20;

void Require(bool done) {
    if (!done) {
        throw DomError("the document has no memory left");
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

/// Takes a new child back unless it is kept.
class CNewChild {
public:
    explicit CNewChild(pugi::xml_node parent) : m_parent(parent), m_child(m_parent.append_child()) {
        Require(!m_child.empty());
    }
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
/// for kPieceBytes.
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
        m_sink(m_strPiece);
        m_strPiece.clear();
    }

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

bool DomDocument::Load(const char* path, CReason* reason) {
    try {
        CDocumentSource source;
        return source.Open(path, reason) && BuildTree(source, m_pNative->m_tree, reason);
    } catch (const std::bad_alloc&) {
        throw DomError("out of memory while loading a document", CReason::Of(ReasonKind::OutOfMemory));
    }
}

void DomDocument::Save(const char* path) {
    std::string piece;
    piece.reserve(kPieceBytes);
    const auto writeTree = [&](const platform::PieceSink& sink) {
        CPieceWriter writer(piece, sink);
        m_pNative->m_tree.save(writer, "  ", pugi::format_indent | pugi::format_no_declaration, pugi::encoding_utf8);
        writer.HandOver();
    };
    CReason reason;
    if (!platform::ReplaceContents(path, writeTree, &reason)) {
        throw DomError("the document could not be saved", std::move(reason));
    }
}

DomNode DomDocument::FirstElementNamed(DomView tagName) {
    const pugi::xml_node root = m_pNative->m_tree.document_element();
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

DomText DomDocument::TagName(const DomNode& node) { return DomText(node.name()); }

bool DomDocument::HasChildren(const DomNode& node) { return !node.first_child().empty(); }

DomText DomDocument::SetAttributeText(const DomNode& element, std::size_t index, DomView text) {
    pugi::xml_attribute attribute = element.first_attribute();
    for (; index > 0; --index) {
        attribute = attribute.next_attribute();
    }
    Require(attribute.set_value(std::string(text).c_str()));
    return DomText(attribute.value());
}

DomNode DomDocument::AppendItem(const DomNode& container, const std::vector<DomPair>& attributes) {
    CNewChild item(container);
    Require(item.Node().set_name(kItemName));
    for (const DomPair& pair : attributes) {
        const std::string name(pair.name);
        pugi::xml_attribute attribute = item.Node().attribute(name.c_str());
        if (attribute.empty()) {
            attribute = AppendNamedAttribute(item.Node(), name.c_str());
        }
        Require(!attribute.empty() && attribute.set_value(std::string(pair.text).c_str()));
    }
    return item.Keep();
}

void DomDocument::RemoveChild(const DomNode& container, const DomNode& child) {
    pugi::xml_node parent = container;
    Require(parent.remove_child(child));
}
