// Load and save of a document: which of its two files, and what a failure leaves.

#pragma once

#include "cordelbox.h"

struct CXmlObject;

/// Loads the document at `document.m_strPath`: the per-user copy when it is present and writable, else the installed
/// one. Returns 0, or 1 and has then loaded nothing. A per-user copy that is malformed fails; the installed document
/// does not step in for it. Throws DomError when the DOM's load call itself fails. The caller holds the document's
/// lock.
int32_t LoadDocument(CXmlObject& document);

/// Saves the document over its per-user copy, wherever it was loaded from. Returns 0, or 1 when there is no such copy
/// that can be written, or writing failed. The caller holds the document's lock.
int32_t SaveDocument(CXmlObject& document) noexcept;
