// All verbs of the tool. See verb.h for how to add one.

#pragma once

#include "verb.h"

#include <span>
#include <vector>

/// In the order of the help.
std::span<const Verb> AllVerbs();

// The tables of the sources in this folder.
std::vector<Verb> DocumentVerbs(); // init, reset, paths, printer
std::vector<Verb> DoctorVerbs();
std::vector<Verb> HistoryVerbs(); // history, undo, redo, restore, diff, watch, batch
std::vector<Verb> LookVerbs();    // show, tree, schema
std::vector<Verb> RowVerbs();     // get, set, add, remove, clear, copy
std::vector<Verb> TextVerbs();    // string, filter
std::vector<Verb> FilesVerbs();
std::vector<Verb> ProjectVerbs(); // export, import
std::vector<Verb> IdVerbs();
std::vector<Verb> StorageVerbs(); // storage, space
std::vector<Verb> PlanVerbs();
std::vector<Verb> VerifyVerbs(); // files verify, files renew
std::vector<Verb> PartitionVerbs();
std::vector<Verb> JobVerbs();
std::vector<Verb> SettingVerbs(); // pcl
std::vector<Verb> ReportVerbs();
std::vector<Verb> SelfVerbs(); // manual, completion
