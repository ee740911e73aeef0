#include "platform/namespaces.h"

#include "platform/xml_characters.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace {

/// A literal in the DOM's units.
template <std::size_t size>
class CLiteral {
public:
    constexpr explicit CLiteral(const char (&text)[size]) noexcept { std::copy_n(text, size, m_units); }
    constexpr operator DomView() const noexcept { return {m_units, size - 1}; }

private:
    DomChar m_units[size] = {};
};

constexpr CLiteral kXml("xml");
constexpr CLiteral kXmlns("xmlns");
constexpr CLiteral kXmlNamespace("http://www.w3.org/XML/1998/namespace");
constexpr CLiteral kXmlnsNamespace("http://www.w3.org/2000/xmlns/");

constexpr DomChar kColon = ':';

/// The parts of a name that has a prefix; of any other one both are empty.
struct QualifiedName {
    DomView prefix;
    DomView local;
};

/// False when the name is no qualified name.
bool Split(DomView name, QualifiedName& parts) noexcept {
    const std::size_t colon = name.find(kColon);
    if (colon == DomView::npos) {
        return true;
    }
    parts = {name.substr(0, colon), name.substr(colon + 1)};
    return parts.local.find(kColon) == DomView::npos && IsXmlName(parts.prefix) && IsXmlName(parts.local);
}

} // namespace

bool DeclaresNamespace(DomView attributeName) noexcept {
    constexpr DomView kName = kXmlns;
    return attributeName.starts_with(kName) &&
           (attributeName.size() == kName.size() || attributeName[kName.size()] == kColon);
}

bool ConcernsNamespaces(DomView name) noexcept { return name.find(kColon) != DomView::npos || name == DomView(kXmlns); }

const char* CNamespaceScopes::Enter(std::size_t depth, DomView elementName, const std::vector<NamedText>& attributes) {
    for (const NamedText& attribute : attributes) {
        if (DeclaresNamespace(attribute.name)) {
            const char* const wrong = Declare(depth, attribute);
            if (wrong != nullptr) {
                return wrong;
            }
        }
    }
    QualifiedName name;
    if (!Split(elementName, name)) {
        return "an element's name is no qualified name";
    }
    if (!name.prefix.empty() && !Find(name.prefix)) {
        return "the prefix of an element is not declared";
    }
    return CheckAttributes(attributes);
}

void CNamespaceScopes::Leave(std::size_t depth) noexcept {
    while (!m_declarations.empty() && m_declarations.back().depth >= depth) {
        m_declarations.back().namespaces->pop_back();
        m_declarations.pop_back();
    }
}

bool CNamespaceScopes::HasDefaultNamespace() const {
    const std::optional<DomView> found = Find({});
    return found && !found->empty();
}

const char* CNamespaceScopes::Declare(std::size_t depth, const NamedText& attribute) {
    QualifiedName name;
    if (!Split(attribute.name, name)) {
        return "an attribute's name is no qualified name";
    }
    const DomView prefix = name.local; // empty: for names without one
    const bool bXml = prefix == DomView(kXml);
    const bool bXmlNamespace = attribute.text == DomView(kXmlNamespace);
    if (bXml && bXmlNamespace) {
        return nullptr; // as it is without it
    }
    if (bXml || bXmlNamespace || prefix == DomView(kXmlns) || attribute.text == DomView(kXmlnsNamespace)) {
        return "a reserved prefix or namespace is declared";
    }
    if (!prefix.empty() && attribute.text.empty()) {
        return "a prefix is declared without a namespace";
    }
    std::vector<Text>& namespaces = m_byPrefix[Text(prefix)];
    namespaces.emplace_back(attribute.text);
    m_declarations.push_back({depth, &namespaces});
    return nullptr;
}

const char* CNamespaceScopes::CheckAttributes(const std::vector<NamedText>& attributes) const {
    // Only with a prefix can one name be written in two ways.
    std::vector<std::pair<DomView, DomView>> expandedNames;
    for (const NamedText& attribute : attributes) {
        QualifiedName name;
        if (!Split(attribute.name, name)) {
            return "an attribute's name is no qualified name";
        }
        if (name.prefix.empty() || name.prefix == DomView(kXmlns)) {
            continue;
        }
        const std::optional<DomView> found = Find(name.prefix);
        if (!found) {
            return "the prefix of an attribute is not declared";
        }
        expandedNames.emplace_back(*found, name.local);
    }
    std::sort(expandedNames.begin(), expandedNames.end());
    if (std::adjacent_find(expandedNames.begin(), expandedNames.end()) != expandedNames.end()) {
        return "two attributes have one name in one namespace";
    }
    return nullptr;
}

/// The namespace of a prefix, or the default one for none.
std::optional<DomView> CNamespaceScopes::Find(DomView prefix) const {
    if (prefix == DomView(kXml)) {
        return DomView(kXmlNamespace);
    }
    const auto found = m_byPrefix.find(Text(prefix));
    if (found == m_byPrefix.end() || found->second.empty()) {
        return {};
    }
    return found->second.back();
}
