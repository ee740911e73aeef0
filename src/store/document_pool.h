// The open documents: one loaded copy of each, shared by reference count.

#pragma once

#include "cordelbox.h"

/// One open document in the pool owner's list, which keeps the order of first opens.
struct PoolNode {
    PoolNode* next;
    CXmlObject* document; // owned
};

/// Opens the document at that path relative to the host's folder, or adds a reference when it is open. Null when it
/// cannot be opened; it is then not in the list. When the DOM's load call itself fails, its DomError passes and the
/// pool stays locked, without the document.
CXmlObject* OpenDocument(PoolOwner* owner, const AnsiString& relativePath);

/// Drops one reference of the document, and the document with the last one. Returns 0, also when it is not open; 1
/// without a pool semaphore.
int32_t ReleaseDocument(PoolOwner* owner, const AnsiString& relativePath) noexcept;
