#include "node_positions.h"

namespace {

constexpr std::string_view kWhite = " \t\r\n";

/// Moves over a part of the text.
void Advance(DomPosition& position, std::string_view text) noexcept {
    for (std::size_t index = 0; index < text.size(); ++index) {
        const bool bLineEnd =
            text[index] == '\n' || (text[index] == '\r' && (index + 1 == text.size() || text[index + 1] != '\n'));
        if (bLineEnd) {
            ++position.line;
            position.column = 1;
        } else if ((static_cast<unsigned char>(text[index]) & 0xC0u) != 0x80u) { // not inside a character
            ++position.column;
        }
    }
}

} // namespace

void CNodePositions::Note(pugi::xml_node node, DomPosition position) {
    m_positions[node.internal_object()].push_back(position);
}

void CNodePositions::NoteElement(pugi::xml_node element, DomPosition position, std::string_view markup) {
    std::vector<DomPosition>& positions = m_positions[element.internal_object()];
    positions.push_back(position);
    std::size_t from = 0;
    std::size_t name = markup.find_first_of(kWhite);
    while ((name = markup.find_first_not_of(kWhite, name)) != std::string_view::npos && markup[name] != '>' &&
           markup[name] != '/') {
        Advance(position, markup.substr(from, name - from));
        positions.push_back(position);
        from = name;
        const std::size_t quote = markup.find_first_of("\"'", name);
        name = markup.find(markup[quote], quote + 1) + 1;
    }
}

void CNodePositions::Forget(pugi::xml_node node) noexcept { m_positions.erase(node.internal_object()); }

DomPosition CNodePositions::Of(pugi::xml_node node) const noexcept {
    const auto found = m_positions.find(node.internal_object());
    return found != m_positions.end() ? found->second.front() : DomPosition();
}

DomPosition CNodePositions::OfAttribute(pugi::xml_node element, std::size_t index) const noexcept {
    const auto found = m_positions.find(element.internal_object());
    if (found == m_positions.end()) {
        return {};
    }
    // An attribute that the element has by a declaration only is where the element is.
    return index + 1 < found->second.size() ? found->second[index + 1] : found->second.front();
}
