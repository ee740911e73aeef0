// files: the files of the project.

#include "verbs.h"

void AddFilesVerb(CLI::App& app, Host& host) {
    auto* const files = AddFamily(app, "files", "The files of the project");
    AddFilesAddVerb(*files, host);
    AddFilesListVerb(*files, host);
    AddFilesTickVerbs(*files, host);
    AddFilesEditVerb(*files, host);
}
