#include "plain_lookups.h"

#include <algorithm>
#include <cstring>

namespace {

bool IsEqual(const char* left, const char* right) { return std::strcmp(left, right) == 0; }

} // namespace

CPlainLookups::CPlainLookups(const std::string& project) {
    m_document.load_buffer(project.data(), project.size());
    m_files = m_document.document_element().child("Files");
}

/// The attribute `wanted` of the first file that passes the filter, or null.
const char* CPlainLookups::Find(std::span<const Pair> filter, const char* wanted) const {
    for (const pugi::xml_node file : m_files) {
        std::size_t hits = 0;
        for (const pugi::xml_attribute attribute : file.attributes()) {
            hits += std::any_of(filter.begin(), filter.end(), [&](const Pair& pair) {
                return IsEqual(pair.name, attribute.name()) && IsEqual(pair.value, attribute.value());
            });
            if (hits == filter.size()) {
                break;
            }
        }
        const pugi::xml_attribute found = hits == filter.size() ? file.attribute(wanted) : pugi::xml_attribute();
        if (!found.empty()) {
            return found.value();
        }
    }
    return nullptr;
}

int CPlainLookups::CheckId() const {
    const char* const edited =
        m_document.document_element().child("Property").first_child().attribute("FileID").value();
    const Pair editedFile[] = {{"FileID", edited}};
    const char* const id = Find(editedFile, "ID");
    int users = 0;
    for (const pugi::xml_node file : m_files) {
        for (const char* const type : {"1", "5"}) {
            const Pair filter[] = {{"FileID", file.attribute("FileID").value()}, {"ID", id}, {"Type", type}};
            users += Find(filter, "LocalPath") != nullptr ? 1 : 0;
        }
    }
    return users;
}

int CPlainLookups::IdsAreValid() const {
    int ticked = 0;
    for (const pugi::xml_node file : m_files) {
        const Pair filter[] = {{"FileID", file.attribute("FileID").value()}, {"checked", "1"}};
        ticked += Find(filter, "Type") != nullptr && Find(filter, "ID") != nullptr ? 1 : 0;
    }
    return ticked;
}
