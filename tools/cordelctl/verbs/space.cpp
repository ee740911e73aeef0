// space: what sending the ticked files would do to the volumes of a printer.

#include "verbs.h"

#include "file_list.h"
#include "lookup.h"
#include "number_text.h"
#include "output.h"
#include "session.h"

#include <limits>
#include <map>

namespace {

struct Options {
    std::string printer;
};

int64_t RequireSize(const std::string& text, const std::string& what) {
    const auto size = ParseSize(text);
    if (!size) {
        throw CFailure(ExitCode::Refused, what + " is \"" + text + "\", which is no number of bytes");
    }
    return *size;
}

/// The bytes to send, by volume.
std::map<std::string, int64_t> SizesByVolume() {
    std::map<std::string, int64_t> sizes;
    for (const auto& file : ReadTickedFiles()) {
        const int64_t size = RequireSize(file.size, "the size of " + file.localPath);
        int64_t& sum = sizes[file.volume];
        if (size > std::numeric_limits<int64_t>::max() - sum) {
            throw CFailure(ExitCode::Refused, "the files for volume " + file.volume + " are too large to add up");
        }
        sum += size;
    }
    return sizes;
}

int64_t FreeSpaceOf(const std::string& volume) {
    const auto text = FindValueWhere("Storage", "Volume", volume, "FreeSpace");
    if (!text) {
        throw CFailure(ExitCode::Missing, "no volume \"" + volume + "\" is recorded, but files are meant for it",
                       "name the printer with --for, or place the files on another volume: cordelctl files edit FILE "
                       "--volume VOLUME");
    }
    return RequireSize(*text, "the free space of volume " + volume);
}

ExitCode WriteSpace(const Globals& globals, const Options& options) {
    CSession session(globals);
    const auto sizes = SizesByVolume();
    if (sizes.empty()) {
        Note("no file is ticked, so nothing would be sent");
    }
    if (!options.printer.empty()) {
        session.Visit(options.printer);
    }
    std::vector<SendSpaceRecord> records;
    std::vector<Json> rows;
    bool fits = true;
    for (const auto& [volume, size] : sizes) {
        const int64_t before = FreeSpaceOf(volume);
        const int64_t after = before - size;
        fits = fits && after >= 0;
        records.push_back({ToAnsi(volume), ToAnsi(std::to_string(size)), ToAnsi(std::to_string(before)),
                           ToAnsi(std::to_string(after))});
        rows.push_back({{"Volume", JsonText(volume)},
                        {"FilesSize", size},
                        {"FreeSpace", before},
                        {"FreeSpaceAfterSend", after},
                        {"fits", after >= 0}});
    }
    if (!options.printer.empty()) {
        session.Return();
    }
    WriteFreeVolume(records.data(), static_cast<int64_t>(records.size()));
    PrintRows(globals,
              {{"Volume", "VOLUME"},
               {"FilesSize", "TO SEND", Format::Number},
               {"FreeSpace", "FREE", Format::Number},
               {"FreeSpaceAfterSend", "FREE AFTERWARDS", Format::Number},
               {"fits", "FITS"}},
              rows);
    session.RequireKept();
    if (!fits) {
        Note("the ticked files do not fit");
    }
    return fits ? ExitCode::Done : ExitCode::No;
}

} // namespace

void AddSpaceVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const verb =
        app.add_subcommand("space", "Work out, record and show what sending the ticked files leaves free, in bytes");
    verb->add_option("--for", options->printer, "Printer whose volumes count; without, those of the same document")
        ->type_name("NAME");
    verb->callback([&host, options] { host.exit = WriteSpace(host.globals, *options); });
}
