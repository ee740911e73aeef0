// Verbs that have verbs of their own.

#include "verbs.h"

CLI::App* AddFamily(CLI::App& app, const char* name, const char* description) {
    auto* const family = app.add_subcommand(name, description);
    family->callback([family] {
        if (!family->get_subcommands().empty()) {
            return;
        }
        std::string verbs;
        for (const CLI::App* const verb : family->get_subcommands([](const CLI::App*) { return true; })) {
            verbs += (verbs.empty() ? "" : ", ") + verb->get_name();
        }
        throw CFailure(ExitCode::Usage, family->get_name() + " what?", "one of: " + verbs);
    });
    return family;
}
