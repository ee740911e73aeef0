// The doctor at work.

#include "examination.h"

#include "document_view.h"
#include "failure.h"
#include "platform/platform.h"

#include <algorithm>
#include <set>

namespace {

Patient PatientAt(const DocumentPlace& place, const std::string& name, DocumentKind kind) {
    return {place.title, name, kind, place, place.Loaded()};
}

void AddNames(const std::filesystem::path& folder, std::set<std::string>& names) {
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder, none)) {
        const std::string name = platform::TextOf(entry.path().filename());
        if (entry.path().extension() == ".xml" && name != kMainDocumentName) {
            names.insert(name);
        }
    }
}

/// The kind of a file by itself, from what it holds.
DocumentKind KindOf(const DocumentNode& root) {
    const bool strings = FindContainerIn(root, "StringTable") != nullptr && FindContainerIn(root, "Files") == nullptr;
    return strings ? DocumentKind::Strings : DocumentKind::Printer;
}

void CheckContent(const DocumentNode& root, DocumentKind kind, Findings& findings) {
    CheckStructure(root, kind, findings);
    if (kind == DocumentKind::Strings) {
        CheckStrings(root, findings);
        return;
    }
    CheckFiles(root, findings);
    CheckIds(root, findings);
    CheckProfileSlots(root, findings);
    CheckJobs(root, findings);
    CheckPartitions(root, findings);
    CheckSettings(root, findings);
}

} // namespace

std::vector<Patient> AllPatients(const Globals& globals) {
    std::vector<Patient> patients{PatientAt(MainDocument(), "main", DocumentKind::Main)};
    std::set<std::string> printers;
    AddNames(MainDocument().installed.parent_path(), printers);
    AddNames(MainDocument().perUser.parent_path(), printers);
    for (const auto& name : printers) {
        patients.push_back(PatientAt(PrinterDocument(name), name, DocumentKind::Printer));
    }
    auto languages = InstalledLanguages();
    if (languages.empty()) {
        languages.push_back(globals.language);
    }
    for (const auto& language : languages) {
        patients.push_back(PatientAt(StringsDocument(language), language, DocumentKind::Strings));
    }
    return patients;
}

Patient FindPatient(const std::string& name, const Globals& globals) {
    std::string known;
    for (const Patient& patient : AllPatients(globals)) {
        if (name == patient.name || name + ".xml" == patient.name || platform::PathOf(name) == patient.file ||
            (patient.kind == DocumentKind::Main && (name == "Cordelbox" || name == kMainDocumentName))) {
            return patient;
        }
        known += (known.empty() ? "" : ", ") + patient.name;
    }
    const auto file = platform::PathOf(name);
    if (!std::filesystem::is_regular_file(file)) {
        throw CFailure(ExitCode::NoDocument, "there is no document \"" + name + "\"",
                       "give the path of a file, or one of: " + known);
    }
    return {name, name, DocumentKind::Printer, std::nullopt, file};
}

Examination Examine(const Patient& patient) {
    Examination result{patient, {}, {}};
    if (patient.place) {
        CheckPlace(*patient.place, patient.kind, result.findings);
    }
    if (!std::filesystem::is_regular_file(patient.file)) {
        return result;
    }
    const DocumentContent content = ReadDocument(patient.file);
    result.encoding = content.encoding;
    CheckForm(content, result.findings);
    if (!content.error) {
        const DocumentKind kind = patient.place ? patient.kind : KindOf(content.root);
        CheckContent(content.root, kind, result.findings);
    }
    std::stable_sort(result.findings.begin(), result.findings.end(),
                     [](const Finding& left, const Finding& right) { return left.level > right.level; });
    return result;
}
