// restore: puts an installed document back as the per-user copy.

#include "verbs.h"

#include "document_places.h"
#include "output.h"
#include "per_user_copy.h"
#include "platform/platform.h"

#include <chrono>
#include <cstdio>
#include <filesystem>

namespace {

struct Options {
    const CLI::Option* printer = nullptr; // as given on the command line
    const CLI::Option* language = nullptr;
};

/// "20261120-164202", in UTC.
std::string TimeNow() {
    namespace chrono = std::chrono;
    const auto now = chrono::floor<chrono::seconds>(chrono::system_clock::now());
    const auto day = chrono::floor<chrono::days>(now);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss clock(now - day);
    char text[64];
    std::snprintf(text, sizeof text, "%04d%02u%02u-%02d%02d%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

/// A name beside the copy that nothing has.
std::filesystem::path NameToKeep(const std::filesystem::path& copy) {
    const std::string base = platform::TextOf(copy) + "." + TimeNow();
    std::string name = base;
    for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(platform::PathOf(name))); ++number) {
        name = base + "-" + std::to_string(number);
    }
    return platform::PathOf(name);
}

DocumentPlace Chosen(const Globals& globals, const Options& options) {
    if (options.printer->count() != 0 && options.language->count() != 0) {
        throw CFailure(ExitCode::Usage, "--printer and --language name two documents", "restore one after the other");
    }
    return options.language->count() != 0  ? StringsDocument(globals.language)
           : options.printer->count() != 0 ? PrinterDocument(PrinterFileName(globals.printer))
                                           : MainDocument();
}

ExitCode Restore(const Globals& globals, const Options& options) {
    RequireInstalledDocuments();
    const DocumentPlace place = Chosen(globals, options);
    RequireCopyable(place);
    const std::string target = platform::TextOf(place.perUser);
    std::string kept;
    try {
        const auto whole = PrepareCopy(place);
        if (std::filesystem::exists(std::filesystem::symlink_status(place.perUser))) {
            const auto name = NameToKeep(place.perUser);
            std::filesystem::rename(place.perUser, name);
            kept = platform::TextOf(name);
        }
        platform::Replace(whole, place.perUser);
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "the copy could not be restored: " + std::string(error.what()),
                       kept.empty() ? "see whether the folder may be written and the disk has room"
                                    : "what was there is kept: " + kept);
    }
    PrintRecord(globals, {{"document", JsonText(place.title)},
                          {"restored", JsonText(target)},
                          {"kept", kept.empty() ? Json() : JsonText(kept)}});
    return ExitCode::Done;
}

} // namespace

void AddRestoreVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const restore =
        app.add_subcommand("restore", "Put the installed document back as your copy: the main document, or with "
                                      "--printer or --language that one. What was there is kept beside it");
    options->printer = app.get_option("--printer");
    options->language = app.get_option("--language");
    restore->callback([&host, options] { host.exit = Restore(host.globals, *options); });
}
