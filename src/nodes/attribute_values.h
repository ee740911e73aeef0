// Single values of a document.

#pragma once

#include "cordelbox.h"

/// The attribute of the first child of the container that carries it; the empty string when none does.
AnsiString ReadValue(CXmlObject* document, AnsiString element, AnsiString attribute);

/// The attribute of the first child that carries it and whose attribute `filterName` is `filterValue`. On a miss the
/// filter's value: the engine leaves the filter pair where a result would stand, and hosts rely on it.
AnsiString ReadFilteredValue(CXmlObject* document, AnsiString element, AnsiString filterName, AnsiString filterValue,
                             AnsiString attribute);
