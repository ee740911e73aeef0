// Turns a command line into a command.

#pragma once

#include "verb.h"

#include <span>
#include <string>
#include <vector>

/// Reads the words behind the program's name. Throws CFailure (Usage) when they make no command of these verbs.
/// `defaults` are the options that hold unless the line says otherwise.
Command ReadCommandLine(const std::vector<std::string>& words, std::span<const Verb> verbs,
                        const Globals& defaults = {});

/// The options that stand for every verb, for the help and the manual.
std::span<const Option> GlobalOptions();

/// The words of a line of `batch`: parted by blanks, with quotes and backslashes as a shell has them. Throws CFailure
/// (Usage) when a quote is not closed.
std::vector<std::string> SplitWords(const std::string& line);
