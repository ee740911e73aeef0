// init: creates the per-user copies, in which alone changes are kept.

#include "verbs.h"

#include "document_places.h"
#include "output.h"
#include "per_user_copy.h"
#include "platform/platform.h"

#include <filesystem>

namespace {

struct Options {
    bool force = false;
    bool strings = false;
};

/// The documents to copy; all that are installed unless one printer is named.
std::vector<DocumentPlace> Chosen(const Globals& globals, const Options& options) {
    std::vector<DocumentPlace> places =
        globals.printer.empty() ? InstalledDocuments() : std::vector{PrinterDocument(PrinterFileName(globals.printer))};
    if (options.strings) {
        for (const auto& language : InstalledLanguages()) {
            places.push_back(StringsDocument(language));
        }
    }
    return places;
}

Json CopyForUser(const DocumentPlace& place, bool force) {
    const std::string target = platform::TextOf(place.perUser);
    const bool present = std::filesystem::exists(std::filesystem::symlink_status(place.perUser));
    if (!present || force) {
        platform::Replace(PrepareCopy(place), place.perUser);
    }
    return {{"document", JsonText(place.title)},
            {"result", !present ? "created"
                       : force  ? "replaced"
                                : "left as it is"},
            {"path", JsonText(target)}};
}

ExitCode Initialise(const Globals& globals, const Options& options) {
    RequireInstalledDocuments();
    std::vector<Json> rows;
    for (const auto& place : Chosen(globals, options)) {
        RequireCopyable(place);
        try {
            rows.push_back(CopyForUser(place, options.force));
        } catch (const std::filesystem::filesystem_error& error) {
            throw CFailure(ExitCode::NotKept, std::string("no per-user copy could be made: ") + error.what(),
                           "see whether the folder may be written and the disk has room");
        }
    }
    PrintRows(globals, {{"document", "DOCUMENT"}, {"result", "RESULT"}, {"path", "PATH"}}, rows);
    return ExitCode::Done;
}

} // namespace

void AddInitVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const verb = app.add_subcommand("init", "Create your own copies of the installed documents; changes are kept "
                                                  "only there. With --printer, of that document alone");
    verb->add_flag("--force", options->force, "Replace copies that are there: what they hold is lost");
    verb->add_flag("--strings", options->strings, "Copy the texts of the languages as well, to change them by hand");
    verb->callback([&host, options] { host.exit = Initialise(host.globals, *options); });
}
