// The verbs of the command line, a family in each source. Each function adds its verbs to the application; a verb that
// was called runs after the whole line has been read, and leaves the exit status in `host`.

#pragma once

#include "host.h"

#include <CLI/CLI.hpp>

/// Adds a verb that has verbs of its own, one of which must follow.
CLI::App* AddFamily(CLI::App& app, const char* name, const char* description);

void AddInitVerb(CLI::App& app, Host& host);
void AddDoctorVerb(CLI::App& app, Host& host);
void AddRestoreVerb(CLI::App& app, Host& host);
void AddShowVerbs(CLI::App& app, Host& host); // show, tree
void AddDiffVerb(CLI::App& app, Host& host);
void AddAttributeVerbs(CLI::App& app, Host& host); // get, set, clear
void AddCopyVerb(CLI::App& app, Host& host);
void AddStringVerbs(CLI::App& app, Host& host); // string, filter
void AddStorageVerb(CLI::App& app, Host& host);
void AddSpaceVerb(CLI::App& app, Host& host);
void AddPartitionVerb(CLI::App& app, Host& host);
void AddPclVerb(CLI::App& app, Host& host);
void AddIdVerb(CLI::App& app, Host& host);
void AddJobVerb(CLI::App& app, Host& host);

void AddProjectVerbs(CLI::App& app, Host& host); // export, import

void AddFilesVerb(CLI::App& app, Host& host); // files, with the verbs below
void AddFilesAddVerb(CLI::App& files, Host& host);
void AddFilesListVerb(CLI::App& files, Host& host);
void AddFilesTickVerbs(CLI::App& files, Host& host);
void AddFilesEditVerb(CLI::App& files, Host& host);
