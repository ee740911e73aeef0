// What differs between two documents, container by container and record by record: layout, comments and the place of a
// container do not count.

#pragma once

#include "document/document_tree.h"

#include <string>
#include <vector>

enum class Change { ContainerAdded, ContainerRemoved, Added, Removed, Changed, Reordered };

struct ChangedValue {
    std::string attribute;
    std::string before; // empty as well when it was not there
    std::string after;
};

struct RecordChange {
    Change change;
    std::string container;
    std::string item;                 // by what a person finds it; empty for a whole container
    std::vector<ChangedValue> values; // of an added item its values, of a removed one those that it had
};

/// Changes from `before` to `after`, in the order of the containers.
std::vector<RecordChange> CompareDocuments(const DocumentNode& before, const DocumentNode& after);
