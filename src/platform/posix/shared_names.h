// Attributes whose names are stored once for a whole tree.
//
// A document has hundreds of thousands of attributes with some twenty names. pugixml gives every name that is set
// memory of its own, but lets the copies of a parsed attribute share its texts with it: so each name is parsed once, as
// an attribute of a pattern, and copied from there. That saves a fifth of the tree, and what a save has to walk
// through.

#pragma once

#include <pugixml.hpp>

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Appends an attribute with a name of its own and without text. Empty when there is no memory; the element is then as
/// it was. (pugixml's own function leaves an attribute without a name.)
pugi::xml_attribute AppendNamedAttribute(pugi::xml_node element, const char* name) noexcept;

class CSharedNames {
public:
    /// Keeps its patterns in the tree as long as it lives.
    explicit CSharedNames(pugi::xml_document& tree);
    ~CSharedNames();
    CSharedNames(const CSharedNames&) = delete;
    CSharedNames& operator=(const CSharedNames&) = delete;

    /// Appends an attribute without text to an element. `position` is its place among the element's attributes:
    /// elements are mostly alike, and the name that stood there last is tried first. Empty when there is no memory.
    /// Throws std::bad_alloc.
    pugi::xml_attribute AppendAttribute(pugi::xml_node element, std::size_t position, const char* name);

    /// Whether the name last appended at this place concerns namespaces.
    bool ConcernsNamespaces(std::size_t position) const noexcept { return m_byPosition[position].bConcernsNamespaces; }

private:
    struct Place {
        pugi::xml_attribute pattern; // the one used there last
        bool bConcernsNamespaces = false;
    };

    pugi::xml_attribute Pattern(const char* name);

    pugi::xml_document& m_tree;
    pugi::xml_node m_patterns;
    std::unordered_map<std::string_view, pugi::xml_attribute> m_byName; // the patterns' own names
    std::vector<Place> m_byPosition;
};
