// A small XML reader of the tests' own, so that what the library saved is not judged by the library's parser.
// It is strict: what it refuses is not well-formed, or is more than the library ever writes.

#pragma once

#include <string>
#include <utility>
#include <vector>

/// The attributes of one element, in order, as UTF-8.
using Record = std::vector<std::pair<std::string, std::string>>;

struct SavedElement {
    std::string name;
    Record attributes;
    std::vector<SavedElement> children; // elements only
};

/// Reads a document in UTF-8 and returns its document element. Throws std::runtime_error, with the position, when the
/// document is not well-formed.
SavedElement ReadSavedDocument(const std::string& bytes);

/// The first element of this name in document order below `element`; null when there is none.
const SavedElement* FindBelow(const SavedElement& element, const std::string& name);

/// The attributes of each child of the first element of this name below `element`. Throws std::runtime_error when
/// there is no such element.
std::vector<Record> RecordsBelow(const SavedElement& element, const std::string& name);
