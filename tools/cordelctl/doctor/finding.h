// What the doctor finds in a document.

#pragma once

#include "doctor/source_lines.h"
#include "document/document_tree.h"

#include <string>
#include <vector>

enum class Level {
    Note,    // worth knowing; nothing goes wrong
    Warning, // something is ignored or lost, or will be
    Error    // a host gets wrong values, is stopped, or cannot open the document
};

/// All texts are UTF-8.
struct Finding {
    Level level;
    std::string check;         // the same for every finding of its kind, for scripts
    std::string container;     // empty when it concerns the whole document
    std::string item;          // which of the container's items; empty when it concerns the whole container
    SourcePlace place;         // in the file
    std::string what;          // what is so
    std::string consequence;   // for a host
    std::string mend;          // what to do
    SourceExcerpt source = {}; // of the file at that place; empty when it is not known
};

using Findings = std::vector<Finding>;
