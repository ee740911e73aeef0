// doctor: what the library would do with the documents as they are, and what is wrong with them.

#include "verbs.h"

#include "decoration.h"
#include "doctor/examination.h"
#include "output.h"
#include "platform/platform.h"

#include <algorithm>
#include <iostream>

namespace {

struct Options {
    std::vector<std::string> documents;
};

const char* NameOf(Level level) {
    return level == Level::Error ? "error" : level == Level::Warning ? "warning" : "note";
}

Colour ColourOf(Level level) {
    return level == Level::Error ? Colour::Red : level == Level::Warning ? Colour::Yellow : Colour::Blue;
}

std::string Utf8(const std::filesystem::path& path) { return platform::ToUtf8(platform::TextOf(path)); }

/// The file that is loaded; empty when there is none.
std::string LoadedFile(const Patient& patient) {
    return std::filesystem::is_regular_file(patient.file) ? Utf8(patient.file) : std::string();
}

/// The file that a change is saved in; empty when it is lost.
std::string SavedFile(const Patient& patient) {
    return patient.place && patient.place->IsKept() ? Utf8(patient.place->perUser) : std::string();
}

Json JsonOf(const Examination& examination) {
    Json findings = Json::array();
    for (const Finding& finding : examination.findings) {
        Json place = {{"container", finding.container}, {"item", finding.item}};
        if (finding.place.line > 0) {
            place["line"] = finding.place.line;
            place["column"] = finding.place.column;
        }
        findings.push_back({{"level", NameOf(finding.level)},
                            {"check", finding.check},
                            {"place", place},
                            {"finding", finding.what},
                            {"consequence", finding.consequence},
                            {"mend", finding.mend}});
    }
    const auto orNull = [](const std::string& text) { return text.empty() ? Json() : Json(text); };
    return {{"document", JsonText(examination.patient.name)},
            {"loaded", orNull(LoadedFile(examination.patient))},
            {"saved", orNull(SavedFile(examination.patient))},
            {"encoding", orNull(examination.encoding)},
            {"findings", findings}};
}

std::string PlaceText(const Finding& finding) {
    std::string place = finding.container;
    const auto add = [&place](const std::string& text) { place += (place.empty() ? "" : ", ") + text; };
    if (!finding.item.empty()) {
        add(finding.item);
    }
    if (finding.place.line > 0) {
        add("line " + std::to_string(finding.place.line) + ", column " + std::to_string(finding.place.column));
    }
    return place;
}

void Print(const std::string& utf8) {
    std::string line = utf8;
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    std::cout << platform::FromUtf8(line) << '\n';
}

void Print(const Examination& examination) {
    const Patient& patient = examination.patient;
    const std::string loaded = LoadedFile(patient);
    const std::string saved = SavedFile(patient);
    Print(platform::ToUtf8(patient.title));
    if (patient.place) {
        Print("  loaded: " + (loaded.empty() ? "nothing" : loaded) +
              (examination.encoding.empty() ? "" : " (" + examination.encoding + ")"));
        if (patient.kind != DocumentKind::Strings) {
            Print("  saved:  " + (saved.empty() ? "nowhere" : saved));
        }
    }
    for (const Finding& finding : examination.findings) {
        const std::string place = PlaceText(finding);
        std::cout << "  " << Coloured(NameOf(finding.level), ColourOf(finding.level));
        Print((place.empty() ? "" : " in " + place) + ": " + finding.what);
        Print("      For a host: " + finding.consequence);
        Print("      To mend it: " + finding.mend);
    }
    if (examination.findings.empty()) {
        std::cout << "  " << Coloured("nothing found", Colour::Green) << '\n';
    }
}

std::size_t CountOf(const std::vector<Examination>& examinations, Level level) {
    std::size_t count = 0;
    for (const Examination& examination : examinations) {
        count +=
            static_cast<std::size_t>(std::count_if(examination.findings.begin(), examination.findings.end(),
                                                   [level](const Finding& finding) { return finding.level == level; }));
    }
    return count;
}

std::string Counted(std::size_t count, const std::string& what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

ExitCode Examine(const Globals& globals, const Options& options) {
    std::vector<Patient> patients;
    for (const auto& name : options.documents) {
        patients.push_back(FindPatient(name, globals));
    }
    if (options.documents.empty()) {
        patients = AllPatients(globals);
    }
    std::vector<Examination> examinations;
    for (const Patient& patient : patients) {
        examinations.push_back(Examine(patient));
    }
    const std::size_t errors = CountOf(examinations, Level::Error);
    const std::size_t warnings = CountOf(examinations, Level::Warning);
    const std::size_t notes = CountOf(examinations, Level::Note);
    if (globals.json) {
        Json documents = Json::array();
        for (const Examination& examination : examinations) {
            documents.push_back(JsonOf(examination));
        }
        PrintJson({{"documents", documents}, {"errors", errors}, {"warnings", warnings}, {"notes", notes}});
    } else {
        for (const Examination& examination : examinations) {
            Print(examination);
        }
        std::cout << Counted(examinations.size(), "document") << ": " << Counted(errors, "error") << ", "
                  << Counted(warnings, "warning") << ", " << Counted(notes, "note") << '\n';
    }
    return errors + warnings == 0 ? ExitCode::Done : ExitCode::No;
}

} // namespace

void AddDoctorVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const doctor =
        app.add_subcommand("doctor", "Explain what the library would do with the documents as they are; with an error "
                                     "or a warning, the exit status is 1");
    doctor->add_option("DOCUMENT", options->documents,
                       "main, a printer, a language, or the path of a file; without, all that there are");
    doctor->callback([&host, options] { host.exit = Examine(host.globals, *options); });
}
