// The outcome of a run, for people and for programs.

#pragma once

#include "bounds.h"

#include <filesystem>

/// One line for each bound that the run measured.
void PrintTable(const std::vector<Verdict>& verdicts);

/// The same as JSON, with every figure of the run.
void WriteJson(const std::filesystem::path& file, const std::vector<Verdict>& verdicts, const Figures& figures);
