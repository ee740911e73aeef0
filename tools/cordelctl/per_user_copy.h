// Makes the per-user copy of a document out of the installed one.

#pragma once

#include "document_places.h"

/// Throws when the user has no folder for copies, or the document is not installed.
void RequireCopyable(const DocumentPlace& place);

/// Copies the installed document to a file beside the per-user copy, to be put in its place (platform::Replace); the
/// user may write it. Throws std::filesystem::filesystem_error.
std::filesystem::path PrepareCopy(const DocumentPlace& place);
