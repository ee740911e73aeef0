// A document as its file has it, read without the library: every node in order, where it stands, and where the
// document stops being well-formed. All texts are UTF-8.

#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// A place in a file, counted from 1; all zero when it is not known.
struct SourcePlace {
    long line = 0;
    long column = 0;
};

struct DocumentAttribute {
    std::string name; // with its namespace prefix
    std::string value;
    bool operator==(const DocumentAttribute&) const = default;
};

enum class NodeKind { Element, Comment, Text, CData, Instruction };

struct DocumentNode {
    NodeKind kind = NodeKind::Element;
    std::string name; // of an element
    SourcePlace place;
    std::vector<DocumentAttribute> attributes; // in order
    std::vector<DocumentNode> children;        // in order; texts of nothing but white space are left out
};

struct DocumentError {
    std::string reason;
    SourcePlace place;
};

struct DocumentContent {
    std::string encoding; // as the file declares it or shows by its first bytes, in capitals
    DocumentNode root;    // the document element; as far as it could be read when there is an error
    int depth = 0;        // of elements within each other
    std::optional<DocumentError> error;
};

/// Never throws for what the file holds; a file that cannot be read gives an error without a place.
DocumentContent ReadDocument(const std::filesystem::path& path);
