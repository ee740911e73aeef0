// The filter lists of the strings document.

#pragma once

#include "cordelbox.h"

#include <vector>

/// Every text of a list, row by row.
std::vector<AnsiString> ListFilterTexts(CXmlObject* strings, AnsiString element);
