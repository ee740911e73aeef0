// What holds for every container, whatever it is for.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "records/field_text.h"
#include "schema/schema.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

bool IsKnown(std::string_view name) { return FindContainerSchema(name) != nullptr; }

bool HasElements(const DocumentNode& node) { return !ItemsOf(node).empty(); }

void CheckMissing(const DocumentNode& root, DocumentKind kind, Findings& findings) {
    const auto check = [&](std::string_view name) {
        if (FindContainerIn(root, name) != nullptr) {
            return;
        }
        const std::string container(name);
        findings.push_back({kind == DocumentKind::Printer ? Level::Note : Level::Warning,
                            "container-missing",
                            container,
                            {},
                            root.place,
                            "The document has no container " + container + ".",
                            kind == DocumentKind::Strings
                                ? "Texts of it are empty, or the code in their place."
                                : "Reads of it miss, and what is written to it is dropped without a word: nothing "
                                  "creates a container.",
                            "Add <" + container + "/> below the document element."});
    };
    for (const ContainerSchema& container : Containers()) {
        if (container.inStrings == (kind == DocumentKind::Strings)) {
            check(container.name);
        }
    }
}

void CheckRepeated(const DocumentNode& root, Findings& findings) {
    std::map<std::string, const DocumentNode*> first;
    const auto check = [&](const DocumentNode& node) {
        const auto [known, added] = first.emplace(node.name, &node);
        if (added) {
            return;
        }
        findings.push_back(
            {Level::Warning,
             "container-repeated",
             node.name,
             {},
             node.place,
             "There is another " + node.name + " before this one" +
                 (known->second->place.line > 0 ? ", on line " + std::to_string(known->second->place.line) : "") + ".",
             "Only the first is ever read or written; what stands in this one is never seen.",
             "Move its items to the first, and remove it."});
    };
    for (const DocumentNode& child : root.children) {
        if (child.kind == NodeKind::Element && !IsKnown(child.name)) {
            check(child);
        }
    }
    ForEachElementBelow(root, [&](const DocumentNode& node) {
        if (IsKnown(node.name)) {
            check(node);
        }
    });
}

const char* NameOf(NodeKind kind) {
    switch (kind) {
    case NodeKind::Comment:
        return "A comment";
    case NodeKind::Text:
        return "Text";
    case NodeKind::CData:
        return "A CDATA section";
    default:
        return "A processing instruction";
    }
}

/// Reports the first node that is no element: reads get no further.
void CheckStrayNodes(const DocumentNode& container, Findings& findings) {
    int items = 0;
    for (const DocumentNode& child : container.children) {
        if (child.kind == NodeKind::Element) {
            ++items;
            continue;
        }
        const bool last = static_cast<std::size_t>(items) == ItemsOf(container).size();
        findings.push_back({last ? Level::Warning : Level::Error, "stray-node", container.name,
                            items == 0 ? "before the first item" : "behind item " + std::to_string(items), child.place,
                            std::string(NameOf(child.kind)) + " stands among the items.",
                            std::string("Every read that reaches it fails") +
                                (last ? "" : ", so that the items behind it are never found") +
                                ", and no item can be added any more.",
                            "Move it out of " + container.name + ", before or behind the container."});
        return;
    }
}

void CheckAttributes(const DocumentNode& container, bool limited, Findings& findings) {
    for (const Item& row : ItemsOf(container)) {
        std::set<std::string_view> names;
        for (const DocumentAttribute& attribute : row.node->attributes) {
            const std::string_view name = attribute.name;
            const auto add = [&](const char* check, std::string what, const char* consequence, const char* mend) {
                findings.push_back({Level::Warning, check, container.name, NameOfItem(row, {}), row.node->place,
                                    std::move(what), consequence, mend});
            };
            if (!names.insert(name).second) {
                add("attribute-repeated",
                    "Two attributes are called " + std::string(name) + ", apart from their namespace prefixes.",
                    "Prefixes are ignored: only the first is found by name, and positions shift.",
                    "Remove the one that is not meant.");
            }
            if (attribute.value.find("\xEF\xBF\xBD") != std::string::npos) {
                add("replacement-character", "The value of " + attribute.name + " holds U+FFFD.",
                    "It was written from bytes that are no characters of the code page; what stood there is lost.",
                    "Write the value again.");
            }
            if (limited && ByteLength(attribute.value) > kFieldLength && name != "Comment") {
                add("value-too-long",
                    "The value of " + attribute.name + " takes " + std::to_string(ByteLength(attribute.value)) +
                        " bytes.",
                    "A host that takes it into a field of 256 bytes cuts it or overruns the field.",
                    "Shorten it to at most 255 bytes.");
            }
        }
    }
}

} // namespace

void CheckStructure(const DocumentNode& root, DocumentKind kind, Findings& findings) {
    if (IsKnown(root.name)) {
        findings.push_back({Level::Error,
                            "container-is-document-element",
                            root.name,
                            {},
                            root.place,
                            "The document element is called " + root.name + ".",
                            "The document element is never a container: its items are not found.",
                            "Put the container into a document element of another name."});
    }
    bool any = false;
    ForEachElementBelow(root, [&](const DocumentNode& node) { any = any || IsKnown(node.name); });
    if (!any) {
        findings.push_back({Level::Warning,
                            "other-document",
                            {},
                            {},
                            root.place,
                            "The document element is " + root.name +
                                ", and no container is one that is known: this is a "
                                "document of another program.",
                            "Nothing is found in it.",
                            "Put the right document in its place: cordelctl history, cordelctl reset."});
    } else {
        CheckMissing(root, kind, findings);
    }
    CheckRepeated(root, findings);
    std::vector<const DocumentNode*> containers;
    for (const DocumentNode& child : root.children) {
        if (child.kind == NodeKind::Element) {
            containers.push_back(&child);
        }
    }
    for (const DocumentNode* const top : containers) {
        CheckStrayNodes(*top, findings);
        // Files and jobs have limits of their own.
        CheckAttributes(*top, kind != DocumentKind::Strings && top->name != "Files" && top->name != "Jobs", findings);
        ForEachElementBelow(*top, [&](const DocumentNode& node) {
            if (IsKnown(node.name) || HasElements(node)) {
                CheckStrayNodes(node, findings);
                CheckAttributes(node, kind != DocumentKind::Strings, findings);
            }
        });
    }
}
