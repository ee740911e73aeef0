// Whether a local path is listed already.

#pragma once

#include "cordelbox.h"

/// Whether a file of the project has this local path, letters compared in one case.
bool IsPathListed(CXmlObject* document, const AnsiString& localPath);
