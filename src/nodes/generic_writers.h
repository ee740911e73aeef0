// Writing without any knowledge of what a document holds.

#pragma once

#include "cordelbox.h"
#include "store/outcome.h"

/// Overwrites the attribute of the first child of the container that carries it. Creates nothing.
COutcome WriteValue(CXmlObject* document, AnsiString element, AnsiString attribute, AnsiString value);

/// Removes every child of the container; NoSuchRow when it has none.
COutcome ClearContainer(CXmlObject* document, AnsiString element);
