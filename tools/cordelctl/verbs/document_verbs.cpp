// init, reset, paths, printer: the documents themselves.

#include "document/copies.h"
#include "failure.h"
#include "records/kept_digests.h"
#include "system/terminal.h"
#include "text/nearest.h"
#include "transaction/history.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <iostream>

namespace {

/// The document that --printer or --language name; the main document without.
DocumentPlace NamedPlace(const Context& context) {
    return context.Has("--texts") ? StringsDocument(context.Options().language) : context.Place();
}

void RequireYes(const Context& context, const std::string& question) {
    if (context.Has("--yes") || context.Options().dryRun) {
        return;
    }
    if (host::IsInputTerminal() && host::IsErrorTerminal()) {
        host::WriteError(question + " [y/N] ");
        std::string answer;
        std::getline(std::cin, answer);
        if (answer == "y" || answer == "Y" || answer == "yes") {
            return;
        }
    }
    throw CFailure(ExitCode::Usage, "nothing was changed", "to do it without being asked: --yes");
}

std::string StateName(FileState state) {
    switch (state) {
    case FileState::Absent:
        return "absent";
    case FileState::NotAFile:
        return "no file";
    case FileState::NotWritable:
        return "not writable";
    case FileState::InUse:
        return "in use";
    case FileState::Writable:
        return "writable";
    }
    return {};
}

Result Init(Context& context) {
    RequireInstalledDocuments();
    std::vector<DocumentPlace> places =
        context.Options().printers.empty() ? InstalledDocuments() : std::vector{context.Place()};
    if (context.Has("--strings")) {
        for (const auto& language : InstalledLanguages()) {
            places.push_back(StringsDocument(language));
        }
    }
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    CDocumentLocks locks(context.Options().wait, "init");
    for (const DocumentPlace& place : places) {
        RequireCopyable(place);
        const bool present = std::filesystem::exists(std::filesystem::symlink_status(place.perUser));
        if (!present && !context.Options().dryRun) {
            try {
                MakeCopy(place, host::ReadBytes(place.installed), Present::Kept);
            } catch (const std::filesystem::filesystem_error& error) {
                throw CFailure(ExitCode::NoDocument, place.title + " cannot be read: " + error.what());
            }
        }
        result.data.Append(Value::Record{{"document", place.title},
                                         {"result", present                    ? "left as it is"
                                                    : context.Options().dryRun ? "would be created"
                                                                               : "created"},
                                         {"path", host::TextOf(place.perUser)}});
    }
    result.columns = {
        {"document", "DOCUMENT", Format::Text}, {"result", "RESULT", Format::Text}, {"path", "PATH", Format::Text}};
    return result;
}

/// A name beside the copy that nothing has, for what is no file.
std::filesystem::path NameBeside(const std::filesystem::path& copy) {
    std::string time = TimeNow();
    std::erase_if(time, [](char c) { return c == '-' || c == ':'; });
    std::replace(time.begin(), time.end(), ' ', '-');
    const std::string base = host::TextOf(copy) + "." + time;
    std::string name = base;
    for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(host::PathOf(name))); ++number) {
        name = base + "-" + std::to_string(number);
    }
    return host::PathOf(name);
}

Result Reset(Context& context) {
    RequireInstalledDocuments();
    const DocumentPlace place = NamedPlace(context);
    RequireCopyable(place);
    RequireYes(context, "Put the installed document in the place of your copy of " + place.title + "?");
    Result result;
    result.shape = Result::Shape::Record;
    result.data = Value::Record{{"document", place.title}, {"path", host::TextOf(place.perUser)}};
    if (context.Options().dryRun) {
        result.said.emplace_back("nothing was changed; the installed document would take the place of your copy");
        result.data.Add("kept", Value());
        return result;
    }
    CDocumentLocks locks(context.Options().wait, "reset");
    Value kept;
    std::optional<HistoryState> state;
    CHistory history(place);
    try {
        const std::string bytes = host::ReadBytes(place.installed);
        const auto status = std::filesystem::symlink_status(place.perUser);
        if (std::filesystem::exists(status)) {
            locks.Take(place);
            if (std::filesystem::is_regular_file(place.perUser)) {
                state = history.Keep("reset");
                kept = state ? Value("state " + std::to_string(state->number)) : Value();
            } else {
                const auto name = NameBeside(place.perUser);
                std::filesystem::rename(place.perUser, name);
                kept = host::TextOf(name);
            }
        }
        MakeCopy(place, bytes, Present::Replaced);
        if (state) {
            history.NoteDone(*state);
            history.ForgetOld();
        }
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "the copy was not reset: " + std::string(error.what()),
                       kept.IsNull() ? "see whether the folder may be written and the disk has room"
                                     : "what was there is kept: " + kept.Text());
    }
    result.data.Add("kept", kept);
    if (state) {
        result.said.push_back("to have back what was there: cordelctl undo" +
                              (place.kind == DocumentKind::Printer ? " --printer " + place.name : std::string()));
    }
    return result;
}

