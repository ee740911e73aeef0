// What the engine needs of an XML DOM, and no more: one interface, implemented once per target.
//
// Texts are the DOM's own (UTF-16 on Windows, UTF-8 elsewhere). Nodes are cheap handles that stay valid until
// the node is removed or the document goes. Every operation that can fail throws DomError and then leaves the
// tree as it was, unless it says otherwise; none of them locks.

#pragma once

#include "dom_types.h" // per target: DomChar, DomText, DomNode
#include "platform/last_look.h"
#include "platform/reason.h"

#include <cstdint>
#include <exception>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

/// The one error of the DOM. Made without memory of its own: running out of memory is one of its reasons.
class DomError : public std::exception {
public:
    /// `words` is a literal.
    explicit DomError(const char* words) noexcept : m_pWords(words) {}
    DomError(const char* words, CReason&& reason) noexcept : m_pWords(words), m_reason(std::move(reason)) {}
    const char* what() const noexcept override { return m_pWords; }

    /// Why: what it was made with, or else its words.
    CReason Reason() const noexcept { return m_reason ? m_reason : CReason::Of(ReasonKind::Refused, m_pWords); }

private:
    const char* m_pWords;
    CReason m_reason;
};

using DomView = std::basic_string_view<DomChar>;

// DomChar: one unit of the DOM's text.
//
// DomText: text that the DOM handed out. Movable, not necessarily copyable; `View()` reads it. It may borrow from
// the tree: an attribute's text is valid until that attribute is set or its element removed.
//
// DomNode: handle of a node. Copyable; a default-built one is empty; converts to bool explicitly.

struct DomAttribute {
    DomText baseName; // without the namespace prefix
    DomText text;
};

/// A new attribute, to be written: a valid XML name, and text that XML can hold.
struct DomPair {
    DomView name;
    DomView text;
};

enum class DomKind : std::uint8_t { Element, Text, Cdata, Comment, Instruction, Other };

/// Where something stands in the file that was loaded, both from 1 and in characters; 0: not known.
struct DomPosition {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
};

/// Whether a load notes where everything stands. Costs memory of the size of the document.
enum class DomPositions : bool { Forgotten, Noted };

/// One document of the DOM.
class DomDocument {
public:
    /// An empty document, or null when the DOM cannot be had on this thread.
    static std::unique_ptr<DomDocument> Create() noexcept;

    ~DomDocument();
    DomDocument(const DomDocument&) = delete;
    DomDocument& operator=(const DomDocument&) = delete;

    /// Loads the file synchronously, without validation, without reading anything external, and without text
    /// that is only white space. False: there is no document in that file (missing, unreadable, malformed), and
    /// `reason`, where one is wanted, says why. Throws DomError when the load call itself failed, as opposed to the
    /// document.
    bool Load(const char* path, CReason* reason = nullptr, DomPositions positions = DomPositions::Forgotten);

    /// Replaces the file, which exists, by the whole document, in one step (see the target's save). `isAsLoaded`, where
    /// it is given, is asked immediately before that step, when the new contents lie on the disk: when it says no, the
    /// file stays as it is. The DomError of a failure says why.
    void Save(const char* path, const LastLook& isAsLoaded = {});

    /// Empty only before the load.
    DomNode DocumentElement();

    /// The first element in document order below the document element with this whole tag name, prefix included;
    /// empty when there is none. `tagName` is a valid XML name.
    DomNode FirstElementNamed(DomView tagName);

    /// Children of a node in document order, of every kind; empty after the last.
    DomNode FirstChild(const DomNode& node);
    DomNode NextSibling(const DomNode& node);

    /// Appends the node's attributes to `attributes`, in order. False, and nothing appended, when the node is
    /// of a kind that has none (a comment, text, a processing instruction, a CDATA section).
    bool ListAttributes(const DomNode& node, std::vector<DomAttribute>& attributes);

    DomKind Kind(const DomNode& node);

    /// The text of a node that is no element: what a comment, a text, a section or an instruction says.
    DomText Text(const DomNode& node);

    /// Where a node, or the attribute at `index` of an element, stood when it was loaded. Not known without
    /// DomPositions::Noted, of what was added since, and on targets whose DOM does not say.
    DomPosition Position(const DomNode& node);
    DomPosition AttributePosition(const DomNode& element, std::size_t index);

    /// Tag name of an element, prefix included. Of another node something that is no XML name.
    DomText TagName(const DomNode& node);

    bool HasChildren(const DomNode& node);

    /// Sets the text of the attribute at `index`, in the order of ListAttributes, to text that XML can hold.
    /// Returns the text as the tree now holds it.
    DomText SetAttributeText(const DomNode& element, std::size_t index, DomView text);

    /// Adds an attribute, whose name the element does not have, behind its others. Returns its text as the tree now
    /// holds it.
    DomText AddAttribute(const DomNode& element, const DomPair& attribute);

    /// Appends an element without namespace as the last child of `parent`, with these attributes in this order; a
    /// repeated name keeps its first place and its last text. `tagName` is a valid XML name. All or nothing.
    DomNode AppendElement(const DomNode& parent, DomView tagName, const std::vector<DomPair>& attributes);

    void RemoveChild(const DomNode& container, const DomNode& child);

private:
    struct Native; // the target's own state
    explicit DomDocument(std::unique_ptr<Native> native) noexcept;
    std::unique_ptr<Native> m_pNative;
};
