// How the library looks at a document.

#include "document/tree_view.h"

#include <algorithm>

void ForEachElementBelow(const DocumentNode& root, const std::function<void(const DocumentNode&)>& visit) {
    for (const DocumentNode& child : root.children) {
        if (child.kind == NodeKind::Element) {
            visit(child);
            ForEachElementBelow(child, visit);
        }
    }
}

const DocumentNode* FindContainerIn(const DocumentNode& root, std::string_view name) {
    for (const DocumentNode& child : root.children) {
        if (child.kind != NodeKind::Element) {
            continue;
        }
        if (child.name == name) {
            return &child;
        }
        if (const DocumentNode* const found = FindContainerIn(child, name); found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

std::vector<Item> ItemsOf(const DocumentNode& root, std::string_view container) {
    const DocumentNode* const found = FindContainerIn(root, container);
    return found != nullptr ? ItemsOf(*found) : std::vector<Item>();
}

std::vector<Item> ItemsOf(const DocumentNode& container) {
    std::vector<Item> rows;
    for (const DocumentNode& child : container.children) {
        if (child.kind == NodeKind::Element) {
            rows.push_back({&child, static_cast<int>(rows.size()) + 1});
        }
    }
    return rows;
}

const std::string* FindValueIn(const DocumentNode& row, std::string_view name) {
    const auto found = std::find_if(row.attributes.begin(), row.attributes.end(),
                                    [name](const DocumentAttribute& attribute) { return attribute.name == name; });
    return found != row.attributes.end() ? &found->value : nullptr;
}

std::string ValueIn(const DocumentNode& row, std::string_view name) {
    const std::string* const value = FindValueIn(row, name);
    return value != nullptr ? *value : std::string();
}

std::string NameOfItem(const Item& row, std::string_view key) {
    const std::string number = "item " + std::to_string(row.number);
    const std::string* const value = key.empty() ? nullptr : FindValueIn(*row.node, key);
    return value != nullptr ? number + " (" + std::string(key) + " \"" + *value + "\")" : number;
}