Value PathData(const DocumentPlace& place) {
    const FileState state = place.UserState();
    const bool installed = std::filesystem::is_regular_file(place.installed);
    const bool reach = !place.perUser.empty() && place.IsWithinReach();
    std::string why;
    Value read;
    Value written;
    if (place.perUser.empty()) {
        why = "you have no folder for application data: hosts open nothing";
    } else if (!reach) {
        why = "the path is too long for the library: hosts open nothing";
    } else if (state == FileState::Writable) {
        read = written = host::TextOf(place.perUser);
        why = "your copy is there and may be read and written";
    } else {
        read = installed ? Value(host::TextOf(place.installed)) : Value();
        why = state == FileState::Absent     ? "you have no copy: changes are not kept"
              : state == FileState::InUse    ? "another program holds your copy: it counts as absent"
              : state == FileState::NotAFile ? "your copy is no file: it counts as absent"
                                             : "your copy may not be read and written: it counts as absent";
        why += installed ? "" : ", and there is no installed document";
    }
    return Value::Record{{"document", place.name},
                         {"read", read},
                         {"written", written},
                         {"copy", StateName(state)},
                         {"why", why},
                         {"installed", host::TextOf(place.installed)},
                         {"perUser", host::TextOf(place.perUser)}};
}

Result Paths(Context& context) {
    RequireInstalledDocuments();
    const auto& printers = context.Options().printers;
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const DocumentPlace& place : AllDocuments(context.Options().language)) {
        const bool wanted = printers.empty() || std::any_of(printers.begin(), printers.end(), [&](const auto& name) {
                                return PrinterFileName(name) == place.name;
                            });
        if (wanted) {
            result.data.Append(PathData(place));
        }
    }
    result.columns = {{"document", "DOCUMENT", Format::Text},
                      {"read", "READ", Format::Text},
                      {"written", "WRITTEN", Format::Text},
                      {"why", "WHY", Format::Text}};
    result.names = {"copy", "installed", "perUser"};
    return result;
}

/// The printer's document that the operand names.
DocumentPlace PrinterPlace(const Context& context, std::string_view operand) {
    RequireInstalledDocuments();
    const std::string name = PrinterFileName(context.Text(operand));
    if (name == kMainDocumentName) {
        throw CFailure(ExitCode::Usage, "the main document is no printer's");
    }
    DocumentPlace place = PrinterDocument(name);
    if (place.perUser.empty()) {
        throw CFailure(ExitCode::NotKept, "you have no folder for application data",
                       "set HOME, or XDG_CONFIG_HOME to an absolute path");
    }
    if (!place.IsWithinReach()) {
        throw CFailure(ExitCode::Refused, "the path would be too long for the library: " + host::TextOf(place.perUser),
                       "give it a shorter name");
    }
    return place;
}

bool IsThere(const DocumentPlace& place) {
    return std::filesystem::exists(std::filesystem::symlink_status(place.perUser)) ||
           std::filesystem::exists(std::filesystem::symlink_status(place.installed));
}

Result ListPrinters(Context&) {
    RequireInstalledDocuments();
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const std::string& name : PrinterFileNames()) {
        const DocumentPlace place = PrinterDocument(name);
        result.data.Append(Value::Record{{"printer", host::TextOf(host::PathOf(name).stem())},
                                         {"document", name},
                                         {"installed", std::filesystem::is_regular_file(place.installed)},
                                         {"copy", StateName(place.UserState())}});
    }
    result.columns = {{"printer", "PRINTER", Format::Text},
                      {"installed", "INSTALLED", Format::Text},
                      {"copy", "YOUR COPY", Format::Text}};
    result.names = {"document"};
    return result;
}

Result AddPrinter(Context& context) {
    const DocumentPlace place = PrinterPlace(context, "NAME");
    if (IsThere(place)) {
        throw CFailure(ExitCode::Refused, "there is a printer " + place.name + " already",
                       std::filesystem::exists(place.perUser)
                           ? "see: cordelctl printer list"
                           : "to have a copy of it: cordelctl init --printer " + place.name);
    }
    std::string bytes = EmptyDocument();
    if (context.Has("--like")) {
        const DocumentPlace like = PrinterPlace(context, "--like");
        context.Printer(like.name); // it can be loaded
        bytes = host::ReadBytes(like.Loaded());
    }
    if (!context.Options().dryRun) {
        MakeCopy(place, bytes, Present::Kept);
    }
    Result result;
    result.data = Value::Record{{"printer", place.name}, {"path", host::TextOf(place.perUser)}};
    result.said.push_back((context.Options().dryRun ? "nothing was changed; this would be added: " : "added printer ") +
                          place.name + ": " + host::TextOf(place.perUser));
    return result;
}

