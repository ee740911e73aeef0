// The IDs of each kind are joined into a text list, each followed by a comma, and looked for as its tokens: an empty ID
// never counts, and one that holds a comma counts as several.

#include "ids/id_validation.h"

#include "ids/clash_message.h"
#include "ids/file_list_names.h"
#include "platform/bounded_text.h"
#include "platform/text_hash.h"
#include "store/collected_values.h"
#include "store/module_state.h"

#include <array>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace {

AnsiString ReadOfTicked(CXmlObject* document, const FileListNames& names, const AnsiString& fileId,
                        const AnsiString& attribute, bool& bFound) {
    CXmlQuery query(names.files, attribute);
    query.AddPair(names.fileId, fileId);
    query.AddPair(names.checked, names.ticked);
    bFound = ReadAttribute(document, &query) == 0;
    return query.FirstValue();
}

using IdLists = std::array<std::string, 3>; // by kind

std::string& ListOf(IdLists& lists, FileKind kind) noexcept { return lists[static_cast<std::size_t>(kind)]; }

IdLists ListTickedIds(CXmlObject* document) {
    IdLists lists;
    const FileListNames names;
    for (const AnsiString& fileId : CCollectedValues(document, names.files, names.fileId)) {
        bool bTicked = false;
        const AnsiString type = ReadOfTicked(document, names, fileId, names.type, bTicked);
        const FileKind* const kind = bTicked ? KindOfType(type) : nullptr;
        if (kind != nullptr) {
            bool bHasId = false; // without one the file's own FileID stands in for it
            ListOf(lists, *kind) += ReadOfTicked(document, names, fileId, names.id, bHasId).c_str();
            ListOf(lists, *kind) += ',';
        }
    }
    return lists;
}

/// The first token of the list that occurs again behind it; empty when there is none.
std::string_view FindRepeated(std::string_view list) {
    std::vector<std::string_view> tokens;
    std::unordered_map<std::string_view, std::size_t, TextHash<char>> counts;
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

} // namespace

std::optional<IdClash> FindTickedClash(CXmlObject* document) {
    IdLists lists = ListTickedIds(document);
    for (const FileKind kind : {FileKind::Type2, FileKind::Fonts}) {
        const std::string_view id = FindRepeated(ListOf(lists, kind));
        if (!id.empty()) {
            return IdClash{kind, std::string(id)};
        }
    }
    return std::nullopt;
}

int32_t IdsAreValid(MessageWindows* windows) noexcept {
    const std::optional<IdClash> clash = FindTickedClash(State().currentDocument);
    if (!clash.has_value()) {
        return 1;
    }
    CXmlObject* const strings = State().stringsDocument;
    ShowClash(strings, windows,
              FormatClash(ClashTemplate(strings).c_str(), KindName(strings, clash->m_kind).c_str(),
                          platform::LenientInteger(clash->m_strId)));
    return 0;
}
