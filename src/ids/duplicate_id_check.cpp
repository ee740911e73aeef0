#include "ids/duplicate_id_check.h"

#include "ids/clash_message.h"
#include "ids/file_list_names.h"
#include "nodes/attribute_values.h"
#include "platform/bounded_text.h"
#include "store/collected_values.h"
#include "store/module_state.h"

#include <string>
#include <vector>

namespace {

/// Number of the files of a kind that have this ID.
int32_t CountUsers(CXmlObject* document, FileKind kind, const AnsiString& id) {
    const FileListNames names;
    const auto members = TypesOfKind(kind);
    const std::vector<AnsiString> types(members.begin(), members.end());
    int32_t users = 0;
    for (const AnsiString& fileId : CCollectedValues(document, names.files, names.fileId)) {
        for (const AnsiString& type : types) {
            CXmlQuery query(names.files, names.localPath);
            query.AddPair(names.fileId, fileId);
            query.AddPair(names.id, id);
            query.AddPair(names.type, type);
            users += ReadAttribute(document, &query) == 0 ? 1 : 0;
        }
    }
    return users;
}

} // namespace

EditedIdCheck CheckEditedId(CXmlObject* document) {
    EditedIdCheck check;
    const AnsiString editedFile = ReadValue(document, "Property", "FileID");
    const AnsiString type = ReadFilteredValue(document, "Files", "FileID", editedFile, "Type");
    check.m_strId = ReadFilteredValue(document, "Files", "FileID", editedFile, "ID");
    check.m_nId = platform::LenientInteger(check.m_strId.c_str());
    const FileKind* const kind = KindOfType(type);
    if (kind != nullptr) {
        check.m_kind = *kind;
        check.m_nUsers = CountUsers(document, *kind, check.m_strId);
    }
    return check;
}

int32_t CheckID(int32_t* id, int32_t* kind, MessageWindows* windows) noexcept {
    const EditedIdCheck check = CheckEditedId(State().currentDocument);
    if (id != nullptr) {
        *id = check.m_nId;
    }
    if (kind != nullptr && check.m_kind.has_value()) {
        *kind = static_cast<int32_t>(*check.m_kind);
    }
    if (!check.IsClash()) {
        return 1;
    }
    CXmlObject* const strings = State().stringsDocument;
    const AnsiString kindName = KindName(strings, *check.m_kind);
    ShowClash(strings, windows,
              FillPlaceholders(ClashTemplate(strings).c_str(), kindName.c_str(), std::to_string(check.m_nId)));
    return 0;
}