Result RemovePrinter(Context& context) {
    const DocumentPlace place = PrinterPlace(context, "NAME");
    if (!IsThere(place)) {
        const auto known = PrinterFileNames();
        throw CFailure(ExitCode::Missing, "there is no printer " + place.name + DidYouMean(place.name, known),
                       "printers that there are: " + Joined(known, ", "));
    }
    if (place.UserState() == FileState::Absent) {
        throw CFailure(ExitCode::Refused, place.title + " is an installed one, of which you have no copy",
                       "who installed it can remove it: " + host::TextOf(place.installed));
    }
    Result result;
    const bool installed = std::filesystem::exists(place.installed);
    result.data =
        Value::Record{{"printer", place.name}, {"path", host::TextOf(place.perUser)}, {"installed", installed}};
    if (context.Options().dryRun) {
        result.said.push_back("nothing was changed; this would be removed: " + host::TextOf(place.perUser));
        return result;
    }
    CDocumentLocks locks(context.Options().wait, "printer remove " + place.name);
    locks.Take(place);
    CHistory history(place);
    const auto state = history.Keep("printer remove");
    std::error_code error;
    if (!std::filesystem::remove(place.perUser, error)) {
        throw CFailure(ExitCode::NotKept,
                       "nothing was removed: " + host::TextOf(place.perUser) + ": " + error.message());
    }
    result.said.push_back("removed " + host::TextOf(place.perUser));
    if (state) {
        result.said.push_back("to have it back: cordelctl restore " + std::to_string(state->number) + " --printer " +
                              place.name);
    }
    if (ForgetDigests(place)) {
        result.said.push_back("the digests of its files are gone; to keep them again: cordelctl files verify "
                              "--keep-digests --printer " +
                              place.name);
    }
    if (installed) {
        result.notes.push_back("the installed document of this printer is there again: " +
                               host::TextOf(place.installed));
    }
    return result;
}

Result RenamePrinter(Context& context) {
    const DocumentPlace from = PrinterPlace(context, "NAME");
    const DocumentPlace to = PrinterPlace(context, "NEW-NAME");
    if (from.UserState() == FileState::Absent) {
        throw CFailure(ExitCode::Missing,
                       "you have no document of a printer " + from.name + DidYouMean(from.name, PrinterFileNames()),
                       "an installed one keeps its name; to make one like it: cordelctl printer add NEW-NAME --like " +
                           from.name);
    }
    if (IsThere(to)) {
        throw CFailure(ExitCode::Refused, "there is a printer " + to.name + " already");
    }
    Result result;
    result.data = Value::Record{{"from", from.name}, {"to", to.name}, {"path", host::TextOf(to.perUser)}};
    if (context.Options().dryRun) {
        result.said.push_back("nothing was changed; " + from.name + " would be called " + to.name);
        return result;
    }
    CDocumentLocks locks(context.Options().wait, "printer rename " + from.name + " " + to.name);
    locks.Take(from);
    locks.Take(to);
    std::error_code error;
    std::filesystem::rename(from.perUser, to.perUser, error);
    if (error) {
        throw CFailure(ExitCode::NotKept, "nothing was renamed: " + error.message());
    }
    CHistory(from).MoveTo(to);
    MoveDigests(from, to);
    result.said.push_back("printer " + from.name + " is called " + to.name + " now");
    if (std::filesystem::exists(from.installed)) {
        result.notes.push_back("the installed document " + from.name +
                               " is there as well: " + host::TextOf(from.installed));
    }
    return result;
}

} // namespace

std::vector<Verb> DocumentVerbs() {
    const Option name{Option::Kind::Operand, "NAME", "", "The printer, with or without .xml", true, Offer::Printers};
    Verb init{
        "init",
        "Create your own copies of the installed documents; changes are kept only there. With --printer, of that "
        "document alone",
        Effect::None,
        &Init,
        {{Option::Kind::Flag, "--strings", "", "Copy the texts of the languages as well, to change them by hand"}}};
    init.tries = true;
    Verb reset{"reset",
               "Put the installed document in the place of your copy. What was there is kept: undo brings it back",
               Effect::None,
               &Reset,
               {{Option::Kind::Flag, "--yes", "", "Do not ask"},
                {Option::Kind::Flag, "--texts", "", "The texts of the language, not the main document"}},
               {},
               "cordelctl reset --printer Atrium --yes"};
    reset.tries = true;
    Verb add{"printer add",
             "Add a printer: a document of your own, with all containers and nothing in them",
             Effect::None,
             &AddPrinter,
             {{Option::Kind::Operand, "NAME", "", "Name of the printer", true},
              {Option::Kind::Text, "--like", "NAME", "Start with what this printer's document holds", false,
               Offer::Printers}},
             {},
             "cordelctl printer add \"Second floor\""};
    add.tries = true;
    Verb remove{"printer remove", "Remove your document of a printer", Effect::None, &RemovePrinter, {name}};
    remove.tries = true;
    Verb rename{"printer rename",
                "Give your document of a printer another name",
                Effect::None,
                &RenamePrinter,
                {name, {Option::Kind::Operand, "NEW-NAME", "", "Its new name", true}}};
    rename.tries = true;
    return {init,
            reset,
            {"paths", "Show which file of each document is read, which is written, and why", Effect::None, &Paths},
            {"printer list", "List the printers", Effect::None, &ListPrinters},
            add,
            remove,
            rename};
}
