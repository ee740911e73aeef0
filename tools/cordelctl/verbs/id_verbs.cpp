// id: the numbers under which a printer stores files.

#include "failure.h"
#include "ids/id_validation.h"
#include "records/file_numbers.h"
#include "verbs/clash_text.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <filesystem>
#include <map>

namespace {

/// The FileID of the file that the user names, or that is being edited.
std::string EditedFile(Context& context, CDocument& document) {
    if (!context.Has("FILE")) {
        std::string edited = document.FirstValue("Property", "FileID").value_or("");
        if (edited.empty()) {
            throw CFailure(ExitCode::Missing, "no file is being edited", "name one: cordelctl id check FILE");
        }
        return edited;
    }
    std::string name = context.Text("FILE");
    if (!document.RowsWhere("Files", {{"FileID", name}}).empty()) {
        return name;
    }
    std::error_code none;
    const auto path = std::filesystem::weakly_canonical(host::PathOf(name), none);
    const auto rows = document.RowsWhere("Files", {{"LocalPath", host::TextOf(path)}});
    if (name.empty() || rows.empty()) {
        throw CFailure(ExitCode::Missing, "no listed file has the FileID or the path \"" + name + "\"",
                       "see what is listed: cordelctl files list");
    }
    return rows.front().Value("FileID");
}

Result Check(Context& context) {
    CDocument& document = context.Document();
    RequireSound(document, "Files");
    const IdCheck check = CheckID(document, EditedFile(context, document));
    Result result;
    result.shape = Result::Shape::Record;
    result.data = Value::Record{
        {"file", check.fileID}, {"id", check.id}, {"group", GroupName(check.kind)}, {"clash", check.clash}};
    if (check.clash) {
        result.notes.push_back(ClashText(context, check));
        result.status = ExitCode::No;
    }
    return result;
}

Result Validate(Context& context) {
    CDocument& document = context.Document();
    RequireSound(document, "Files");
    const auto clash = FindTickedClash(document.Object());
    Result result;
    result.shape = Result::Shape::Record;
    result.data =
        Value::Record{{"ticked", document.RowsWhere("Files", {{"checked", "1"}}).size()}, {"clash", clash.has_value()}};
    if (clash) {
        result.notes.push_back(ClashText(context, clash->m_kind, clash->m_strId));
        result.status = ExitCode::No;
    }
    return result;
}

struct Group {
    const char* type;
    const char* profileType;
};

Result Next(Context& context) {
    static const std::map<std::string, Group> groups{{"font", {"5", ""}},     {"macro", {"2", ""}},
                                                     {"overlay", {"8", ""}},  {"rgb", {"6", "0"}},
                                                     {"printer", {"6", "2"}}, {"linked", {"6", "3"}}};
    CDocument& document = context.Document();
    RequireSound(document, "Files");
    const Group& group = groups.at(context.Text("GROUP"));
    Result result;
    result.shape = Result::Shape::Plain;
    result.data = Value::Number{CFreeNumbers(document).TakeID(group.type, group.profileType)};
    return result;
}

} // namespace

std::vector<Verb> IdVerbs() {
    return {
        {"id check",
         "See whether a file has its ID for itself in its group; with a clash, the exit status is 1",
         Effect::Reads,
         &Check,
         {{Option::Kind::Operand, "FILE", "", "FileID or path of the file; without, the one that is being edited",
           false, Offer::FileKeys}}},
        {"id validate",
         "See whether the ticked files have different IDs, as hosts check it before sending; with a clash, "
         "the exit status is 1",
         Effect::Reads, &Validate},
        {"id next",
         "Print the lowest free ID, or slot for a colour profile",
         Effect::Reads,
         &Next,
         {{Option::Kind::Operand, "GROUP", "", "font, macro (Type 2), overlay (Type 8), rgb, printer or linked", true,
           Offer::Choices, "font macro overlay rgb printer linked"}},
         {},
         "slot=$(cordelctl id next rgb)"},
    };
}
