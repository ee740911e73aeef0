// A printer's storage devices and their volumes.

#include "cordelbox.h"
#include "nodes/node_writers.h"
#include "store/current_document.h"

#include <string>

namespace {

/// VolumeNum stands on a device's first volume only.
void WriteVolume(const StorageRecord& storage, uint32_t index) {
    const VolumeRecord& volume = storage.volumes[index];
    CXmlQuery query("Storage", {});
    if (index == 0) {
        query.AddPair("VolumeNum", std::to_string(static_cast<int32_t>(storage.volumeCount)).c_str());
    }
    query.AddPair("StorageName", storage.name);
    query.AddPair("Volume", volume.volume);
    query.AddPair("TotalSpace", volume.totalSpace);
    query.AddPair("FreeSpace", volume.freeSpace);
    query.AddPair("Location", volume.location);
    query.AddPair("Label", volume.label);
    query.AddPair("Status", volume.status);
    WriteItem(&query);
}

} // namespace

uint32_t PrinterInfoProc(const PrinterInfo* info) noexcept {
    for (uint32_t storage = 0; info != nullptr && storage < info->storageCount; ++storage) {
        for (uint32_t volume = 0; volume < info->storages[storage].volumeCount; ++volume) {
            WriteVolume(info->storages[storage], volume);
        }
    }
    SaveCurrentDocument();
    return 1;
}
