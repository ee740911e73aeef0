// The free space that a printer's volumes will have after the project was sent.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"

inline constexpr const char* kSendSpaceElement = "SendProject";

/// Adds a row for each record. What was recorded before is cleared first by whoever records anew.
CRowsAdded RecordSendSpace(CXmlObject* document, const SendSpaceRecord* records, int64_t count);
