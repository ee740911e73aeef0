// files: the files of the project.

#include "verbs.h"

void AddFilesVerb(CLI::App& app, Host& host) {
    auto* const files = app.add_subcommand("files", "The files of the project")->require_subcommand(1);
    AddFilesAddVerb(*files, host);
    AddFilesListVerb(*files, host);
    AddFilesTickVerbs(*files, host);
    AddFilesEditVerb(*files, host);
}
