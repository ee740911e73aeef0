#include "verbs/send_space.h"

#include "failure.h"
#include "text/number_text.h"

std::int64_t RequireSize(const std::string& text, const std::string& what) {
    const auto size = ParseSize(text);
    if (!size) {
        throw CFailure(ExitCode::Refused, what + " is \"" + text + "\", which is no number of bytes");
    }
    return *size;
}

std::int64_t FreeSpaceOf(CDocument& printer, const std::string& volume) {
    const auto rows =
        printer.HasContainer("Storage") ? printer.RowsWhere("Storage", {{"Volume", volume}}) : std::vector<Row>();
    if (rows.empty()) {
        throw CFailure(ExitCode::Missing,
                       "no volume \"" + volume + "\" is recorded in " + printer.Title() +
                           ", but files are meant for it",
                       "name the printer with --for, or place the files on another volume: cordelctl files edit FILE "
                       "--volume VOLUME");
    }
    return RequireSize(rows.front().Value("FreeSpace"), "the free space of volume " + volume);
}
