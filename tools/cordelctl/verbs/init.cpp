// init: creates the per-user copies, in which alone changes are kept.

#include "verbs.h"

#include "document_places.h"
#include "output.h"
#include "platform/platform.h"

#include <filesystem>

namespace {

struct Options {
    bool force = false;
    bool strings = false;
};

void CopyInOneStep(const std::filesystem::path& source, const std::filesystem::path& target) {
    std::filesystem::create_directories(target.parent_path());
    auto whole = target;
    whole += ".new";
    std::filesystem::copy_file(source, whole, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(whole, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    platform::Replace(whole, target);
}

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
    if (!std::filesystem::is_regular_file(place.installed)) {
        throw CFailure(ExitCode::NoDocument,
                       place.title + " is not installed: " + platform::TextOf(place.installed) + " is missing",
                       "see which are: ls " + platform::TextOf(place.installed.parent_path()));
    }
    if (!present || force) {
        CopyInOneStep(place.installed, place.perUser);
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
        if (place.perUser.empty()) {
            throw CFailure(ExitCode::NotKept, "you have no folder for application data",
                           "set HOME, or XDG_CONFIG_HOME to an absolute path");
        }
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
