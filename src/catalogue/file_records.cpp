#include "catalogue/file_records.h"

#include "store/module_state.h"
#include "store/record_fields.h"

CProjectFiles::CProjectFiles(CXmlObject* document) : m_query("Files", {}) {
    ListAllAttributes(document, &m_query, &m_outcome);
    m_query.m_attrs.Rewind();
}

bool CProjectFiles::Next(ProjectFile& file) {
    CXmlAttribute& attributes = m_query.m_attrs;
    while (attributes.Index() < m_query.m_nCount && attributes.GetName() != "FileID") {
        attributes.MoveNext();
    }
    if (attributes.Index() >= m_query.m_nCount) {
        return false;
    }
    file.fileId = attributes.TakeValue();
    file.component = attributes.TakeValue();
    file.id = attributes.TakeValue();
    file.type = attributes.TakeValue();
    file.volume = attributes.TakeValue();
    file.path = attributes.TakeValue();
    file.localPath = attributes.TakeValue();
    file.size = attributes.TakeValue();
    file.createDate = attributes.TakeValue();
    file.checked = attributes.TakeValue();
    return true;
}

namespace {

void FillRecord(FileItem& record, const ProjectFile& file) noexcept {
    SetField(record.FileID, file.fileId, "FileID");
    SetField(record.Component, file.component, "Component");
    SetField(record.ID, file.id, "ID");
    SetField(record.Type, file.type, "Type");
    SetField(record.Volume, file.volume, "Volume");
    SetField(record.Path, file.path, "Path");
    SetField(record.LocalPath, file.localPath, "LocalPath");
}

} // namespace

int32_t GetFiles(FileItem* first) noexcept {
    if (first == nullptr) {
        return 0;
    }
    // A file that is not ticked is overwritten by the next one; behind a ticked one a spare record is ready.
    CProjectFiles files(State().currentDocument);
    ProjectFile file;
    FileItem* target = first;
    FileItem* lastTicked = nullptr;
    int32_t count = 0;
    while (files.Next(file)) {
        FillRecord(*target, file);
        if (file.IsTicked()) {
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
