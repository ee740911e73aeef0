#include "storage/partition_copy.h"

#include "nodes/attribute_values.h"
#include "nodes/node_writers.h"
#include "store/collected_values.h"
#include "store/module_state.h"

namespace {

void CopyToDefault(CXmlObject* document, const AnsiString& partition, const char* attribute, MissingValue missing,
                   PartitionCopy& copy) {
    CXmlQuery current("CurrentDisk", attribute);
    current.AddPair("Partition", partition);
    if (ReadAttribute(document, &current) != 0) {
        ++copy.m_nMissing;
        if (missing == MissingValue::StaysOut) {
            return;
        }
    }
    CXmlQuery target("DefaultDisk", attribute, current.FirstValue());
    target.AddPair("Partition", partition);
    ++(WriteAttribute(document, &target) == 0 ? copy.m_nCopied : copy.m_nNoTarget);
}

} // namespace

PartitionCopy CopyPartitionShares(CXmlObject* document, MissingValue missing) {
    PartitionCopy copy;
    for (const AnsiString& partition : CCollectedValues(document, "CurrentDisk", "Partition")) {
        CopyToDefault(document, partition, "Percent", missing, copy);
        CopyToDefault(document, partition, "Size", missing, copy);
    }
    return copy;
}

PartitionCopy CopyChosenImage(CXmlObject* document, MissingValue missing) {
    PartitionCopy copy;
    CopyToDefault(document, ReadValue(document, "CurrentChosePartition", "Name"), "Image", missing, copy);
    return copy;
}

void CopyPatition(int32_t mode) noexcept {
    if (mode != 0) {
        CopyPartitionShares(State().currentDocument, MissingValue::TakesName);
    } else {
        CopyChosenImage(State().currentDocument, MissingValue::TakesName);
    }
    SaveCurrentDocument();
}
