// cordelctl, the command-line host of the Cordelbox library.

#include "host.h"
#include "output.h"
#include "verbs/verbs.h"

#include <iostream>

namespace {

constexpr const char* kExitStatuses = R"(Exit status:
  0  done
  1  the answer is no: files share an ID, the project does not fit,
     documents differ, or the doctor found an error or a warning
  2  the command line was not understood
  3  what was asked for, or was to be changed, is not in the document
  4  the change was not kept: there is no writable per-user copy, or it could
     not be saved
  5  a document could not be opened
  6  a file or a value was refused
  7  the output could not be written)";

void AddGlobalOptions(CLI::App& app, Globals& globals) {
    app.add_option("--printer", globals.printer, "Work on this printer's document, not on the main document")
        ->type_name("NAME");
    app.add_option("--language", globals.language, "Language of the texts")->type_name("NAME")->capture_default_str();
    app.add_flag("--json", globals.json, "Print data as JSON");
    app.set_version_flag("--version", "cordelctl " CORDELBOX_VERSION);
}

void AddVerbs(CLI::App& app, Host& host) {
    AddInitVerb(app, host);
    AddDoctorVerb(app, host);
    AddRestoreVerb(app, host);
    AddShowVerbs(app, host);
    AddDiffVerb(app, host);
    AddAttributeVerbs(app, host);
    AddCopyVerb(app, host);
    AddStringVerbs(app, host);
    AddStorageVerb(app, host);
    AddSpaceVerb(app, host);
    AddPartitionVerb(app, host);
    AddFilesVerb(app, host);
    AddProjectVerbs(app, host);
    AddPclVerb(app, host);
    AddIdVerb(app, host);
    AddJobVerb(app, host);
}

ExitCode Run(int argc, char** argv) {
    Host host;
    CLI::App app("Works on the documents of Cordelbox: storage, partitions, files and jobs of printers.", "cordelctl");
    app.fallthrough();                      // the options of the program may stand anywhere
    app.allow_windows_style_options(false); // a path may begin with a slash on every system
    app.footer(kExitStatuses);
    AddGlobalOptions(app, host.globals);
    AddVerbs(app, host);
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? ExitCode::Done : ExitCode::Usage;
    }
    if (app.get_subcommands().empty()) {
        std::cerr << app.help();
        return ExitCode::Usage;
    }
    return host.exit;
}

ExitCode RunAndReport(int argc, char** argv) {
    try {
        return Run(argc, argv);
    } catch (const CFailure& failure) {
        Note(failure.what());
        if (!failure.Advice().empty()) {
            std::cerr << "  " << failure.Advice() << '\n';
        }
        return failure.Code();
    } catch (const std::exception& error) {
        Note(error.what());
        return ExitCode::NoDocument;
    }
}

} // namespace

int main(int argc, char** argv) {
    ExitCode code = RunAndReport(argc, argv);
    if (!std::cout.flush() && code == ExitCode::Done) {
        Note("the output could not be written");
        code = ExitCode::NoOutput;
    }
    return static_cast<int>(code);
}
