#include "storage/storage_devices.h"

#include "nodes/node_writers.h"
#include "store/module_state.h"

#include <string>

namespace {

COutcome RecordVolume(CXmlObject* document, const StorageRecord& storage, uint32_t index) {
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
    COutcome outcome;
    WriteItem(document, &query, &outcome);
    return outcome;
}

} // namespace

CRowsAdded RecordVolumes(CXmlObject* document, const PrinterInfo& info) {
    CRowsAdded rows;
    for (uint32_t storage = 0; storage < info.storageCount; ++storage) {
        for (uint32_t volume = 0; volume < info.storages[storage].volumeCount; ++volume) {
            rows.Note(RecordVolume(document, info.storages[storage], volume));
        }
    }
    return rows;
}

uint32_t PrinterInfoProc(const PrinterInfo* info) noexcept {
    if (info != nullptr) {
        RecordVolumes(State().currentDocument, *info);
    }
    SaveCurrentDocument();
    return 1;
}
