// Which listed files a verb is meant for.

#pragma once

#include "context.h"
#include "document/document.h"

#include <vector>

/// The files that the operands FILE (FileIDs or paths), --where and --all name, each once and in order. Throws when
/// they name none, and for one that is not listed.
std::vector<Row> ChosenFiles(Context& context, CDocument& document);
