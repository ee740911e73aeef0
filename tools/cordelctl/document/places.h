// Where a document lies: the installed one beside the executable, the user's copy of it, and which of them counts.

#pragma once

#include "document/file_state.h"
#include "schema/schema.h"
#include "system/system.h"

#include <filesystem>
#include <string>
#include <vector>

struct DocumentPlace {
    std::string title; // for messages: "the main document", ...
    std::string name;  // what a user calls it: "main", the file name of a printer's document, a language
    DocumentKind kind = DocumentKind::Main;
    std::filesystem::path installed;
    std::filesystem::path perUser; // empty when the user has no folder for application data

    FileState UserState() const;

    /// True when the library finds the per-user copy, and so loads it and saves to it.
    bool IsKept() const { return UserState() == FileState::Writable; }

    /// The file that the library loads.
    const std::filesystem::path& Loaded() const { return IsKept() ? perUser : installed; }

    /// False when its paths are longer than the library handles.
    bool IsWithinReach() const;
};

inline constexpr const char* kMainDocumentName = "Cordelbox.xml";

DocumentPlace MainDocument();
DocumentPlace PrinterDocument(const std::string& fileName);
DocumentPlace StringsDocument(const std::string& language);

/// All installed main and printer documents: the ones that change.
std::vector<DocumentPlace> InstalledDocuments();

/// File names of the documents of all printers, installed or of the user alone, sorted.
std::vector<std::string> PrinterFileNames();

/// The installed languages.
std::vector<std::string> InstalledLanguages();

/// Throws when there are no installed documents beside the executable.
void RequireInstalledDocuments();

/// File name in the folder of documents for what the user called a printer. Throws for a name that is none.
std::string PrinterFileName(const std::string& name);

/// The main document, all printers' and the texts of all languages; one of `language` when none is installed.
std::vector<DocumentPlace> AllDocuments(const std::string& language);
