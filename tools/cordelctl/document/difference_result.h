// The differences between two documents as a verb's result.

#pragma once

#include "document/record_diff.h"
#include "result.h"

#include <vector>

/// Data: one record for each change, with "container", "change", "item" and "values".
Result DifferenceResult(const std::vector<RecordChange>& changes);
