// Reads a document with Expat into a pugixml tree.

#pragma once

#include "attribute_declarations.h"
#include "node_positions.h"
#include "platform/reason.h"

#include <pugixml.hpp>

#include <cstddef>
#include <optional>
#include <string_view>

/// Entity expansion may multiply a document by this much once its expanded text exceeds the threshold in bytes. Inside
/// the document type declaration, which no change to the document makes smaller, it may not go beyond the threshold.
inline constexpr float kMaxEntityAmplification = 100.0F;
inline constexpr unsigned long long kEntityExpansionThreshold = 8ULL << 20;

/// A document as it was read.
struct BuiltDocument {
    pugi::xml_document m_tree;
    CAttributeDeclarations m_declarations;
    std::size_t m_nDefaultBytes = 0;           // of attributes that the elements have by default only
    std::optional<CNodePositions> m_positions; // noted by the build where they are wanted
};

/// Fills the empty `document` from UTF-8: everything but text that is only white space. False when the text is
/// malformed or beyond a limit; `reason`, where one is wanted, says what is wrong and where. Throws std::bad_alloc.
bool BuildTree(std::string_view text, BuiltDocument& document, CReason* reason = nullptr);
