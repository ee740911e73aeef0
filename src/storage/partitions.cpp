// Partitions of a printer's disk and flash memory, recorded for the current and for the default layout.

#include "cordelbox.h"
#include "nodes/node_writers.h"
#include "platform/bounded_text.h"
#include "store/collected_values.h"
#include "store/current_document.h"

#include <string>

namespace {

constexpr std::size_t kNumberSize = 15;  // of the fields for "Image" and "Size", with the terminating zero
constexpr std::size_t kPercentSize = 10; // of the one for "Percent"
constexpr int64_t kBytesPerKib = 1024;

} // namespace

void WritePartition(const PartitionRecord* partition, uint32_t disk) noexcept {
    if (partition == nullptr) {
        return;
    }
    CXmlQuery query;
    query.AddPair("Image", platform::FormatForField(partition->image, "Image", kNumberSize));
    query.AddPair("Partition", partition->name);
    query.AddPair("Size", platform::FormatForField(partition->size / kBytesPerKib, "Size", kNumberSize));
    if (disk != 0) {
        query.AddPair("Percent", platform::FormatForField(partition->percent, "Percent", kPercentSize));
    }
    query.m_strElement = disk != 0 ? "CurrentDisk" : "CurrentFlash";
    WriteItem(&query);
    query.m_strElement = disk != 0 ? "DefaultDisk" : "DefaultFlash";
    WriteItem(&query);
    SaveCurrentDocument();
}

AnsiString GetDiskPercent() noexcept {
    std::string percents;
    for (const AnsiString& partition : CCollectedValues("CurrentDisk", "Partition")) {
        // Without a "Percent" the filtered read gives the partition's own name: hosts rely on it.
        percents += GetAttrValue1("CurrentDisk", "Partition", partition, "Percent").c_str();
        percents += ' ';
    }
    return AnsiString(percents.data(), percents.size());
}
