// Finds the rows of a container that the library cannot enumerate.
//
// A row can be read when one of its values is known, and most containers give no list of such values. The container
// "Index.<container>" keeps one: its items count from 1 in "ID", and "Value" is "<attribute>=<value>" of one row.

#pragma once

#include <string>
#include <vector>

struct RowKey {
    std::string attribute;
    std::string value;
    bool operator==(const RowKey&) const = default;
};

/// The rows that can be found, in the order in which they were added.
std::vector<RowKey> ReadIndex(const std::string& container);

/// Adds the row, unless it is there. Throws when the document has no such index. Saves.
void AddToIndex(const std::string& container, const RowKey& key);

/// Saves.
void ClearIndex(const std::string& container);
