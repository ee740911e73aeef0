// Whether the file being edited shares its ID with another one of its group.

#include "cordelbox.h"
#include "ids/clash_message.h"
#include "ids/file_list_names.h"
#include "platform/bounded_text.h"
#include "store/collected_values.h"
#include "store/module_state.h"

#include <span>
#include <string>
#include <vector>

namespace {

enum Kind : int32_t { kFonts = 0, kType2 = 1, kType8 = 2 };

struct Group {
    Kind kind;
    std::span<const char* const> types;
};

constexpr const char* kType2Only[] = {"2"};
constexpr const char* kType8Only[] = {"8"};
constexpr const char* kFontTypes[] = {"1", "5"};

/// The group of files that a Type belongs to; null for a Type that is not checked.
const Group* FindGroup(const AnsiString& type) noexcept {
    static constexpr Group groups[] = {{kType2, kType2Only}, {kType8, kType8Only}, {kFonts, kFontTypes}};
    for (const Group& group : groups) {
        for (const char* const member : group.types) {
            if (type == member) {
                return &group;
            }
        }
    }
    return nullptr;
}

/// Number of the files of a group that have this ID.
int32_t CountUsers(const Group& group, const AnsiString& id) {
    const FileListNames names;
    const std::vector<AnsiString> types(group.types.begin(), group.types.end());
    int32_t users = 0;
    for (const AnsiString& fileId : CCollectedValues(names.files, names.fileId)) {
        for (const AnsiString& type : types) {
            CXmlQuery query(names.files, names.localPath);
            query.AddPair(names.fileId, fileId);
            query.AddPair(names.id, id);
            query.AddPair(names.type, type);
            users += ReadAttribute(State().currentDocument, &query) == 0 ? 1 : 0;
        }
    }
    return users;
}

} // namespace

int32_t CheckID(int32_t* id, int32_t* kind, MessageWindows* windows) noexcept {
    const AnsiString editedFile = GetAttrValue("Property", "FileID");
    const AnsiString editedType = GetAttrValue1("Files", "FileID", editedFile, "Type");
    const AnsiString editedId = GetAttrValue1("Files", "FileID", editedFile, "ID");
    const int32_t number = platform::LenientInteger(editedId.c_str());
    if (id != nullptr) {
        *id = number;
    }
    const Group* const group = FindGroup(editedType);
    if (group == nullptr) {
        return 1;
    }
    const int32_t users = CountUsers(*group, editedId); // the edited file among them
    if (kind != nullptr) {
        *kind = group->kind;
    }
    if (users <= 1) {
        return 1;
    }
    const AnsiString kindName = group->kind == kFonts ? FontKindName() : KindName(group->types[0]);
    ShowClash(windows, FillPlaceholders(ClashTemplate().c_str(), kindName.c_str(), std::to_string(number)));
    return 0;
}
