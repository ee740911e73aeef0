// diff: what differs between two documents, by record.

#include "verbs.h"

#include "decoration.h"
#include "doctor/examination.h"
#include "document_choice.h"
#include "document_places.h"
#include "output.h"
#include "platform/platform.h"
#include "record_diff.h"

#include <algorithm>
#include <iostream>

namespace {

struct Options {
    std::vector<std::string> documents;
    bool texts = false;
};

struct Comparison {
    ChosenDocument before;
    ChosenDocument after;
};

/// The installed document and its per-user copy, or the two that are named.
Comparison Chosen(const Globals& globals, const Options& options) {
    if (options.documents.empty()) {
        RequireInstalledDocuments();
        const DocumentPlace place = options.texts             ? StringsDocument(globals.language)
                                    : globals.printer.empty() ? MainDocument()
                                                              : PrinterDocument(PrinterFileName(globals.printer));
        if (!std::filesystem::is_regular_file(place.perUser)) {
            throw CFailure(ExitCode::NoDocument, "there is no per-user copy of " + place.title,
                           "name two documents to compare those");
        }
        return {{place.title + " as installed", place.installed}, {"your copy of " + place.title, place.perUser}};
    }
    if (options.documents.size() != 2) {
        throw CFailure(ExitCode::Usage, "one document cannot be compared",
                       "name two, or none to compare the installed document with your copy");
    }
    const Patient before = FindPatient(options.documents[0], globals);
    const Patient after = FindPatient(options.documents[1], globals);
    return {{before.title, before.file}, {after.title, after.file}};
}

const char* NameOf(Change change) {
    switch (change) {
    case Change::ContainerAdded:
        return "container-added";
    case Change::ContainerRemoved:
        return "container-removed";
    case Change::Added:
        return "added";
    case Change::Removed:
        return "removed";
    case Change::Changed:
        return "changed";
    case Change::Reordered:
        return "reordered";
    }
    return "";
}

Json JsonOf(const RecordChange& change) {
    Json values = Json::array();
    for (const ChangedValue& value : change.values) {
        values.push_back({{"attribute", value.attribute}, {"before", value.before}, {"after", value.after}});
    }
    return {
        {"container", change.container}, {"change", NameOf(change.change)}, {"item", change.item}, {"values", values}};
}

void Print(std::string line, Colour colour) {
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    std::cout << Coloured(platform::FromUtf8(line), colour) << '\n';
}

std::string ValuesOf(const RecordChange& change) {
    std::string text;
    for (const ChangedValue& value : change.values) {
        text += (text.empty() ? "" : " ") + value.attribute + "=\"" +
                (change.change == Change::Added ? value.after : value.before) + "\"";
    }
    return text;
}

void Print(const RecordChange& change) {
    switch (change.change) {
    case Change::ContainerAdded:
        Print("+ " + change.container, Colour::Green);
        break;
    case Change::ContainerRemoved:
        Print("- " + change.container, Colour::Red);
        break;
    case Change::Added:
        Print("+ " + change.container + " " + change.item + ": " + ValuesOf(change), Colour::Green);
        break;
    case Change::Removed:
        Print("- " + change.container + " " + change.item + ": " + ValuesOf(change), Colour::Red);
        break;
    case Change::Reordered:
        Print("~ " + change.container + ": the items stand in another order", Colour::Yellow);
        break;
    case Change::Changed:
        for (const ChangedValue& value : change.values) {
            Print("~ " + change.container + " " + change.item + ": " + value.attribute + " \"" + value.before +
                      "\" is now \"" + value.after + "\"",
                  Colour::Yellow);
        }
        break;
    }
}

ExitCode Compare(const Globals& globals, const Options& options) {
    const Comparison comparison = Chosen(globals, options);
    const auto changes = CompareDocuments(ReadChosen(comparison.before), ReadChosen(comparison.after));
    if (globals.json) {
        Json rows = Json::array();
        std::transform(changes.begin(), changes.end(), std::back_inserter(rows), JsonOf);
        PrintJson(rows);
    } else {
        Say(globals, "from " + comparison.before.title + " to " + comparison.after.title + ":");
        for (const RecordChange& change : changes) {
            Print(change);
        }
        if (changes.empty()) {
            Say(globals, "no difference");
        }
    }
    return changes.empty() ? ExitCode::Done : ExitCode::No;
}

} // namespace

void AddDiffVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const diff =
        app.add_subcommand("diff", "Compare the installed document with your copy, or two documents, item by item; "
                                   "with a difference, the exit status is 1");
    diff->add_option("DOCUMENT", options->documents, "main, a printer, a language, or the path of a file")
        ->expected(0, 2);
    diff->add_flag("--texts", options->texts, "Compare the texts of the language, not the main document");
    diff->callback([&host, options] { host.exit = Compare(host.globals, *options); });
}
