// Makes the per-user copies of documents, and new documents of printers.

#pragma once

#include "document/places.h"

#include <string>

/// Throws CFailure when the user has no folder for copies, or the document is not installed.
void RequireCopyable(const DocumentPlace& place);

/// What becomes of a copy that is there, also of one that another program made meanwhile.
enum class Present { Replaced, Kept };

/// Makes the per-user copy of these bytes, and its folders when they are not there. Throws CFailure (NotKept), and has
/// then left nothing behind, also when there is one that is kept.
void MakeCopy(const DocumentPlace& place, const std::string& bytes, Present present);

/// A document with every container that a printer's document can have, all empty.
std::string EmptyDocument();
