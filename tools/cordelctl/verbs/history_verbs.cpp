// history, undo, redo, restore, diff, watch, batch: documents over time.

#include "command_line.h"
#include "doctor/examination.h"
#include "document/difference_result.h"
#include "document/record_diff.h"
#include "failure.h"
#include "print.h"
#include "text/nearest.h"
#include "text/number_text.h"
#include "transaction/history.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <chrono>
#include <iostream>
#include <sstream>
#include <thread>

namespace {

DocumentPlace CopyPlace(const Context& context) {
    RequireInstalledDocuments();
    DocumentPlace place = context.Has("--texts") ? StringsDocument(context.Options().language) : context.Place();
    if (place.perUser.empty()) {
        throw CFailure(ExitCode::NoDocument, "you have no folder for application data",
                       "set HOME, or XDG_CONFIG_HOME to an absolute path");
    }
    return place;
}

Result History(Context& context) {
    const CHistory history(CopyPlace(context));
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const HistoryState& state : history.States()) {
        result.data.Append(Value::Record{{"state", static_cast<std::size_t>(state.number)},
                                         {"time", state.time},
                                         {"size", static_cast<std::int64_t>(state.size)},
                                         {"before", state.command}});
    }
    result.columns = {{"state", "STATE", Format::Number},
                      {"time", "TIME (UTC)", Format::Text},
                      {"size", "SIZE", Format::Size},
                      {"before", "BEFORE", Format::Text}};
    if (result.data.Items().empty()) {
        result.notes.emplace_back("no states are kept: nothing was changed yet");
    }
    return result;
}

/// What putting these bytes in the document's place would change, or the reason why it cannot be told.
Result WouldChange(const DocumentPlace& place, const std::filesystem::path& file) {
    const auto before = CDocument::Load(place.perUser, place.title);
    const auto after = CDocument::Load(file, "the state");
    Result result = DifferenceResult(CompareDocuments(before->Tree(), after->Tree()));
    result.said.insert(result.said.begin(), "nothing was changed; this would be:");
    return result;
}

void RequireChangeable(const DocumentPlace& place) {
    const FileState state = place.UserState();
    if (state == FileState::InUse) {
        throw CFailure(ExitCode::NotKept, "nothing was changed: another program holds " + host::TextOf(place.perUser),
                       "try again when that program is done");
    }
    if (state == FileState::Absent) {
        throw CFailure(ExitCode::NotKept, "nothing was changed: there is no per-user copy of " + place.title,
                       "to bring a former state back: cordelctl restore STATE");
    }
    if (state == FileState::NotWritable) {
        throw CFailure(ExitCode::NotKept,
                       "nothing was changed: " + host::TextOf(place.perUser) + " may not be read and written",
                       "give yourself read and write permission for it");
    }
}

Result StateResult(const HistoryState& state, const std::string& said) {
    Result result;
    result.data = Value::Record{{"state", static_cast<std::size_t>(state.number)}, {"command", state.command}};
    result.said.push_back(said);
    return result;
}

Result Undo(Context& context) {
    const DocumentPlace place = CopyPlace(context);
    CDocumentLocks locks(context.Options().wait, "undo");
    CHistory history(place);
    if (context.Options().dryRun) {
        const auto states = history.States();
        if (states.empty()) {
            throw CFailure(ExitCode::Missing, "there is nothing to undo");
        }
        return WouldChange(place, states.back().file);
    }
    RequireChangeable(place);
    locks.Take(place);
    const HistoryState state = history.Undo(context.Has("--force"));
    return StateResult(state, "undone: " + state.command + "; to do it again: cordelctl redo");
}

Result Redo(Context& context) {
    const DocumentPlace place = CopyPlace(context);
    CDocumentLocks locks(context.Options().wait, "redo");
    RequireChangeable(place);
    locks.Take(place);
    const HistoryState state = CHistory(place).Redo();
    return StateResult(state, "done again: " + state.command);
}

