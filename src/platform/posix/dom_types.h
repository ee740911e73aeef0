// The DOM's basic types over pugixml: handles and texts that borrow from the tree.

#pragma once

#include <pugixml.hpp>

#include <cstdint>
#include <string_view>

using DomChar = char;

using DomNode = pugi::xml_node;

class DomText {
public:
    DomText() = default;
    explicit DomText(std::string_view text) noexcept
        : m_pText(text.data()), m_nLength(static_cast<std::uint32_t>(text.size())) {}
    std::string_view View() const noexcept { return {m_pText, m_nLength}; }

private:
    const char* m_pText = "";
    std::uint32_t m_nLength = 0; // documents are far smaller than 4 GiB
};
