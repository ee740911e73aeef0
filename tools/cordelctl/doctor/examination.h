// The doctor at work: the documents that there are, and what is found in each.

#pragma once

#include "doctor/checks.h"
#include "doctor/finding.h"
#include "document/places.h"
#include "verb.h"

#include <optional>
#include <string>
#include <vector>

/// A document to look at: one that the library would open, or a file by itself.
struct Patient {
    std::string title; // for messages
    std::string name;  // what a user calls it
    DocumentKind kind = DocumentKind::Main;
    std::optional<DocumentPlace> place; // none for a file by itself
    std::filesystem::path file;         // what is looked at
};

struct Examination {
    Patient patient;
    std::string encoding; // in capitals; empty when the file cannot be read
    Findings findings;
};

/// The main document, all printer documents, installed or of the user alone, and the texts of all languages.
std::vector<Patient> AllPatients(const Globals& globals);

/// What the user means by "main", a printer, a language or the path of a file. Throws when there is no such document.
Patient FindPatient(const std::string& name, const Globals& globals);

Examination Examine(const Patient& patient);
