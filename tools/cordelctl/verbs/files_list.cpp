// files list: the files of the project.

#include "verbs.h"

#include "file_list.h"
#include "lookup.h"
#include "output.h"
#include "session.h"

namespace {

struct Options {
    bool ticked = false;
    bool all = false;
};

/// What the texts call a type; the code itself without them.
std::string KindName(const std::string& type) {
    return FindValueWhere("ProjectFilter", "ID", type, "Value", kStringsDocument).value_or(type);
}

ExitCode List(const Globals& globals, const Options& options) {
    const CSession session(globals);
    std::vector<Json> rows;
    for (const ListedFile& file : options.ticked ? ReadTickedFiles() : ReadAllFiles()) {
        rows.push_back({{"FileID", JsonText(file.fileID)},
                        {"Component", JsonText(file.component)},
                        {"ID", JsonText(file.id)},
                        {"Type", JsonText(file.type)},
                        {"kind", JsonText(KindName(file.type))},
                        {"Volume", JsonText(file.volume)},
                        {"Path", JsonText(file.path)},
                        {"LocalPath", JsonText(file.localPath)},
                        {"Size", JsonText(file.size)},
                        {"CreateDate", JsonText(file.createDate)},
                        {"ticked", file.ticked}});
    }
    PrintRows(globals,
              {{"ticked", "", Format::Tick},
               {"FileID", "FILE", Format::Number},
               {"kind", "KIND"},
               {"ID", "ID", Format::Number},
               {"Volume", "VOLUME"},
               {"Size", "SIZE", Format::Size},
               {"LocalPath", "LOCAL PATH"}},
              rows);
    return ExitCode::Done;
}

} // namespace

void AddFilesListVerb(CLI::App& files, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const list = files.add_subcommand("list", "List the files; those ticked for sending are marked with x");
    auto* const ticked = list->add_flag("--ticked", options->ticked, "Only the ticked files, as they would be sent");
    list->add_flag("--all", options->all, "All files, which is what is listed without an option")->excludes(ticked);
    list->callback([&host, options] { host.exit = List(host.globals, *options); });
}
