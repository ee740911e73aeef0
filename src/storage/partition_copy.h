// Carrying values from the current disk layout to the default one.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"

/// What happens to a value that the current layout lacks.
enum class MissingValue {
    TakesName, // it reads as the partition's name, which is then copied: hosts rely on it
    StaysOut   // it is not copied
};

struct PartitionCopy {
    std::uint32_t m_nCopied = 0;
    std::uint32_t m_nMissing = 0;  // values that the current layout lacks
    std::uint32_t m_nNoTarget = 0; // values that the default layout has no place for
};

/// Copies "Percent" and "Size" of every partition of the current layout.
PartitionCopy CopyPartitionShares(CXmlObject* document, MissingValue missing);

/// Copies "Image" of the partition that "CurrentChosePartition" names.
PartitionCopy CopyChosenImage(CXmlObject* document, MissingValue missing);
