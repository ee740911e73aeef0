// How the library looks at a document.

#include "document_view.h"

#include "platform/platform.h"

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

std::vector<Row> RowsOf(const DocumentNode& root, std::string_view container) {
    const DocumentNode* const found = FindContainerIn(root, container);
    return found != nullptr ? RowsOf(*found) : std::vector<Row>();
}

std::vector<Row> RowsOf(const DocumentNode& container) {
    std::vector<Row> rows;
    for (const DocumentNode& child : container.children) {
        if (child.kind == NodeKind::Element) {
            rows.push_back({&child, static_cast<int>(rows.size()) + 1});
        }
    }
    return rows;
}

std::string_view BaseName(std::string_view name) { return name.substr(name.rfind(':') + 1); }

const std::string* FindValueIn(const DocumentNode& row, std::string_view name) {
    const auto found =
        std::find_if(row.attributes.begin(), row.attributes.end(),
                     [name](const DocumentAttribute& attribute) { return BaseName(attribute.name) == name; });
    return found != row.attributes.end() ? &found->value : nullptr;
}

std::string ValueIn(const DocumentNode& row, std::string_view name) {
    const std::string* const value = FindValueIn(row, name);
    return value != nullptr ? *value : std::string();
}

std::string ItemName(const Row& row, std::string_view key) {
    const std::string number = "item " + std::to_string(row.number);
    const std::string* const value = key.empty() ? nullptr : FindValueIn(*row.node, key);
    return value != nullptr ? number + " (" + std::string(key) + " \"" + *value + "\")" : number;
}

std::size_t ByteLength(const std::string& utf8) { return platform::FromUtf8(utf8).size(); }

bool IsPlainNumber(std::string_view text) {
    return !text.empty() && (text == "0" || text.front() != '0') &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}
