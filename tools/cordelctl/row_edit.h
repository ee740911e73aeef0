// Overwrites one attribute of one row that is picked by a key.
//
// The library overwrites an attribute only on the first row that carries it (WriteAttr), and copies whole rows only
// over rows that exist (CopyElement). So the new value is prepared in a container of its own, "Edit.<container>.
// <attribute>", whose one item carries the key and that attribute and nothing else, and is copied from there: no
// other attribute and no other row is touched, and no row is ever removed on the way.

#pragma once

#include <string>

/// Throws when the document has no such row or attribute, or cannot hold the value. Saves.
void OverwriteInRow(const std::string& container, const std::string& key, const std::string& keyValue,
                    const std::string& attribute, const std::string& value);

/// Overwrites an attribute on the first row that carries it. Throws likewise. Saves.
void OverwriteFirst(const std::string& container, const std::string& attribute, const std::string& value);
