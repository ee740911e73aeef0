// Where a document lies: the installed one beside the executable, the user's copy of it, and which of them counts.

#include "document_places.h"

#include "failure.h"
#include "platform/platform.h"

#include <algorithm>

namespace {

const std::filesystem::path kDocuments = std::filesystem::path("Cordelbox") / "xml";
const std::filesystem::path kLanguages = std::filesystem::path("Cordelbox") / "language";

DocumentPlace PlaceOf(std::string title, const std::filesystem::path& relative) {
    const auto root = platform::PerUserRoot();
    return {std::move(title), platform::ExecutableFolder() / relative,
            root.empty() ? root : root / "Marvane" / "Hollivet" / relative};
}

} // namespace

bool DocumentPlace::IsKept() const {
    return !perUser.empty() && platform::StateOf(perUser) == platform::FileState::Writable;
}

const std::filesystem::path& DocumentPlace::Loaded() const { return IsKept() ? perUser : installed; }

DocumentPlace MainDocument() { return PlaceOf("the main document", kDocuments / kMainDocumentName); }

DocumentPlace PrinterDocument(const std::string& fileName) {
    return PlaceOf("the printer document " + fileName, kDocuments / platform::PathOf(fileName));
}

DocumentPlace StringsDocument(const std::string& language) {
    return PlaceOf("the strings document for " + language, kLanguages / platform::PathOf(language) / "Strings.xml");
}

std::vector<DocumentPlace> InstalledDocuments() {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(platform::ExecutableFolder() / kDocuments)) {
        if (entry.is_regular_file() && entry.path().extension() == ".xml") {
            names.push_back(platform::TextOf(entry.path().filename()));
        }
    }
    std::sort(names.begin(), names.end());
    std::vector<DocumentPlace> places;
    places.reserve(names.size());
    for (const auto& name : names) {
        places.push_back(name == kMainDocumentName ? MainDocument() : PrinterDocument(name));
    }
    return places;
}

std::vector<std::string> InstalledLanguages() {
    std::vector<std::string> languages;
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(platform::ExecutableFolder() / kLanguages, none)) {
        if (std::filesystem::exists(entry.path() / "Strings.xml")) {
            languages.push_back(platform::TextOf(entry.path().filename()));
        }
    }
    std::sort(languages.begin(), languages.end());
    return languages;
}

void RequireInstalledDocuments() {
    const auto folder = platform::ExecutableFolder();
    if (!std::filesystem::is_directory(folder / kDocuments)) {
        throw CFailure(ExitCode::NoDocument,
                       "there are no documents beside the program: " + platform::TextOf(folder / kDocuments) +
                           " is missing",
                       "put a Cordelbox folder there (the samples folder of the sources has one)");
    }
}

std::string PrinterFileName(const std::string& name) {
    if (name.find_first_of("/\\") != std::string::npos || name == "." || name == "..") {
        throw CFailure(ExitCode::Usage, "\"" + name + "\" is not the name of a printer document",
                       "give a file name in the Cordelbox/xml folder, with or without .xml");
    }
    return std::filesystem::path(name).has_extension() ? name : name + ".xml";
}
