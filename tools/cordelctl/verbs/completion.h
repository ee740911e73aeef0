// What may stand where on a command line, for shells.

#pragma once

#include "verb.h"

#include <span>
#include <string>
#include <vector>

/// What may stand in place of the last word. Candidates that a file name could complete are left to the shell.
std::vector<std::string> Candidates(const std::vector<std::string>& words, std::span<const Verb> verbs);

/// The script for "bash" or "zsh".
std::string CompletionScript(const std::string& shell);
