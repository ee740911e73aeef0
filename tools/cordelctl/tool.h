// The tool from its command line to its exit status.

#pragma once

#include "failure.h"

#include <string>
#include <vector>

/// Runs one command and prints what comes of it.
ExitCode RunTool(const std::vector<std::string>& words);
