#include "entity_nesting.h"

#include <algorithm>
#include <iterator>
#include <set>

namespace {

constexpr std::string_view kPredefined[] = {"amp", "lt", "gt", "quot", "apos"};

/// The next name in `text` that refers to an entity of the document's own, from `position` on, which moves behind it;
/// empty when there is none. Where no reference may stand, in a comment say, one is taken for a reference too.
std::string_view NextReference(std::string_view text, std::size_t& position) noexcept {
    for (;;) {
        const std::size_t start = text.find('&', position);
        const std::size_t end = start == std::string_view::npos ? start : text.find_first_of("&;", start + 1);
        if (end == std::string_view::npos) {
            return {};
        }
        position = end;
        const std::string_view name = text.substr(start + 1, end - start - 1);
        if (text[end] == ';' && !name.empty() && name[0] != '#' &&
            std::find(std::begin(kPredefined), std::end(kPredefined), name) == std::end(kPredefined)) {
            return name;
        }
    }
}

} // namespace

bool CEntityNesting::Declare(std::string_view name, std::string_view text) {
    Entity& entity = m_byName[std::string(name)];
    entity.bDeclared = true;
    ++m_nDeclared;
    std::set<std::string_view> known;
    std::size_t position = 0;
    for (std::string_view named; !(named = NextReference(text, position)).empty();) {
        if (known.insert(named).second) {
            Entity& inner = m_byName[std::string(named)];
            inner.m_namedIn.push_back(&entity);
            entity.nDepth = std::max(entity.nDepth, inner.nDepth + 1);
        }
    }
    return entity.nDepth <= kMaxEntityNesting && Deepen(entity);
}

/// Passes the depth of an entity on to those that it is named in.
bool CEntityNesting::Deepen(Entity& changed) {
    std::vector<Entity*> waiting{&changed};
    while (!waiting.empty()) {
        const Entity& inner = *waiting.back();
        waiting.pop_back();
        for (Entity* const outer : inner.m_namedIn) {
            if (outer->nDepth > inner.nDepth) {
                continue;
            }
            outer->nDepth = inner.nDepth + 1;
            if (outer->nDepth > kMaxEntityNesting) {
                return false;
            }
            waiting.push_back(outer);
        }
    }
    return true;
}

bool CEntityNesting::NamesUndeclared(std::string_view text) const {
    std::size_t position = 0;
    for (std::string_view named; !(named = NextReference(text, position)).empty();) {
        const auto found = m_byName.find(std::string(named));
        if (found == m_byName.end() || !found->second.bDeclared) {
            return true;
        }
    }
    return false;
}
