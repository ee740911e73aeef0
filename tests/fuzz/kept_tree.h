// What a document must still hold when it was saved and loaded again.

#pragma once

#include "reference_document.h"

/// Fails unless everything of `before` is in `after`: all nodes, texts and attributes, in their order. Elements may
/// have more attributes behind their own, which a type declaration gives to new ones, and the word that they are in no
/// namespace.
void RequireKept(RefNode before, RefNode after);
