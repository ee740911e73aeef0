// id: the numbers under which a printer stores files.

#include "verbs.h"

#include "file_ids.h"
#include "file_list.h"
#include "lookup.h"
#include "output.h"
#include "row_edit.h"
#include "session.h"

#include <map>

namespace {

struct Options {
    std::string file;
    std::string group;
};

struct Group {
    const char* type;
    const char* profileType;
};

const std::map<std::string, Group> kGroups{{"font", {"5", ""}}, {"macro", {"2", ""}},    {"overlay", {"8", ""}},
                                           {"rgb", {"6", "0"}}, {"printer", {"6", "2"}}, {"linked", {"6", "3"}}};

ExitCode Check(const Globals& globals, const Options& options) {
    const CSession session(globals);
    session.RequireStrings();
    if (!options.file.empty()) {
        OverwriteFirst("Property", "FileID", ResolveFile(options.file));
    }
    const auto result = CheckEditedFile();
    PrintRecord(
        globals,
        {{"file", JsonText(result.fileID)}, {"id", result.id}, {"group", result.group}, {"clash", result.clash}});
    return result.clash ? ExitCode::No : ExitCode::Done;
}

ExitCode Validate(const Globals& globals) {
    const CSession session(globals);
    session.RequireStrings();
    MessageWindows windows{};
    const bool valid = IdsAreValid(&windows) != 0;
    PrintRecord(globals, {{"ticked", ReadTickedFiles().size()}, {"clash", !valid}});
    return valid ? ExitCode::Done : ExitCode::No;
}

ExitCode Next(const Globals& globals, const Options& options) {
    const CSession session(globals);
    const auto& group = kGroups.at(options.group);
    PrintRecord(globals, {{"id", NextFreeID(group.type, group.profileType)}});
    return ExitCode::Done;
}

} // namespace

void AddIdVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const id = AddFamily(app, "id", "The IDs of files");

    auto* const check = id->add_subcommand("check", "See whether a file has its ID for itself in its group; with a "
                                                    "clash, the exit status is 1");
    check->add_option("FILE", options->file, "FileID or path of the file; without, the one edited last");
    check->callback([&host, options] { host.exit = Check(host.globals, *options); });

    auto* const validate = id->add_subcommand("validate", "See whether the ticked files have different IDs; with a "
                                                          "clash, the exit status is 1");
    validate->callback([&host] { host.exit = Validate(host.globals); });

    auto* const next = id->add_subcommand("next", "Print the lowest free ID, or slot for a colour profile");
    next->add_option("GROUP", options->group, "font, macro (Type 2), overlay (Type 8), rgb, printer or linked")
        ->required()
        ->check(CLI::IsMember(kGroups));
    next->callback([&host, options] { host.exit = Next(host.globals, *options); });
}
