// The doctor at work.

#include "doctor/examination.h"

#include "doctor/document_encoding.h"
#include "doctor/source_lines.h"
#include "document/tree_view.h"
#include "failure.h"
#include "system/system.h"
#include "text/nearest.h"

#include <algorithm>
#include <iterator>

namespace {

/// None of a file that cannot be read, or is too large, which is said elsewhere.
std::string BytesOf(const std::filesystem::path& file) {
    try {
        return host::ReadBytes(file);
    } catch (const std::filesystem::filesystem_error&) {
        return {};
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
    CheckLocalFiles(root, findings);
    CheckStorage(root, findings);
    CheckIds(root, findings);
    CheckProfileSlots(root, findings);
    CheckJobs(root, findings);
    CheckPartitions(root, findings);
    CheckSettings(root, findings);
}

} // namespace

std::vector<Patient> AllPatients(const Globals& globals) {
    std::vector<Patient> patients;
    for (const DocumentPlace& place : AllDocuments(globals.language)) {
        patients.push_back({place.title, place.name, place.kind, place, place.Loaded()});
    }
    return patients;
}

Patient FindPatient(const std::string& name, const Globals& globals) {
    std::vector<std::string> known;
    for (const Patient& patient : AllPatients(globals)) {
        if (name == patient.name || name + ".xml" == patient.name || host::PathOf(name) == patient.file ||
            (patient.kind == DocumentKind::Main && (name == "Cordelbox" || name == kMainDocumentName))) {
            return patient;
        }
        known.push_back(patient.name);
    }
    const auto file = host::PathOf(name);
    if (!std::filesystem::is_regular_file(file)) {
        throw CFailure(ExitCode::NoDocument, "there is no document \"" + name + "\"" + DidYouMean(name, known),
                       "give the path of a file, or one of: " + Joined(known, ", "));
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
    DocumentError error;
    const auto document = CDocument::TryLoad(patient.file, error, DomPositions::Noted);
    const std::string bytes = BytesOf(patient.file);
    result.encoding = EncodingOf(bytes);
    if (document == nullptr) {
        CheckForm(bytes, error, result.findings);
    } else {
        CheckEncoding(bytes, result.findings);
        const DocumentNode root = document->Tree();
        CheckContent(root, patient.place ? patient.kind : KindOf(root), result.findings);
    }
    CSourceLines lines(bytes);
    for (Finding& finding : result.findings) {
        finding.source = lines.At(finding.place);
    }
    // The worst first, otherwise in the order in which they were found.
    std::vector<Finding> findings;
    for (const Level level : {Level::Error, Level::Warning, Level::Note}) {
        std::copy_if(result.findings.begin(), result.findings.end(), std::back_inserter(findings),
                     [level](const Finding& finding) { return finding.level == level; });
    }
    result.findings = std::move(findings);
    return result;
}
