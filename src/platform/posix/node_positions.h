// Where the nodes of a tree stood in the text that they were read from.

#pragma once

#include "platform/dom.h"

#include <string_view>
#include <unordered_map>
#include <vector>

class CNodePositions {
public:
    void Note(pugi::xml_node node, DomPosition position);

    /// `markup` is the element's start tag as it stands in the text. Inside an entity it is the reference, and the
    /// attributes are where the element is.
    void NoteElement(pugi::xml_node element, DomPosition position, std::string_view markup);

    void Forget(pugi::xml_node node) noexcept;

    DomPosition Of(pugi::xml_node node) const noexcept;
    DomPosition OfAttribute(pugi::xml_node element, std::size_t index) const noexcept;

private:
    /// Of the node itself, then of its attributes.
    std::unordered_map<pugi::xml_node_struct*, std::vector<DomPosition>> m_positions;
};
