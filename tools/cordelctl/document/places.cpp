// Where a document lies.

#include "document/places.h"

#include "failure.h"
#include "store/document_paths.h"

#include <algorithm>
#include <set>

namespace {

const std::filesystem::path kDocuments = std::filesystem::path("Cordelbox") / "xml";
const std::filesystem::path kLanguages = std::filesystem::path("Cordelbox") / "language";

DocumentPlace PlaceOf(std::string title, std::string name, DocumentKind kind, const std::filesystem::path& relative) {
    const auto root = host::PerUserRoot();
    return {std::move(title), std::move(name), kind, host::ExecutableFolder() / relative,
            root.empty() ? root : root / "Marvane" / "Hollivet" / relative};
}

void AddPrinters(const std::filesystem::path& folder, std::set<std::string>& names) {
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder, none)) {
        const std::string name = host::TextOf(entry.path().filename());
        if (entry.path().extension() == ".xml" && name != kMainDocumentName && !name.starts_with('.')) {
            names.insert(name);
        }
    }
}

} // namespace

FileState DocumentPlace::UserState() const { return perUser.empty() ? FileState::Absent : StateOf(perUser); }

bool DocumentPlace::IsWithinReach() const {
    const auto fileName = installed.filename();
    const auto relative = kind == DocumentKind::Strings ? kLanguages / installed.parent_path().filename() / fileName
                                                        : kDocuments / fileName;
    const AnsiString path = InstallFolderPath(AnsiString(host::ToCodePage(host::TextOf(relative)).c_str()));
    return !path.empty() && !UserCopyPath(path).empty();
}

DocumentPlace MainDocument() {
    return PlaceOf("the main document", "main", DocumentKind::Main, kDocuments / kMainDocumentName);
}

DocumentPlace PrinterDocument(const std::string& fileName) {
    return PlaceOf("the printer document " + fileName, fileName, DocumentKind::Printer,
                   kDocuments / host::PathOf(fileName));
}

DocumentPlace StringsDocument(const std::string& language) {
    return PlaceOf("the strings document for " + language, language, DocumentKind::Strings,
                   kLanguages / host::PathOf(language) / "Strings.xml");
}

std::vector<DocumentPlace> InstalledDocuments() {
    std::vector<DocumentPlace> places{MainDocument()};
    std::set<std::string> printers;
    AddPrinters(MainDocument().installed.parent_path(), printers);
    std::transform(printers.begin(), printers.end(), std::back_inserter(places), PrinterDocument);
    return places;
}

std::vector<std::string> PrinterFileNames() {
    std::set<std::string> names;
    AddPrinters(MainDocument().installed.parent_path(), names);
    AddPrinters(MainDocument().perUser.parent_path(), names);
    return {names.begin(), names.end()};
}

std::vector<std::string> InstalledLanguages() {
    std::vector<std::string> languages;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(host::ExecutableFolder() / kLanguages, none)) {
        if (std::filesystem::exists(entry.path() / "Strings.xml")) {
            languages.push_back(host::TextOf(entry.path().filename()));
        }
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

void RequireInstalledDocuments() {
    const auto folder = host::ExecutableFolder() / kDocuments;
    if (!std::filesystem::is_directory(folder)) {
        throw CFailure(ExitCode::NoDocument,
                       "there are no documents beside the program: " + host::TextOf(folder) + " is missing",
                       "put a Cordelbox folder there (the samples folder of the sources has one)");
    }
}

std::string PrinterFileName(const std::string& name) {
    if (name.empty() || name.find_first_of("/\\") != std::string::npos || name.starts_with('.')) {
        throw CFailure(ExitCode::Usage, "\"" + name + "\" is not the name of a printer document",
                       "give a file name in the Cordelbox/xml folder, with or without .xml");
    }
    return host::PathOf(name).extension() == ".xml" ? name : name + ".xml";
}

std::vector<DocumentPlace> AllDocuments(const std::string& language) {
    std::vector<DocumentPlace> places{MainDocument()};
    for (const std::string& name : PrinterFileNames()) {
        places.push_back(PrinterDocument(name));
    }
    auto languages = InstalledLanguages();
    if (languages.empty()) {
        languages.push_back(language);
    }
    std::transform(languages.begin(), languages.end(), std::back_inserter(places), StringsDocument);
    return places;
}
