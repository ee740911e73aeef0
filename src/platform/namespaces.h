// The rules of namespaces: a DOM may take a document that breaks them, and then names mean one thing here and another
// there.

#pragma once

#include "platform/dom.h"
#include "platform/text_hash.h"

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// An attribute with its whole name.
struct NamedText {
    DomView name;
    DomView text;
};

/// Whether an element needs a look at its namespaces for the sake of this name of it or of one of its attributes.
bool ConcernsNamespaces(DomView name) noexcept;

/// Whether an attribute of this name declares a namespace.
bool DeclaresNamespace(DomView attributeName) noexcept;

/// The declarations that hold on the way from the document element down to some element.
class CNamespaceScopes {
public:
    /// Goes into an element at this depth, deeper than the one before. Elements whose names do not concern namespaces
    /// may be left out. Returns null, or what is wrong with the names: a prefix that is not declared, a second
    /// colon, two attributes of one expanded name, a declaration that is not allowed. Throws std::bad_alloc.
    const char* Enter(std::size_t depth, DomView elementName, const std::vector<NamedText>& attributes);

    /// Comes back from an element at this depth.
    void Leave(std::size_t depth) noexcept;

    /// Whether an element without prefix is in a namespace here.
    bool HasDefaultNamespace() const;

private:
    using Text = std::basic_string<DomChar>;
    struct Declaration {
        std::size_t depth;
        std::vector<Text>* namespaces;
    };

    const char* Declare(std::size_t depth, const NamedText& attribute);
    const char* CheckAttributes(const std::vector<NamedText>& attributes) const;
    std::optional<DomView> Find(DomView prefix) const;

    std::unordered_map<Text, std::vector<Text>, TextHash<DomChar>> m_byPrefix; // the innermost last
    std::vector<Declaration> m_declarations;
};
