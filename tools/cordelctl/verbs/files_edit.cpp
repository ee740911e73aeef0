// files edit: how and where a listed file will be stored on the printer.

#include "verbs.h"

#include "field_text.h"
#include "file_ids.h"
#include "file_list.h"
#include "lookup.h"
#include "number_text.h"
#include "output.h"
#include "row_edit.h"
#include "session.h"

namespace {

struct Options {
    std::string file;
    std::string id;
    std::string volume;
    std::string path;
    std::string component;
};

/// The ID to set: a plain number, as the printer and the comparison of IDs want it.
std::string NewID(const std::string& wanted, const std::string& fileID) {
    if (wanted == "next") {
        return std::to_string(NextFreeID(FileValue(fileID, "Type"), FileValue(fileID, "ProfileType")));
    }
    const auto number = ParseSize(wanted);
    if (!number || *number > 32767 || std::to_string(*number) != wanted) {
        throw CFailure(ExitCode::Usage, "\"" + wanted + "\" is no ID", "give a number from 0 to 32767, or next");
    }
    return wanted;
}

void Overwrite(const std::string& fileID, const char* attribute, const std::string& value) {
    if (!value.empty()) {
        RequireFit(value, kFieldLength, std::string("the value of ") + attribute);
        OverwriteInRow("Files", "FileID", fileID, attribute, value);
    }
}

ExitCode Edit(const Globals& globals, const Options& options) {
    if (options.id.empty() && options.volume.empty() && options.path.empty() && options.component.empty()) {
        throw CFailure(ExitCode::Usage, "nothing is to be changed", "give --id, --volume, --path or --component");
    }
    const CSession session(globals);
    const std::string fileID = ResolveFile(options.file);
    const std::string id = options.id.empty() ? "" : NewID(options.id, fileID);
    Overwrite(fileID, "ID", id);
    Overwrite(fileID, "Volume", options.volume);
    Overwrite(fileID, "Path", options.path);
    Overwrite(fileID, "Component", options.component);
    const ListedFile file = ReadFile(fileID);
    PrintRecord(globals, {{"FileID", JsonText(fileID)},
                          {"ID", JsonText(file.id)},
                          {"Volume", JsonText(file.volume)},
                          {"Path", JsonText(file.path)},
                          {"Component", JsonText(file.component)}});
    bool clash = false;
    if (!id.empty()) {
        OverwriteFirst("Property", "FileID", fileID);
        clash = CheckEditedFile().clash;
    }
    session.RequireKept();
    if (clash) {
        Note("the ID was set all the same; to give the file a free one: cordelctl files edit " + fileID + " --id next");
    }
    return clash ? ExitCode::No : ExitCode::Done;
}

} // namespace

void AddFilesEditVerb(CLI::App& files, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const edit = files.add_subcommand("edit", "Change how a file will be stored; a new ID is checked, and with a "
                                                    "clash the exit status is 1");
    edit->add_option("FILE", options->file, "FileID or path of the file")->required();
    edit->add_option("--id", options->id, "Number under which the printer stores it, or next")->type_name("ID");
    edit->add_option("--volume", options->volume, "Volume of the printer");
    edit->add_option("--path", options->path, "Path on that volume");
    edit->add_option("--component", options->component, "Component that it belongs to");
    edit->callback([&host, options] { host.exit = Edit(host.globals, *options); });
}
