#include "storage/send_space.h"

#include "nodes/node_writers.h"
#include "store/module_state.h"

CRowsAdded RecordSendSpace(CXmlObject* document, const SendSpaceRecord* records, int64_t count) {
    CRowsAdded rows;
    for (int64_t index = 0; index < count; ++index) {
        CXmlQuery query(kSendSpaceElement, {});
        query.AddPair("Volume", records[index].volume);
        query.AddPair("FilesSize", records[index].filesSize);
        query.AddPair("FreeSpace", records[index].freeSpace);
        query.AddPair("FreeSpaceAfterSend", records[index].freeSpaceAfterSend);
        COutcome outcome;
        WriteItem(document, &query, &outcome);
        rows.Note(std::move(outcome));
    }
    return rows;
}

uint32_t WriteFreeVolume(const SendSpaceRecord* records, int64_t count) noexcept {
    DelAllElem(kSendSpaceElement); // with a save of its own: hosts rely on it
    RecordSendSpace(State().currentDocument, records, records != nullptr ? count : 0);
    SaveCurrentDocument();
    return 1;
}
