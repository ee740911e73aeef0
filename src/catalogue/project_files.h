// Adding files to a project.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"

/// Adds a file, not ticked, with the details that its Type calls for.
COutcome AddProjectFile(CXmlObject* document, const FileItem& file);

/// Adds a row with "ID" and "Value".
COutcome AddTestFileName(CXmlObject* document, AnsiString element, AnsiString id, AnsiString value);
