// The document that a verb reads whole, without the library: containers cannot be enumerated through its functions.

#pragma once

#include "doctor/document_reader.h"
#include "globals.h"

#include <filesystem>
#include <string>

struct ChosenDocument {
    std::string title; // for messages
    std::filesystem::path file;
};

/// The document that the options of the program mean, as the library would load it; `texts` for the strings document.
ChosenDocument CurrentChoice(const Globals& globals, bool texts);

/// Its content. Throws when it is not there or not well-formed.
DocumentNode ReadChosen(const ChosenDocument& chosen);
