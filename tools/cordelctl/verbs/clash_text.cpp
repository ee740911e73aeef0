// Whether a file shares its ID, and what the user is told of it.

#include "verbs/clash_text.h"

#include "failure.h"
#include "ids/clash_message.h"

namespace {

std::string Text(const AnsiString& text) { return {text.c_str(), text.size()}; }

} // namespace

IdCheck CheckID(CDocument& document, const std::string& fileID) {
    const auto rows = document.RowsWhere("Files", {{"FileID", fileID}});
    if (rows.empty()) {
        throw CFailure(ExitCode::Missing, "no listed file has the FileID \"" + fileID + "\"");
    }
    IdCheck check;
    check.fileID = fileID;
    check.id = rows.front().Value("ID");
    if (const FileKind* const kind = KindOfType(AnsiString(rows.front().Value("Type").c_str()))) {
        check.kind = *kind;
        std::size_t users = 0;
        for (const char* const type : TypesOfKind(*kind)) {
            users += document.RowsWhere("Files", {{"ID", check.id}, {"Type", type}}).size();
        }
        check.clash = users > 1;
    }
    return check;
}

const char* GroupName(const std::optional<FileKind>& kind) {
    return !kind ? "none" : *kind == FileKind::Fonts ? "fonts" : *kind == FileKind::Type2 ? "macros" : "overlays";
}

std::string ClashText(Context& context, FileKind kind, const std::string& id) {
    CXmlObject* const strings = context.Strings().Object();
    const std::string name = Text(KindName(strings, kind));
    const std::string text = FillPlaceholders(Text(ClashTemplate(strings)), name, id);
    return host::FromCodePage(text.empty() ? "two files of the kind " + name + " have the ID " + id : text);
}
