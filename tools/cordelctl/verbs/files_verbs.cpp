// files: the files of the project.

#include "failure.h"
#include "records/file_numbers.h"
#include "text/nearest.h"
#include "verbs/chosen_files.h"
#include "verbs/clash_text.h"
#include "verbs/files_add.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>

namespace {

const ContainerSchema& Files() { return Schema("Files"); }

} // namespace

std::vector<Row> ChosenFiles(Context& context, CDocument& document) {
    const std::vector<Row> rows = document.Rows("Files");
    const auto names = context.Texts("FILE");
    const Filter filter = FilterOf(context.Texts("--where"));
    if (names.empty() && filter.empty() && !context.Has("--all")) {
        throw CFailure(ExitCode::Usage, "no file is named",
                       "name files by FileID or path, by --where NAME=VALUE, or give --all");
    }
    std::map<std::string, std::vector<std::size_t>> places; // by FileID and by path
    for (std::size_t i = 0; i < rows.size(); ++i) {
        places[rows[i].Value("FileID")].push_back(i);
        places[rows[i].Value("LocalPath")].push_back(i);
    }
    std::set<std::size_t> chosen;
    for (const std::string& name : names) {
        if (name.empty()) {
            throw CFailure(ExitCode::Usage, "the name of a file is empty");
        }
        std::error_code none;
        auto found = places.find(name);
        if (found == places.end()) {
            found = places.find(host::TextOf(std::filesystem::weakly_canonical(host::PathOf(name), none)));
        }
        if (found == places.end()) {
            throw CFailure(ExitCode::Missing, "no listed file has the FileID or the path \"" + name + "\"",
                           "see what is listed: cordelctl files list");
        }
        if (found->second.size() > 1 &&
            rows[found->second[0]].Value("FileID") == rows[found->second[1]].Value("FileID")) {
            throw CFailure(ExitCode::Refused,
                           std::to_string(found->second.size()) + " files have the FileID \"" + name + "\"",
                           "give each its own first: cordelctl doctor --fix");
        }
        chosen.insert(found->second.front());
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool passes = std::all_of(filter.begin(), filter.end(), [&](const Pair& pair) {
            const std::string* const value = rows[i].Find(pair.first);
            return value != nullptr && *value == pair.second;
        });
        if (passes && (!filter.empty() || context.Has("--all"))) {
            chosen.insert(i);
        }
    }
    if (chosen.empty() && !filter.empty()) {
        throw CFailure(ExitCode::Missing, "no file has these values: " + Joined(context.Texts("--where"), ", "));
    }
    std::vector<Row> result;
    std::transform(chosen.begin(), chosen.end(), std::back_inserter(result), [&](std::size_t i) { return rows[i]; });
    return result;
}

namespace {

/// What the texts of the language call the types; nothing when there are no such texts.
std::map<std::string, std::string> KindNames(Context& context) {
    std::map<std::string, std::string> names;
    try {
        for (const Row& row : context.Strings().RowsOrNone("ProjectFilter")) {
            names.emplace(row.Value("ID"), row.Value("Value"));
        }
    } catch (const CFailure&) {
        names.clear(); // a list is of use without them
    }
    return names;
}

Result ListFiles(Context& context) {
    CDocument& document = context.Document();
    const auto names = KindNames(context);
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const Row& row : document.RowsWhere("Files", FilterOf(context.Texts("--where")))) {
        const bool ticked = row.Value("checked") == "1";
        if (context.Has("--ticked") && !ticked) {
            continue;
        }
        Value file = DataOf(row);
        const auto kind = names.find(row.Value("Type"));
        file.Add("kind", kind != names.end() ? kind->second : row.Value("Type"));
        file.Add("ticked", ticked);
        result.data.Append(std::move(file));
    }
    result.columns = {{"ticked", "", Format::Tick},
                      {"FileID", "FILE", Format::Number},
                      {"kind", "KIND", Format::Text},
                      {"ID", "ID", Format::Number},
                      {"Volume", "VOLUME", Format::Text},
                      {"Size", "SIZE", Format::Size},
                      {"LocalPath", "LOCAL PATH", Format::Text}};
    result.names = AttributeNames(Files());
    return result;
}

Result Tick(Context& context, const char* value, const char* done) {
    CDocument& document = context.Document();
    std::vector<Row> rows = ChosenFiles(context, document);
    std::size_t changed = 0;
    for (Row& row : rows) {
        if (row.Value("checked") != value) {
            document.SetValue("Files", row, "checked", value);
            ++changed;
        }
    }
    Result result;
    result.data = Value::Record{{"files", rows.size()}, {"changed", changed}};
    result.said.push_back(
        Counted(changed, "file") + " " + done +
        (changed < rows.size() ? ", " + std::to_string(rows.size() - changed) + " were so already" : ""));
    return result;
}

