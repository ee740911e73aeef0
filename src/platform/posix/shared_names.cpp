#include "shared_names.h"

#include "platform/namespaces.h"

#include <cstring>
#include <string>

namespace {

/// Names beyond these are not shared: a document with ever new ones would only gain patterns.
constexpr std::size_t kMaxPatterns = 256;

} // namespace

pugi::xml_attribute AppendNamedAttribute(pugi::xml_node element, const char* name) noexcept {
    pugi::xml_attribute attribute = element.append_attribute("");
    if (attribute.set_name(name)) {
        return attribute;
    }
    element.remove_attribute(attribute);
    return {};
}

CSharedNames::CSharedNames(pugi::xml_document& tree) : m_tree(tree), m_patterns(tree.append_child("Patterns")) {}

CSharedNames::~CSharedNames() { m_tree.remove_child(m_patterns); }

pugi::xml_attribute CSharedNames::AppendAttribute(pugi::xml_node element, std::size_t position, const char* name) {
    if (position >= m_byPosition.size()) {
        m_byPosition.resize(position + 1);
    }
    Place& place = m_byPosition[position];
    if (std::strcmp(place.pattern.name(), name) != 0) {
        place = {Pattern(name), ::ConcernsNamespaces(name)};
    }
    return place.pattern.empty() ? AppendNamedAttribute(element, name) : element.append_copy(place.pattern);
}

/// The pattern of a name, made on first use; empty when there is none.
pugi::xml_attribute CSharedNames::Pattern(const char* name) {
    const auto known = m_byName.find(name);
    if (known != m_byName.end()) {
        return known->second;
    }
    if (m_byName.size() == kMaxPatterns) {
        return {};
    }
    const std::string text = std::string("<Pattern ") + name + "=\"\"/>";
    m_patterns.append_buffer(text.data(), text.size(), pugi::parse_minimal, pugi::encoding_utf8);
    const pugi::xml_attribute pattern = m_patterns.last_child().first_attribute();
    if (std::strcmp(pattern.name(), name) == 0) {
        m_byName.emplace(pattern.name(), pattern);
        return pattern;
    }
    return {}; // no memory
}
