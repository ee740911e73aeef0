// What texts and names become on their way into a document, stated apart from the library.

#pragma once

#include <string>

/// The bytes as UTF-8: each maximal part that is ill-formed becomes one U+FFFD.
std::string ReferenceText(const std::string& bytes);

/// True when a document can hold the text, which is well-formed UTF-8.
bool IsDocumentText(const std::string& text);

/// The name without its prefix.
std::string BaseName(const std::string& name);

/// True when the text, which is well-formed UTF-8, is a name that an attribute can have. Knows the names of ASCII; all
/// letters beyond that are taken for letters of names.
bool IsDocumentName(const std::string& text);
