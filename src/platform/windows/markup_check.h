// What a DOM may take although it is no document, found in the bytes themselves.

#pragma once

#include "platform/reason.h"

#include <string_view>

struct MarkupFindings {
    const char* m_pFault = nullptr;            // null, or what is wrong with the document: a literal
    ReasonKind m_kind = ReasonKind::Malformed; // of the fault
    bool m_bDeclaresAttributes = false;        // the document type declaration says something of attributes
};

/// Looks through a document that a DOM has loaded, for names that break the rules of namespaces and for references in
/// attributes that vanish since what they refer to is not read. Whether the text is well-formed is for the DOM to say:
/// of one that is not, nothing is found. Throws std::bad_alloc.
MarkupFindings CheckMarkup(std::string_view bytes);
