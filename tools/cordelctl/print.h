// Prints results, for people and for scripts, and what deserves attention. Nothing that comes from a document, a file
// name or an option reaches a terminal or standard error as it is: see text/printable.h.

#pragma once

#include "result.h"
#include "verb.h"

#include <string>
#include <utility>
#include <vector>

/// Throws CFailure (Usage) when --columns names what no row of the result can have.
void RequireColumns(const Result& result, const Globals& globals);

/// Prints a result to standard output, and its notes to standard error.
void PrintResult(const Result& result, const Globals& globals);

/// Prints the results of one verb on several documents, each with the name of its document.
void PrintResults(const std::vector<std::pair<std::string, Result>>& results, const Globals& globals);

/// Tells why a command ended: on standard error, and with --json as data too.
void PrintFailure(const CFailure& failure, const Globals& globals);

/// Tells on standard error what deserves attention.
void Note(const std::string& line);