Result Restore(Context& context) {
    const DocumentPlace place = CopyPlace(context);
    CDocumentLocks locks(context.Options().wait, "restore");
    CHistory history(place);
    const HistoryState state = history.State(context.Text("STATE"));
    if (context.Options().dryRun) {
        return WouldChange(place, state.file);
    }
    locks.Take(place);
    if (place.UserState() != FileState::Absent) {
        RequireChangeable(place);
    }
    history.Restore(state, "restore " + std::to_string(state.number));
    return StateResult(state, "the document is again as it was before: " + state.command);
}

struct Side {
    std::string title;
    std::filesystem::path file;
};

/// The two documents that are compared: a state and the copy, the installed document and the copy, or those named.
std::pair<Side, Side> Sides(Context& context) {
    const auto names = context.Texts("DOCUMENT");
    if (names.size() == 2) {
        const Patient before = FindPatient(names[0], context.Options());
        const Patient after = FindPatient(names[1], context.Options());
        return {{before.title, before.file}, {after.title, after.file}};
    }
    if (!names.empty()) {
        throw CFailure(ExitCode::Usage,
                       names.size() == 1 ? "one document cannot be compared" : "two documents are compared, not more",
                       "name two, or none to compare the installed document with your copy");
    }
    const DocumentPlace place = CopyPlace(context);
    if (!std::filesystem::is_regular_file(place.perUser)) {
        throw CFailure(ExitCode::NoDocument, "there is no per-user copy of " + place.title,
                       "name two documents to compare those");
    }
    const Side copy{"your copy of " + place.title, place.perUser};
    if (context.Has("--state")) {
        const HistoryState state = CHistory(place).State(context.Text("--state"));
        return {{"state " + std::to_string(state.number), state.file}, copy};
    }
    return {{place.title + " as installed", place.installed}, copy};
}

Result Diff(Context& context) {
    const auto [before, after] = Sides(context);
    Result result = DifferenceResult(CompareDocuments(CDocument::Load(before.file, before.title)->Tree(),
                                                      CDocument::Load(after.file, after.title)->Tree()));
    result.said.insert(result.said.begin(), "from " + before.title + " to " + after.title + ":");
    result.status = result.data.Items().empty() ? ExitCode::Done : ExitCode::No;
    return result;
}

/// Prints what others change in the document, as long as it runs. It is looked at by its name, so that a file that is
/// replaced is followed.
Result Watch(Context& context) {
    const DocumentPlace place = CopyPlace(context);
    const auto most = ParseSize(context.Has("--count") ? context.Text("--count") : "0");
    if (!most) {
        throw CFailure(ExitCode::Usage, "--count takes no \"" + context.Text("--count") + "\"", "give a number");
    }
    host::NoteInterruptions();
    auto stamp = StampOf(place.Loaded());
    DocumentNode before = CDocument::Load(place.Loaded(), place.title)->Tree();
    if (!context.Options().quiet) {
        Note("watching " + host::TextOf(place.Loaded()) + "; end with Ctrl-C");
    }
    for (std::int64_t seen = 0; !host::IsInterrupted() && (*most == 0 || seen < *most);) {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        const auto now = StampOf(place.Loaded());
        if (now == stamp) {
            continue;
        }
        DocumentError error;
        const auto document = CDocument::TryLoad(place.Loaded(), error);
        if (document == nullptr) {
            continue; // it is being written in place, or goes away; the next look tells
        }
        stamp = now;
        DocumentNode after = document->Tree();
        Result result = DifferenceResult(CompareDocuments(before, after));
        before = std::move(after);
        if (result.data.Items().empty()) {
            continue;
        }
        ++seen;
        result.said.insert(result.said.begin(), TimeNow() + " UTC:");
        PrintResult(result, context.Options());
        std::cout << std::flush;
    }
    Result result;
    result.shape = Result::Shape::Said;
    result.silent = true;
    return result;
}

