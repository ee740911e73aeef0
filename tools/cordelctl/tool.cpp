// The tool from its command line to its exit status.

#include "tool.h"

#include "command_line.h"
#include "context.h"
#include "document/places.h"
#include "print.h"
#include "system/terminal.h"
#include "text/nearest.h"
#include "text/printable.h"
#include "transaction/session.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <new>
#include <optional>

namespace {

/// The options that a line asks for even when the rest of it is not understood.
Globals RoughGlobals(const std::vector<std::string>& words) {
    Globals globals;
    globals.json = std::find(words.begin(), std::find(words.begin(), words.end(), "--"), "--json") != words.end();
    return globals;
}

/// What the lock and the history call a command: its words, but not thousands of them.
std::string Label(const std::vector<std::string>& words) {
    constexpr std::size_t kLongest = 120;
    std::string label = Printable(Joined(words, " "));
    return label.size() > kLongest ? label.substr(0, label.find_last_of(' ', kLongest)) + " ..." : label;
}

Result RunOn(const Command& command, const Globals& globals, const std::string& label) {
    const auto run = [&](CSession& session) {
        Context context(*command.verb, command.arguments, globals, session);
        Result result = command.verb->run(context);
        RequireColumns(result, globals); // before anything is saved
        // Also a verb that works out no figure says when it worked on what has an error.
        const auto errors = session.ErrorsInUse();
        result.notes.insert(result.notes.end(), errors.begin(), errors.end());
        return result;
    };
    if (command.verb->effect == Effect::Changes) {
        return RunTransaction(globals, label, run);
    }
    CDocumentLocks locks(globals.wait, label);
    CSession session(Access::Read, globals.dryRun, locks);
    return run(session);
}

/// Runs a verb that reads on several documents.
ExitCode RunOnEach(const Command& command, const std::vector<std::string>& printers, const std::string& label) {
    std::vector<std::pair<std::string, Result>> results;
    ExitCode status = ExitCode::Done;
    for (const std::string& printer : printers) {
        Globals globals = command.globals;
        globals.printers = {printer};
        globals.allPrinters = false;
        try {
            results.emplace_back(printer, RunOn(command, globals, label));
        } catch (const CFailure& failure) {
            // One that fails does not keep the others from being shown.
            Result failed;
            failed.status = failure.Code();
            failed.data = Value::Record{{"error", Value::Record{{"status", static_cast<int>(failure.Code())},
                                                                {"reason", failure.what()},
                                                                {"advice", failure.Advice()}}}};
            failed.notes.emplace_back(failure.what());
            results.emplace_back(printer, std::move(failed));
        }
        status = std::max(status, results.back().second.status);
    }
    PrintResults(results, command.globals);
    return status;
}

ExitCode Run(const Command& command, const std::vector<std::string>& words) {
    Globals globals = command.globals;
    const std::string label = Label(words);
    const bool reads = command.verb->effect == Effect::Reads;
    if (globals.allPrinters || globals.printers.size() > 1) {
        if (!reads) {
            throw CFailure(ExitCode::Usage, std::string(command.verb->name) + " works on one document",
                           "name one printer; several are for verbs that read");
        }
        return RunOnEach(command, globals.allPrinters ? PrinterFileNames() : globals.printers, label);
    }
    if (globals.dryRun && command.verb->effect != Effect::Changes && !command.verb->tries) {
        throw CFailure(ExitCode::Usage,
                       std::string(command.verb->name) + " changes no document: there is nothing to try");
    }
    const Result result = RunOn(command, globals, label);
    PrintResult(result, globals);
    return result.status;
}

ExitCode RunAndReport(const std::vector<std::string>& words) {
    std::optional<Command> command;
    try {
        command = ReadCommandLine(words, AllVerbs());
        if (command->verb == nullptr) {
            host::WriteOutput(command->text);
            return ExitCode::Done;
        }
        return Run(*command, words);
    } catch (const CFailure& failure) {
        PrintFailure(failure, command ? command->globals : RoughGlobals(words));
        return failure.Code();
    } catch (const std::bad_alloc&) {
        PrintFailure(CFailure(ExitCode::NoDocument, "there is no memory for this"), RoughGlobals(words));
        return ExitCode::NoDocument;
    } catch (const std::exception& error) {
        PrintFailure(CFailure(ExitCode::NoDocument, error.what()), command ? command->globals : RoughGlobals(words));
        return ExitCode::NoDocument;
    }
}

} // namespace

ExitCode RunTool(const std::vector<std::string>& words) {
    host::PrepareOutput();
    ExitCode code = RunAndReport(words);
    if (!host::FlushOutput() && code == ExitCode::Done) {
        Note("the output could not be written");
        code = ExitCode::NoOutput;
    }
    return code;
}
