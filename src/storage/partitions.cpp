#include "storage/partitions.h"

#include "nodes/attribute_values.h"
#include "nodes/node_writers.h"
#include "platform/bounded_text.h"
#include "store/collected_values.h"
#include "store/module_state.h"

#include <string>

namespace {

constexpr std::size_t kNumberSize = 15;  // of the fields for "Image" and "Size", with the terminating zero
constexpr std::size_t kPercentSize = 10; // of the one for "Percent"
constexpr int64_t kBytesPerKib = 1024;

/// Adds a number that has a field of `size` bytes; notes the first that does not fit its own.
void AddNumber(CXmlQuery& query, PartitionRecorded& recorded, const char* name, int64_t number, std::size_t size) {
    const std::string text = std::to_string(number);
    if (text.size() >= size && recorded.m_pTooLong == nullptr) {
        recorded.m_pTooLong = name;
        recorded.m_nLength = text.size();
        recorded.m_nRoom = size;
    }
    query.AddPair(name, text.c_str());
}

} // namespace

PartitionRecorded RecordPartition(CXmlObject* document, const PartitionRecord& partition, Medium medium) {
    const bool bDisk = medium == Medium::Disk;
    PartitionRecorded recorded;
    CXmlQuery query;
    AddNumber(query, recorded, "Image", partition.image, kNumberSize);
    query.AddPair("Partition", partition.name);
    AddNumber(query, recorded, "Size", partition.size / kBytesPerKib, kNumberSize);
    if (bDisk) {
        AddNumber(query, recorded, "Percent", partition.percent, kPercentSize);
    }
    if (recorded.m_pTooLong == nullptr) {
        query.m_strElement = bDisk ? "CurrentDisk" : "CurrentFlash";
        WriteItem(document, &query, &recorded.m_current);
        query.m_strElement = bDisk ? "DefaultDisk" : "DefaultFlash";
        WriteItem(document, &query, &recorded.m_default);
    }
    return recorded;
}

AnsiString ListPercents(CXmlObject* document) {
    std::string percents;
    for (const AnsiString& partition : CCollectedValues(document, "CurrentDisk", "Partition")) {
        percents += ReadFilteredValue(document, "CurrentDisk", "Partition", partition, "Percent").c_str();
        percents += ' ';
    }
    return AnsiString(percents.data(), percents.size());
}

void WritePartition(const PartitionRecord* partition, uint32_t disk) noexcept {
    if (partition == nullptr) {
        return;
    }
    const PartitionRecorded recorded =
        RecordPartition(State().currentDocument, *partition, disk != 0 ? Medium::Disk : Medium::Flash);
    if (recorded.m_pTooLong != nullptr) {
        platform::StopForField(recorded.m_pTooLong, recorded.m_nLength, recorded.m_nRoom);
    }
    SaveCurrentDocument();
}

AnsiString GetDiskPercent() noexcept { return ListPercents(State().currentDocument); }
