// How the library looks at a document: containers by tag name, rows, attributes by base name.

#pragma once

#include "document/document_tree.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// One item of a container.
struct Item {
    const DocumentNode* node;
    int number; // among the container's items, from 1
};

/// Calls `visit` for every element below the document element, in document order.
void ForEachElementBelow(const DocumentNode& root, const std::function<void(const DocumentNode&)>& visit);

/// The first element of this tag name below the document element; null when there is none.
const DocumentNode* FindContainerIn(const DocumentNode& root, std::string_view name);

/// The items of a container of the document; none when there is no such container.
std::vector<Item> ItemsOf(const DocumentNode& root, std::string_view container);
std::vector<Item> ItemsOf(const DocumentNode& container);

// Items point into the tree, which must live as long as they do.
std::vector<Item> ItemsOf(DocumentNode&& root, std::string_view container) = delete;
std::vector<Item> ItemsOf(DocumentNode&& container) = delete;

/// The value of the row's first attribute of this base name; null when it has none.
const std::string* FindValueIn(const DocumentNode& row, std::string_view name);

/// The same, with an empty text for none.
std::string ValueIn(const DocumentNode& row, std::string_view name);

/// What a person can find the row by: its number, and its value of `key` if it has one.
std::string NameOfItem(const Item& row, std::string_view key);
