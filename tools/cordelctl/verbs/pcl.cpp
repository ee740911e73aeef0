// pcl: the settings of the PCL filter.

#include "verbs.h"

#include "output.h"
#include "session.h"
#include "vocabulary.h"

#include <array>

namespace {

ExitCode PrintSettings(const Globals& globals) {
    const CSession session(globals);
    std::array<int32_t, 28> settings{};
    ReadPCLFilter(settings.data());
    Json record;
    for (std::size_t i = 0; i < settings.size(); ++i) {
        record[std::string(kPclSettings[i])] = settings[i];
    }
    PrintRecord(globals, record);
    return ExitCode::Done;
}

} // namespace

void AddPclVerb(CLI::App& app, Host& host) {
    auto* const pcl = app.add_subcommand("pcl", "Show the PCL filter settings; change one with: set PCLCurrentSetting");
    pcl->callback([&host] { host.exit = PrintSettings(host.globals); });
}
