// doctor: what the library would do with the documents as they are, and what is wrong with them.

#include "decoration.h"
#include "doctor/examination.h"
#include "doctor/mending.h"
#include "failure.h"
#include "platform/utf8.h"
#include "print.h"
#include "system/terminal.h"
#include "text/printable.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <iostream>

namespace {

const char* NameOf(Level level) {
    return level == Level::Error ? "error" : level == Level::Warning ? "warning" : "note";
}

/// The file that is loaded; null when there is none.
Value LoadedFile(const Patient& patient) {
    return std::filesystem::is_regular_file(patient.file) ? Value(host::TextOf(patient.file)) : Value();
}

/// The file that a change is saved in; null when it is lost.
Value SavedFile(const Patient& patient) {
    return patient.place && patient.place->IsKept() ? Value(host::TextOf(patient.place->perUser)) : Value();
}

Value DataOf(const Examination& examination) {
    Value findings = Value::List();
    for (const Finding& finding : examination.findings) {
        Value place = Value::Record{{"container", finding.container}, {"item", finding.item}};
        if (finding.place.line > 0) {
            place.Add("line", static_cast<std::int64_t>(finding.place.line));
            place.Add("column", static_cast<std::int64_t>(finding.place.column));
        }
        findings.Append(Value::Record{{"level", NameOf(finding.level)},
                                      {"check", finding.check},
                                      {"place", place},
                                      {"finding", finding.what},
                                      {"consequence", finding.consequence},
                                      {"mend", finding.mend},
                                      {"fixable", IsMendable(finding)}});
    }
    return Value::Record{{"document", examination.patient.name},
                         {"loaded", LoadedFile(examination.patient)},
                         {"saved", SavedFile(examination.patient)},
                         {"encoding", examination.encoding.empty() ? Value() : Value(examination.encoding)},
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

/// The line of the file, or the part of it around the place, with a mark under the place.
void AddSource(const Finding& finding, std::vector<std::string>& lines) {
    constexpr std::size_t kWidth = 70;
    if (finding.source.Empty()) {
        return;
    }
    std::string_view before = finding.source.before;
    while (DisplayWidth(Printable(before)) > kWidth / 2) {
        std::size_t first = 0;
        char32_t codePoint = 0;
        DecodeUtf8(before, first, codePoint);
        before.remove_prefix(first);
    }
    const std::string shown = Printable(before);
    lines.push_back("      | " + FitWidth(shown + Printable(finding.source.behind), kWidth));
    lines.push_back("      | " + std::string(DisplayWidth(shown), ' ') + "^");
}

void AddLines(const Examination& examination, std::vector<std::string>& lines) {
    const Patient& patient = examination.patient;
    lines.push_back(patient.title);
    if (patient.place) {
        const std::string loaded = LoadedFile(patient).Text();
        const std::string saved = SavedFile(patient).Text();
        lines.push_back("  loaded: " + (loaded.empty() ? "nothing" : loaded) +
                        (examination.encoding.empty() ? "" : " (" + examination.encoding + ")"));
        if (patient.kind != DocumentKind::Strings) {
            lines.push_back("  saved:  " + (saved.empty() ? "nowhere" : saved));
        }
    }
    for (const Finding& finding : examination.findings) {
        const std::string place = PlaceText(finding);
        lines.push_back("  " + std::string(NameOf(finding.level)) + (place.empty() ? "" : " in " + place) + ": " +
                        finding.what);
        AddSource(finding, lines);
        lines.push_back("      For a host: " + finding.consequence);
        lines.push_back("      To mend it: " + finding.mend +
                        (IsMendable(finding) ? " Or: cordelctl doctor --fix." : ""));
    }
    if (examination.findings.empty()) {
        lines.emplace_back("  nothing found");
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

std::vector<Patient> PatientsOf(const Context& context) {
    std::vector<Patient> patients;
    for (const auto& name : context.Texts("DOCUMENT")) {
        patients.push_back(FindPatient(name, context.Options()));
    }
    if (patients.empty()) {
        for (const auto& name : context.Options().printers) {
            patients.push_back(FindPatient(PrinterFileName(name), context.Options()));
        }
    }
    return patients.empty() ? AllPatients(context.Options()) : patients;
}

/// Mends a document, after showing what changes. Returns what was changed.
Result Mend(const Context& context, const Patient& patient) {
    const auto mend = [&](CSession& session) {
        CDocument& document = session.Open(*patient.place, Access::Change);
        MendDocument(document, Examine(patient).findings);
        return Result();
    };
    Globals trying = context.Options();
    trying.dryRun = true;
    Result differences = RunTransaction(trying, "doctor --fix", mend);
    if (differences.data.Items().empty() || context.Options().dryRun) {
        return differences;
    }
    if (!context.Has("--yes")) {
        if (!host::IsInputTerminal() || !host::IsErrorTerminal()) {
            throw CFailure(ExitCode::Usage, "nothing was changed",
                           "to see what would be: --dry-run; to mend without being asked: --yes");
        }
        PrintResult(differences, context.Options());
        host::FlushOutput();
        host::WriteError("Change it so? [y/N] ");
        std::string answer;
        std::getline(std::cin, answer);
        if (answer != "y" && answer != "Y" && answer != "yes") {
            throw CFailure(ExitCode::Usage, "nothing was changed");
        }
    }
    RunTransaction(context.Options(), "doctor --fix", mend);
    differences.said.front() = "mended in " + patient.title + ":";
    return differences;
}

Result Doctor(Context& context) {
    RequireInstalledDocuments();
    std::vector<Patient> patients = PatientsOf(context);
    Result result;
    Value mended = Value::List();
    if (context.Has("--fix")) {
        for (const Patient& patient : patients) {
            const auto findings = Examine(patient).findings;
            if (!patient.place || std::none_of(findings.begin(), findings.end(), IsMendable)) {
                continue;
            }
            const Result part = Mend(context, patient);
            result.said.insert(result.said.end(), part.said.begin(), part.said.end());
            for (const Value& change : part.data.Items()) {
                mended.Append(change);
            }
        }
        patients = PatientsOf(context);
    }
    std::vector<Examination> examinations;
    std::transform(patients.begin(), patients.end(), std::back_inserter(examinations), Examine);
    const std::size_t errors = CountOf(examinations, Level::Error);
    const std::size_t warnings = CountOf(examinations, Level::Warning);
    const std::size_t notes = CountOf(examinations, Level::Note);
    Value documents = Value::List();
    for (const Examination& examination : examinations) {
        documents.Append(DataOf(examination));
        AddLines(examination, result.said);
    }
    result.data = Value::Record{{"documents", documents}, {"errors", errors}, {"warnings", warnings}, {"notes", notes}};
    if (context.Has("--fix")) {
        result.data.Add("mended", mended);
    }
    result.said.push_back(Counted(examinations.size(), "document") + ": " + Counted(errors, "error") + ", " +
                          Counted(warnings, "warning") + ", " + Counted(notes, "note"));
    result.status = errors + warnings == 0 ? ExitCode::Done : ExitCode::No;
    return result;
}

} // namespace

std::vector<Verb> DoctorVerbs() {
    Verb doctor{
        "doctor",
        "Explain what the library would do with the documents as they are; with an error or a warning, the exit status "
        "is 1",
        Effect::None,
        &Doctor,
        {{Option::Kind::Operands, "DOCUMENT", "",
          "main, a printer, a language, or the path of a file; without, all that there are", false, Offer::Documents},
         {Option::Kind::Flag, "--fix", "", "Mend what has one right answer, after showing it"},
         {Option::Kind::Flag, "--yes", "", "With --fix: do not ask"}},
        {},
        "cordelctl doctor\ncordelctl doctor --fix --dry-run\ncordelctl doctor broken.xml"};
    doctor.tries = true;
    return {doctor};
}
