// Whether two files ticked for sending would be stored under the same ID.
//
// The IDs of each group are joined into a text list, each followed by a comma, and looked for as its tokens: an empty
// ID never counts, and one that holds a comma counts as several.

#include "cordelbox.h"
#include "ids/clash_message.h"
#include "ids/file_list_names.h"
#include "platform/bounded_text.h"
#include "store/collected_values.h"
#include "store/module_state.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

AnsiString ReadOfTicked(const FileListNames& names, const AnsiString& fileId, const AnsiString& attribute,
                        bool& bFound) {
    CXmlQuery query(names.files, attribute);
    query.AddPair(names.fileId, fileId);
    query.AddPair(names.checked, names.ticked);
    bFound = ReadAttribute(State().currentDocument, &query) == 0;
    return query.FirstValue();
}

struct IdLists {
    std::string type2;
    std::string type8; // built and never checked: hosts rely on two such files with one ID passing
    std::string fonts;

    std::string* ListOf(const AnsiString& type) noexcept {
        if (type == "2") {
            return &type2;
        }
        if (type == "8") {
            return &type8;
        }
        return type == "1" || type == "5" ? &fonts : nullptr;
    }
};

IdLists ListTickedIds() {
    IdLists lists;
    const FileListNames names;
    for (const AnsiString& fileId : CCollectedValues(names.files, names.fileId)) {
        bool bTicked = false;
        const AnsiString type = ReadOfTicked(names, fileId, names.type, bTicked);
        std::string* const list = bTicked ? lists.ListOf(type) : nullptr;
        if (list != nullptr) {
            bool bHasId = false; // without one the file's own FileID stands in for it
            *list += ReadOfTicked(names, fileId, names.id, bHasId).c_str();
            *list += ',';
        }
    }
    return lists;
}

/// The first token of the list that occurs again behind it; empty when there is none.
std::string_view FindRepeated(std::string_view list) {
    std::vector<std::string_view> tokens;
    std::unordered_map<std::string_view, std::size_t> counts;
    for (std::size_t end = 0; (end = list.find(',')) != std::string_view::npos; list.remove_prefix(end + 1)) {
        if (end != 0) {
            tokens.push_back(list.substr(0, end));
            ++counts[tokens.back()];
        }
    }
    for (const std::string_view token : tokens) {
        if (counts[token] > 1) {
            return token;
        }
    }
    return {};
}

bool ReportRepeated(std::string_view list, AnsiString (*kindName)(), const MessageWindows* windows) {
    const std::string_view id = FindRepeated(list);
    if (id.empty()) {
        return false;
    }
    ShowClash(windows, FormatClash(ClashTemplate().c_str(), kindName().c_str(), platform::LenientInteger(id)));
    return true;
}

AnsiString Type2KindName() { return KindName("2"); }

} // namespace

int32_t IdsAreValid(MessageWindows* windows) noexcept {
    const IdLists lists = ListTickedIds();
    const bool bClash =
        ReportRepeated(lists.type2, Type2KindName, windows) || ReportRepeated(lists.fonts, FontKindName, windows);
    return bClash ? 0 : 1;
}
