// Reads a document with Expat into a pugixml tree.

#pragma once

#include "platform/reason.h"

#include <pugixml.hpp>

class CDocumentSource;

/// Entity expansion may multiply a document by this much once its expanded text exceeds the threshold in bytes.
inline constexpr float kMaxEntityAmplification = 100.0F;
inline constexpr unsigned long long kEntityExpansionThreshold = 8ULL << 20;

/// Fills the empty `tree` from `source`: everything but text that is only white space. False when the document is
/// malformed or beyond a limit; `reason`, where one is wanted, says what is wrong and where. Throws std::bad_alloc.
bool BuildTree(const CDocumentSource& source, pugi::xml_document& tree, CReason* reason = nullptr);
