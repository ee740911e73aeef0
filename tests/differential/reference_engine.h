// The eight operations of the node engine, each as one plain walk over the tree: no table, no index, nothing kept from
// one operation to the next. What is easy to see is right here; what is fast is measured against it.

#pragma once

#include "reference_document.h"

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

enum class Operation {
    ReadAttribute,
    ListAllAttributes,
    CollectAttribute,
    ReadChild,
    WriteItem,
    WriteAttribute,
    RemoveItems,
    UpdateItem,
};
inline constexpr int kOperations = 8;

const char* NameOf(Operation operation);

struct RefQuery {
    int32_t count = 0;
    std::string element;
    std::string attribute;
    std::string value;
    std::vector<std::pair<std::string, std::string>> pairs;
};

/// Runs one operation on the document and returns its status.
int32_t RunReference(Operation operation, RefNode& root, RefQuery& query);