Result TickFiles(Context& context) { return Tick(context, "1", "ticked"); }
Result UntickFiles(Context& context) { return Tick(context, "0", "unticked"); }

Result EditFiles(Context& context) {
    CDocument& document = context.Document();
    const bool next = context.Text("--id") == "next";
    Arguments arguments = context.Args();
    std::vector<Pair> values;
    if (next) {
        arguments.Set("--id", {"0"});
    }
    for (const Pair& pair : GivenValues(arguments, Files())) {
        if (!next || pair.first != "ID") {
            values.push_back(pair);
        }
    }
    if (values.empty() && !next) {
        throw CFailure(ExitCode::Usage, "nothing is to be changed", "see what can be: cordelctl files edit --help");
    }
    const bool newID =
        next || std::any_of(values.begin(), values.end(), [](const Pair& pair) { return pair.first == "ID"; });
    std::vector<Row> rows = ChosenFiles(context, document);
    if (newID) {
        RequireSound(document, "Files");
    }
    EditRows(document, Files(), rows, values);
    if (next) {
        CFreeNumbers numbers(document);
        for (Row& row : rows) {
            document.SetValue("Files", row, "ID", numbers.TakeID(row.Value("Type"), row.Value("ProfileType")));
        }
    }
    Result result;
    result.shape = Result::Shape::Table;
    result.data = TableOf(rows).data;
    result.columns = {{"FileID", "FILE", Format::Number},
                      {"ID", "ID", Format::Number},
                      {"Volume", "VOLUME", Format::Text},
                      {"Path", "PATH", Format::Text},
                      {"Component", "COMPONENT", Format::Text}};
    result.names = AttributeNames(Files());
    const IdCheck check = newID && !next ? CheckID(document, rows.front().Value("FileID")) : IdCheck{};
    if (check.clash) {
        result.notes.push_back(ClashText(context, check));
        result.notes.push_back("the ID was set all the same; to give the file a free one: cordelctl files edit " +
                               check.fileID + " --id next");
        result.status = ExitCode::No;
    }
    return result;
}

Result RemoveFiles(Context& context) {
    CDocument& document = context.Document();
    const std::vector<Row> rows = ChosenFiles(context, document);
    document.RemoveRows("Files", rows);
    Result result;
    result.data = TableOf(rows).data;
    result.said.push_back(Counted(rows.size(), "file") + " removed from the list");
    return result;
}

} // namespace

std::vector<Verb> FilesVerbs() {
    const Option files{Option::Kind::Operands, "FILE", "", "FileIDs or paths of listed files", false, Offer::FileKeys};
    const Option where = WhereOption("The files with this value; several must all match");
    const Option all{Option::Kind::Flag, "--all", "", "All files"};
    std::vector<Option> edit = EditOptions(Files(), {"FileID", "checked"});
    for (Option& option : edit) {
        if (option.name == "--id") {
            option.help = "ID: number under which the printer stores it, or next for a free one";
        }
    }
    edit.insert(edit.begin(), {files, where, all});
    std::vector<Verb> verbs = FilesAddVerbs();
    verbs.insert(
        verbs.end(),
        {{"files list",
          "List the files; those ticked for sending are marked with x",
          Effect::Reads,
          &ListFiles,
          {{Option::Kind::Flag, "--ticked", "", "Only the ticked files"},
           where,
           {Option::Kind::Flag, "--all", "", "All files, which is what is listed without an option"}},
          {},
          "cordelctl files list --where Type=5\ncordelctl files list --format '{FileID}\\t{LocalPath}'"},
         {"files edit",
          "Change files in the list; a new ID is checked, and with a clash the exit status is 1",
          Effect::Changes,
          &EditFiles,
          std::move(edit),
          {},
          "cordelctl files edit 3 --volume 1: --id next\ncordelctl files edit --where Volume=0: --volume 1:"},
         {"files remove",
          "Remove files from the list; the files themselves stay where they are",
          Effect::Changes,
          &RemoveFiles,
          {files, where, all},
          {},
          "cordelctl files remove 3 4"},
         {"files tick",
          "Tick files for sending",
          Effect::Changes,
          &TickFiles,
          {files, where, all},
          {},
          "cordelctl files tick --all\ncordelctl files tick --where Component=Fonts"},
         {"files untick", "Take files from those to be sent", Effect::Changes, &UntickFiles, {files, where, all}}});
    return verbs;
}
