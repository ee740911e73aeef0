// Partitions of a printer's disk and flash memory, recorded for the current and for the default layout.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"

#include <cstddef>

enum class Medium { Flash, Disk };

/// What came of recording a partition.
struct PartitionRecorded {
    COutcome m_current; // in the current layout
    COutcome m_default; // in the default one

    /// The number that is too long for the format; null when all fit. Nothing was recorded then.
    const char* m_pTooLong = nullptr;
    std::size_t m_nLength = 0;
    std::size_t m_nRoom = 0; // with the terminating zero
};

/// Adds a partition to both layouts of a medium. Its size is recorded in KiB, its percent for disks only.
PartitionRecorded RecordPartition(CXmlObject* document, const PartitionRecord& partition, Medium medium);

/// "Percent" of every partition of the current disk layout, each followed by a blank. A partition without one gives its
/// name: hosts rely on it.
AnsiString ListPercents(CXmlObject* document);
