// A printer's storage devices and their volumes.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"

/// Adds a row for each volume of each device. "VolumeNum" stands on a device's first volume only.
CRowsAdded RecordVolumes(CXmlObject* document, const PrinterInfo& info);
