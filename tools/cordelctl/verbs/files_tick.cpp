// files tick, files untick: which files would be sent.

#include "verbs.h"

#include "file_list.h"
#include "lookup.h"
#include "output.h"
#include "row_edit.h"
#include "session.h"

namespace {

struct Options {
    std::vector<std::string> files;
    bool all = false;
};

/// Finds the first file that is not ticked, again and again, so that none is missed whatever its FileID.
std::size_t TickAll() {
    std::size_t changed = 0;
    while (const auto fileID = FindValueWhere("Files", "checked", "0", "FileID")) {
        OverwriteInRow("Files", "FileID", *fileID, "checked", "1");
        ++changed;
    }
    return changed;
}

std::size_t UntickAll() {
    const auto files = ReadTickedFiles();
    for (const auto& file : files) {
        OverwriteInRow("Files", "FileID", file.fileID, "checked", "0");
    }
    return files.size();
}

std::size_t Change(const Options& options, bool tick) {
    if (options.all) {
        return tick ? TickAll() : UntickAll();
    }
    std::vector<std::string> fileIDs;
    for (const auto& name : options.files) {
        fileIDs.push_back(ResolveFile(name)); // all of them, before any is changed
    }
    for (const auto& fileID : fileIDs) {
        OverwriteInRow("Files", "FileID", fileID, "checked", tick ? "1" : "0");
    }
    return fileIDs.size();
}

ExitCode Run(const Globals& globals, const Options& options, bool tick) {
    if (options.files.empty() && !options.all) {
        throw CFailure(ExitCode::Usage, "no file is named", "name files by FileID or path, or give --all");
    }
    const CSession session(globals);
    const std::size_t changed = Change(options, tick);
    Say(globals, std::to_string(changed) + (changed == 1 ? " file " : " files ") + (tick ? "ticked" : "unticked"));
    if (changed != 0) {
        session.RequireKept();
    }
    return ExitCode::Done;
}

void AddVerb(CLI::App& files, Host& host, bool tick) {
    auto options = std::make_shared<Options>();
    auto* const verb = files.add_subcommand(tick ? "tick" : "untick",
                                            tick ? "Tick files for sending" : "Take files from those to be sent");
    auto* const names = verb->add_option("FILE", options->files, "FileIDs or paths of listed files");
    verb->add_flag("--all", options->all, "All files")->excludes(names);
    verb->callback([&host, options, tick] { host.exit = Run(host.globals, *options, tick); });
}

} // namespace

void AddFilesTickVerbs(CLI::App& files, Host& host) {
    AddVerb(files, host, true);
    AddVerb(files, host, false);
}
