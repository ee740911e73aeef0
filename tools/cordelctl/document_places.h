// Where a document lies: the installed one beside the executable, the user's copy of it, and which of them counts.

#pragma once

#include <filesystem>
#include <string>
#include <vector>

struct DocumentPlace {
    std::string title; // for messages: "the main document", ...
    std::filesystem::path installed;
    std::filesystem::path perUser; // empty when the user has no folder for application data

    /// True when a change will be saved.
    bool IsKept() const;

    /// The file that the library loads.
    const std::filesystem::path& Loaded() const;
};

inline constexpr const char* kMainDocumentName = "Cordelbox.xml";

DocumentPlace MainDocument();
DocumentPlace PrinterDocument(const std::string& fileName);
DocumentPlace StringsDocument(const std::string& language);

/// All installed main and printer documents: the ones that change.
std::vector<DocumentPlace> InstalledDocuments();

/// The installed languages.
std::vector<std::string> InstalledLanguages();

/// Throws when there are no installed documents beside the executable.
void RequireInstalledDocuments();

/// File name in the folder of documents for what the user called a printer.
std::string PrinterFileName(const std::string& name);