/// Runs the commands of standard input on documents that are loaded once and saved once.
Result Batch(Context& context) {
    Result result;
    result.data = Value::List();
    Globals defaults = context.Options();
    std::string line;
    std::istringstream input(host::StandardInput());
    StopIfInterrupted();
    for (int number = 1; std::getline(input, line); ++number) {
        StopIfInterrupted();
        const std::string where = "line " + std::to_string(number) + ": ";
        try {
            std::vector<std::string> words = SplitWords(line);
            if (words.empty() || words.front().starts_with('#')) {
                continue;
            }
            if (words.front() == "cordelctl") {
                words.erase(words.begin());
            }
            const Command command = ReadCommandLine(words, AllVerbs(), defaults);
            if (command.verb == nullptr || command.verb->effect == Effect::None || command.verb->run == &Batch) {
                throw CFailure(ExitCode::Usage, "this cannot be part of a batch");
            }
            Context inner(*command.verb, command.arguments, command.globals, context.Session());
            const Result part = command.verb->run(inner);
            if (part.status > ExitCode::No && !part.partial) {
                throw CFailure(part.status, part.notes.empty() ? "it failed" : part.notes.front());
            }
            result.status = std::max(result.status, part.status);
            result.partial = result.partial || part.partial;
            result.data.Append(Value::Record{{"line", number}, {"verb", command.verb->name}, {"result", part.data}});
            result.said.insert(result.said.end(), part.said.begin(), part.said.end());
            for (const std::string& note : part.notes) {
                result.notes.push_back(where + note);
            }
        } catch (const CFailure& failure) {
            throw CFailure(failure.Code(), where + failure.what() + "; nothing was changed", failure.Advice());
        }
    }
    return result;
}

} // namespace

std::vector<Verb> HistoryVerbs() {
    const Option texts{Option::Kind::Flag, "--texts", "", "Of the texts of the language, not of the main document"};
    Verb undo{"undo",
              "Undo the last command: the document is again what it was before, byte by byte",
              Effect::None,
              &Undo,
              {{Option::Kind::Flag, "--force", "",
                "Also when another program changed the document since; redo brings that back"},
               texts},
              {},
              "cordelctl undo\ncordelctl undo --dry-run --printer Atrium"};
    undo.tries = true;
    Verb restore{
        "restore",
        "Put a former state in the document's place; undo takes that back",
        Effect::None,
        &Restore,
        {{Option::Kind::Operand, "STATE", "", "Number of the state, as history lists it", true, Offer::States}, texts},
        {},
        "cordelctl restore 12 --dry-run"};
    restore.tries = true;
    return {
        {"history",
         "List the former states of the document: what it was before each command that changed it",
         Effect::None,
         &History,
         {texts}},
        undo,
        {"redo", "Do again what was undone last", Effect::None, &Redo, {texts}},
        restore,
        {"diff",
         "Compare the installed document with your copy, or two documents, item by item; with a difference, the exit "
         "status is 1",
         Effect::None,
         &Diff,
         {{Option::Kind::Operands, "DOCUMENT", "", "main, a printer, a language, or the path of a file", false,
           Offer::Documents},
          {Option::Kind::Text, "--state", "STATE", "Compare this former state with your copy", false, Offer::States},
          texts},
         {},
         "cordelctl diff\ncordelctl diff --state 12\ncordelctl diff Atrium Workshop"},
        {"watch",
         "Print what others change in the document, until it is ended",
         Effect::None,
         &Watch,
         {{Option::Kind::Text, "--count", "NUMBER", "End after so many changes"}, texts}},
        {"batch",
         "Run the commands of standard input, one on a line, on documents that are loaded once and saved once: all or "
         "none",
         Effect::Changes,
         &Batch,
         {},
         {},
         "printf 'job add 7 One\\njob add 8 Two\\n' | cordelctl batch --printer Atrium"},
    };
}
