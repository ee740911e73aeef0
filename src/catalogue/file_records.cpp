// The ticked files of a project as a chain of records.
//
// A file's attributes are taken by position: "FileID" is found by its name, and the nine that follow it are what
// WritePrjFile writes behind it, "checked" the last.

#include "cordelbox.h"
#include "store/module_state.h"
#include "store/node_readers.h"
#include "store/record_fields.h"

namespace {

constexpr int32_t kFileAttributes = 10;

/// Takes a file's ten attributes and moves behind them. True when the file is ticked.
bool TakeFile(CXmlAttribute& attributes, FileItem& file) {
    TakeField(attributes, file.FileID, "FileID");
    TakeField(attributes, file.Component, "Component");
    TakeField(attributes, file.ID, "ID");
    TakeField(attributes, file.Type, "Type");
    TakeField(attributes, file.Volume, "Volume");
    TakeField(attributes, file.Path, "Path");
    TakeField(attributes, file.LocalPath, "LocalPath");
    attributes.MoveNext(); // "Size"
    attributes.MoveNext(); // "CreateDate"
    const bool bTicked = attributes.GetValue() == "1";
    attributes.MoveNext();
    return bTicked;
}

} // namespace

int32_t GetFiles(FileItem* first) noexcept {
    if (first == nullptr) {
        return 0;
    }
    CXmlQuery query("Files", {});
    ListAllAttributes(State().currentDocument, &query);
    query.m_attrs.Rewind();

    // A file that is not ticked is overwritten by the next one; behind a ticked one a spare record is ready.
    FileItem* target = first;
    FileItem* lastTicked = nullptr;
    int32_t count = 0;
    const AnsiString fileId("FileID");
    for (int32_t index = 0; index < query.m_nCount;) {
        if (query.m_attrs.GetName() != fileId) {
            query.m_attrs.MoveNext();
            ++index;
            continue;
        }
        index += kFileAttributes;
        if (TakeFile(query.m_attrs, *target)) {
            lastTicked = target;
            target = target->next = new FileItem{};
            ++count;
        }
    }
    if (lastTicked != nullptr) {
        delete target;
        lastTicked->next = nullptr;
    }
    return count;
}

void FreeFileItem(FileItem* item) noexcept {
    if (item != nullptr) {
        delete item->next;
    }
}
