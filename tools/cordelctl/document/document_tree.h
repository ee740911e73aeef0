// A document as the library loaded it, copied into a tree: every node in order, and where it stands in its file. For
// what looks at a whole document: the doctor, comparisons, `tree`. All texts are UTF-8.

#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// A place in a file, counted from 1; all zero when it is not known.
struct SourcePlace {
    long line = 0;
    long column = 0;
    bool operator==(const SourcePlace&) const = default;
};

struct DocumentAttribute {
    std::string name; // without its namespace prefix, which the library ignores
    std::string value;
    bool operator==(const DocumentAttribute&) const = default;
};

enum class NodeKind { Element, Comment, Text, CData, Instruction };

struct DocumentNode {
    NodeKind kind = NodeKind::Element;
    std::string name; // of an element, with its namespace prefix
    SourcePlace place = {};
    std::vector<DocumentAttribute> attributes = {}; // in order
    std::vector<DocumentNode> children = {};        // in order; texts of nothing but white space are left out
};
