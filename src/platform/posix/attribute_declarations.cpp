#include "attribute_declarations.h"

void CAttributeDeclarations::Add(std::string_view element, std::string_view attribute, bool bTokens,
                                 const char* defaultText) {
    Declarations& declarations = m_byElement[std::string(element)];
    const auto [place, bNew] = declarations.try_emplace(std::string(attribute));
    if (bNew) {
        place->second.bTokens = bTokens;
        place->second.bDefault = defaultText != nullptr;
        place->second.strDefault = defaultText != nullptr ? defaultText : "";
    }
}

const CAttributeDeclarations::Declarations& CAttributeDeclarations::Of(std::string_view element) const noexcept {
    static const Declarations kNone;
    const auto found = m_byElement.find(element);
    return found == m_byElement.end() ? kNone : found->second;
}

bool CAttributeDeclarations::CanHold(std::string_view element, std::string_view attribute,
                                     std::string_view text) const noexcept {
    if (m_byElement.empty()) {
        return true;
    }
    const Declarations& declarations = Of(element);
    const auto found = declarations.find(attribute);
    return found == declarations.end() || !found->second.bTokens || text.empty() ||
           (text.front() != ' ' && text.back() != ' ' && text.find("  ") == std::string_view::npos);
}
