// Carrying values from the current disk layout to the default one.

#include "cordelbox.h"
#include "nodes/node_writers.h"
#include "store/collected_values.h"
#include "store/current_document.h"

namespace {

/// A value that the current layout lacks reads as the partition's name, which is then copied: hosts rely on it.
void CopyToDefault(const AnsiString& partition, const char* attribute) {
    CXmlQuery query("DefaultDisk", attribute, GetAttrValue1("CurrentDisk", "Partition", partition, attribute));
    query.AddPair("Partition", partition);
    WriteAttribute(&query);
}

} // namespace

void CopyPatition(int32_t mode) noexcept {
    if (mode != 0) {
        for (const AnsiString& partition : CCollectedValues("CurrentDisk", "Partition")) {
            CopyToDefault(partition, "Percent");
            CopyToDefault(partition, "Size");
        }
    } else {
        CopyToDefault(GetAttrValue("CurrentChosePartition", "Name"), "Image");
    }
    SaveCurrentDocument();
}
