// A document as a plain tree of values, with nothing remembered beside it.

#pragma once

#include <pugixml.hpp>

#include <string>
#include <vector>

struct RefAttribute {
    std::string name; // with its prefix
    std::string text;
};

struct RefNode {
    enum class Kind { Element, Text, Comment, Instruction, Cdata };

    Kind kind = Kind::Element;
    std::string name; // of an element or an instruction
    std::string text; // of the others, and of an instruction
    std::vector<RefAttribute> attributes;
    std::vector<RefNode> children;
    bool bOutsideNamespace = false; // in no namespace, where a default one is declared
};

/// The tree as a document. Two texts never follow each other in it.
std::string WriteXml(const RefNode& root);

/// Whether all names in the tree keep to the rules of namespaces.
bool AreNamesRight(const RefNode& root);

/// Says of the elements that are in no namespace that they are, as it is said of them where they are saved.
void DeclareOutsideNamespace(RefNode& node);

/// The tree below a node of the DOM.
RefNode ReadTree(pugi::xml_node node);

/// Where the two trees differ, in words; empty when they do not.
std::string Difference(const RefNode& expected, pugi::xml_node actual);

/// Joins texts that follow each other, as they will be when the tree was saved and loaded.
void JoinTexts(RefNode& node);
