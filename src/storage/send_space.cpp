// The free space that a printer's volumes will have after the project was sent.

#include "cordelbox.h"
#include "nodes/node_writers.h"
#include "store/current_document.h"

uint32_t WriteFreeVolume(const SendSpaceRecord* records, int64_t count) noexcept {
    DelAllElem("SendProject");
    for (int64_t index = 0; records != nullptr && index < count; ++index) {
        CXmlQuery query("SendProject", {});
        query.AddPair("Volume", records[index].volume);
        query.AddPair("FilesSize", records[index].filesSize);
        query.AddPair("FreeSpace", records[index].freeSpace);
        query.AddPair("FreeSpaceAfterSend", records[index].freeSpaceAfterSend);
        WriteItem(&query);
    }
    SaveCurrentDocument();
    return 1;
}
