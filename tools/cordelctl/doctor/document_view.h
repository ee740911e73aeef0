// How the library looks at a document: containers by tag name, rows, attributes by base name.

#pragma once

#include "document_reader.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// One item of a container.
struct Row {
    const DocumentNode* node;
    int number; // among the container's items, from 1
};

/// Calls `visit` for every element below the document element, in document order.
void ForEachElementBelow(const DocumentNode& root, const std::function<void(const DocumentNode&)>& visit);

/// The first element of this tag name below the document element; null when there is none.
const DocumentNode* FindContainerIn(const DocumentNode& root, std::string_view name);

/// The items of a container of the document; none when there is no such container.
std::vector<Row> RowsOf(const DocumentNode& root, std::string_view container);
std::vector<Row> RowsOf(const DocumentNode& container);

/// The name without its namespace prefix, which the library ignores.
std::string_view BaseName(std::string_view name);

/// The value of the row's first attribute of this base name; null when it has none.
const std::string* FindValueIn(const DocumentNode& row, std::string_view name);

/// The same, with an empty text for none.
std::string ValueIn(const DocumentNode& row, std::string_view name);

/// What a person can find the row by: its number, and its value of `key` if it has one.
std::string ItemName(const Row& row, std::string_view key);

/// Bytes that a text takes in the library's 8-bit strings.
std::size_t ByteLength(const std::string& utf8);

/// True for decimal digits without leading zeros: two IDs that are one number are then one text.
bool IsPlainNumber(std::string_view text);
