// How deep entities lie within each other. Expat expands an entity that is named within another one by calling itself,
// so that the depth of a document's entities is a depth of the stack.

#pragma once

#include "platform/text_hash.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

/// Greatest number of entities within each other.
inline constexpr std::size_t kMaxEntityNesting = 20;

/// The entities of one document, as they are declared.
class CEntityNesting {
public:
    /// Takes note of an entity and of what it names in its text: once for each, as Expat reports the first declaration
    /// of a name only. False when entities then lie too deep within each other, as those do that name themselves.
    /// Throws std::bad_alloc.
    bool Declare(std::string_view name, std::string_view text);

    /// Whether text names an entity that is not declared. Throws std::bad_alloc.
    bool NamesUndeclared(std::string_view text) const;

    /// Whether some entity names one that is not declared.
    bool HasUndeclared() const noexcept { return m_nDeclared < m_byName.size(); }

private:
    struct Entity {
        bool bDeclared = false;
        std::size_t nDepth = 1; // of the entities that it names, itself included
        std::vector<Entity*> m_namedIn;
    };

    static bool Deepen(Entity& changed);

    std::unordered_map<std::string, Entity, TextHash<char>> m_byName; // also those that were only named so far
    std::size_t m_nDeclared = 0;
};
