// Peer: a project in a pugixml tree, and the lookups of the ID checks written directly over it. There is no index: each
// lookup walks the list, and tests every attribute of a row against every pair of its filter.

#pragma once

#include <pugixml.hpp>

#include <span>
#include <string>

class CPlainLookups {
public:
    explicit CPlainLookups(const std::string& project);

    /// The lookups of CheckID for the file being edited; the number of those that found a file.
    int CheckId() const;

    /// The lookups of IdsAreValid; the number of ticked files.
    int IdsAreValid() const;

private:
    struct Pair {
        const char* name;
        const char* value;
    };
    const char* Find(std::span<const Pair> filter, const char* wanted) const;

    pugi::xml_document m_document;
    pugi::xml_node m_files;
};
