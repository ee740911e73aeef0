#include "reference_engine.h"

#include "reference_text.h"

#include <cstddef>
#include <utility>

namespace {

/// What a DOM reports as an error; it ends the operation with status 1.
struct RefError {};

/// The pairs of a query with a cursor, as the rule of the filter is told: rewind, compare, move on.
class CCursor {
public:
    explicit CCursor(const RefQuery& query) : m_query(query) {}
    void Rewind() { m_nIndex = 0; }
    void MoveNext() { ++m_nIndex; }
    bool IsOnPair() const { return m_nIndex < m_query.pairs.size(); }
    std::string Name() const { return IsOnPair() ? ReferenceText(m_query.pairs[m_nIndex].first) : ""; }
    std::string Value() const { return IsOnPair() ? ReferenceText(m_query.pairs[m_nIndex].second) : ""; }

private:
    const RefQuery& m_query;
    std::size_t m_nIndex = 0;
};

/// The first element of that name in document order below `node`.
RefNode* FindBelow(RefNode& node, const std::string& name) {
    for (RefNode& child : node.children) {
        if (child.kind == RefNode::Kind::Element && child.name == name) {
            return &child;
        }
        if (RefNode* const found = FindBelow(child, name); found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

std::vector<RefAttribute>& AttributesOf(RefNode& node) {
    if (node.kind != RefNode::Kind::Element) {
        throw RefError();
    }
    return node.attributes;
}

/// The rule of the filter. An attribute counts once when it equals one of the first `count` pairs; the child passes as
/// soon as `count` attributes have counted.
bool Passes(RefNode& child, const RefQuery& query) {
    CCursor cursor(query);
    int32_t matched = 0;
    for (const RefAttribute& attribute : AttributesOf(child)) {
        cursor.Rewind();
        // An exhausted cursor reads empty names, which no attribute has: the surplus rounds are left out.
        for (int32_t round = 0; round < query.count && cursor.IsOnPair(); ++round) {
            if (cursor.Name() == BaseName(attribute.name) && cursor.Value() == attribute.text) {
                ++matched;
                break;
            }
            cursor.MoveNext();
        }
        if (matched == query.count) {
            return true;
        }
    }
    return false;
}

bool HasPair(RefNode& child, const std::string& name, const std::string& value) {
    for (const RefAttribute& attribute : AttributesOf(child)) {
        if (BaseName(attribute.name) == ReferenceText(name) && attribute.text == ReferenceText(value)) {
            return true;
        }
    }
    return false;
}

std::string CheckedText(const std::string& bytes) {
    std::string text = ReferenceText(bytes);
    if (!IsDocumentText(text)) {
        throw RefError();
    }
    return text;
}

void Deliver(RefQuery& query, const RefAttribute& attribute) {
    query.pairs.emplace_back(BaseName(attribute.name), attribute.text);
    ++query.count;
}

void DropPairs(RefQuery& query) {
    query.pairs.clear();
    query.count = 0;
}

int32_t ReadAttribute(RefNode& container, RefQuery& query) {
    for (RefNode& child : container.children) {
        std::vector<RefAttribute>& attributes = AttributesOf(child);
        if (query.count != 0 && !Passes(child, query)) {
            continue;
        }
        for (const RefAttribute& attribute : attributes) {
            if (BaseName(attribute.name) == ReferenceText(query.attribute)) {
                DropPairs(query);
                Deliver(query, attribute);
                return 0;
            }
        }
    }
    return 1;
}

int32_t ListAllAttributes(RefNode& container, RefQuery& query) {
    DropPairs(query);
    for (RefNode& child : container.children) {
        for (const RefAttribute& attribute : AttributesOf(child)) {
            Deliver(query, attribute);
        }
    }
    return query.count != 0 ? 0 : 1;
}

int32_t CollectAttribute(RefNode& container, RefQuery& query) {
    if (query.count != 0) {
        return 1;
    }
    DropPairs(query);
    for (RefNode& child : container.children) {
        for (const RefAttribute& attribute : AttributesOf(child)) {
            if (BaseName(attribute.name) == query.attribute) {
                Deliver(query, attribute);
            }
        }
    }
    return query.count != 0 ? 0 : 1;
}

int32_t ReadChild(RefNode& container, RefQuery& query) {
    for (RefNode& child : container.children) {
        if (query.count == 0 ? HasPair(child, query.attribute, query.value) : Passes(child, query)) {
            DropPairs(query);
            for (const RefAttribute& attribute : child.attributes) {
                Deliver(query, attribute);
            }
            return 0;
        }
    }
    return 1;
}

/// Whether a name bears on namespaces.
bool IsQualified(const std::string& name) { return name == "xmlns" || name.find(':') != std::string::npos; }

/// Sets an attribute's text in the document that it is a part of.
void SetText(const RefNode& root, RefAttribute& attribute, const std::string& text) {
    const std::string former = attribute.text;
    attribute.text = CheckedText(text);
    if (IsQualified(attribute.name) && !AreNamesRight(root)) {
        attribute.text = former;
        throw RefError();
    }
}

/// Whether elements without prefix are in a namespace inside `wanted`, which lies somewhere in `node`.
bool HasDefaultNamespace(const RefNode& node, const RefNode& wanted, bool bOutside, bool& bFound) {
    bool bInside = bOutside;
    for (const RefAttribute& attribute : node.attributes) {
        bInside = attribute.name == "xmlns" ? !attribute.text.empty() : bInside;
    }
    if (&node == &wanted) {
        bFound = true;
        return bInside;
    }
    for (const RefNode& child : node.children) {
        const bool bThere = HasDefaultNamespace(child, wanted, bInside, bFound);
        if (bFound) {
            return bThere;
        }
    }
    return false;
}

RefNode NewItem(const RefQuery& query) {
    RefNode item;
    item.name = "Item";
    CCursor cursor(query);
    cursor.Rewind();
    for (int32_t round = 0; round < query.count; ++round) {
        const std::string name = cursor.Name();
        const std::string text = CheckedText(cursor.Value());
        if (!IsDocumentName(name)) {
            throw RefError();
        }
        bool bThere = false;
        for (RefAttribute& attribute : item.attributes) {
            if (attribute.name == name) {
                attribute.text = text;
                bThere = true;
            }
        }
        if (!bThere) {
            item.attributes.push_back({name, text});
        }
        cursor.MoveNext();
    }
    return item;
}

/// Appends an item that the document can hold where it is to stand.
void Append(const RefNode& root, RefNode& container, RefNode item) {
    bool bFound = false;
    item.bOutsideNamespace = HasDefaultNamespace(root, container, false, bFound);
    for (const RefAttribute& attribute : item.attributes) {
        item.bOutsideNamespace = item.bOutsideNamespace && attribute.name != "xmlns";
    }
    container.children.push_back(std::move(item));
    if (!AreNamesRight(root)) {
        container.children.pop_back();
        throw RefError();
    }
}

int32_t WriteItem(const RefNode& root, RefNode& container, const RefQuery& query) {
    const std::size_t n = container.children.size();
    if (n == 0 && query.count == 0) {
        return 0;
    }
    std::size_t unequal = 0;
    std::size_t removed = 0;
    for (std::size_t index = n; index > 0; --index) {
        if (query.count == 0) {
            container.children.erase(container.children.begin() + static_cast<std::ptrdiff_t>(index - 1));
            ++removed;
        } else if (query.count > 0 && !Passes(container.children[index - 1], query)) {
            ++unequal;
        }
    }
    if (query.count >= 1 && unequal == n) {
        Append(root, container, NewItem(query));
        return 0;
    }
    return query.count == 0 && removed == n ? 0 : 1;
}

int32_t WriteAttribute(const RefNode& root, RefNode& container, const RefQuery& query) {
    for (RefNode& child : container.children) {
        std::vector<RefAttribute>& attributes = AttributesOf(child);
        if (query.count != 0 && !Passes(child, query)) {
            continue;
        }
        for (RefAttribute& attribute : attributes) {
            if (BaseName(attribute.name) == ReferenceText(query.attribute)) {
                SetText(root, attribute, query.value);
                return 0;
            }
        }
    }
    return 1;
}

int32_t RemoveItems(RefNode& container, const RefQuery& query) {
    std::size_t removed = 0;
    std::size_t limit = container.children.size();
    for (std::size_t index = 0; index < limit;) {
        if (query.count == 0) {
            container.children.erase(container.children.begin() + static_cast<std::ptrdiff_t>(index));
            ++removed;
            --limit;
        } else if (Passes(container.children[index], query)) {
            container.children.erase(container.children.begin() + static_cast<std::ptrdiff_t>(index));
            ++removed;
            break;
        } else {
            ++index;
        }
    }
    return removed > 0 ? 0 : 1;
}

int32_t UpdateItem(const RefNode& root, RefNode& container, const RefQuery& query) {
    for (RefNode& child : container.children) {
        if (!HasPair(child, query.attribute, query.value)) {
            continue;
        }
        CCursor cursor(query);
        for (RefAttribute& attribute : child.attributes) {
            cursor.Rewind();
            for (int32_t round = 0; round < query.count && cursor.IsOnPair(); ++round) {
                if (cursor.Name() == BaseName(attribute.name)) {
                    SetText(root, attribute, cursor.Value());
                    break;
                }
                cursor.MoveNext();
            }
        }
        return 0;
    }
    return 1;
}

int32_t Run(Operation operation, const RefNode& root, RefNode& container, RefQuery& query) {
    switch (operation) {
    case Operation::ReadAttribute:
        return ReadAttribute(container, query);
    case Operation::ListAllAttributes:
        return ListAllAttributes(container, query);
    case Operation::CollectAttribute:
        return CollectAttribute(container, query);
    case Operation::ReadChild:
        return ReadChild(container, query);
    case Operation::WriteItem:
        return WriteItem(root, container, query);
    case Operation::WriteAttribute:
        return WriteAttribute(root, container, query);
    case Operation::RemoveItems:
        return RemoveItems(container, query);
    case Operation::UpdateItem:
        return UpdateItem(root, container, query);
    }
    return 1;
}

} // namespace

const char* NameOf(Operation operation) {
    static constexpr const char* names[kOperations] = {"ReadAttribute", "ListAllAttributes", "CollectAttribute",
                                                       "ReadChild",     "WriteItem",         "WriteAttribute",
                                                       "RemoveItems",   "UpdateItem"};
    return names[static_cast<int>(operation)];
}

int32_t RunReference(Operation operation, RefNode& root, RefQuery& query) {
    RefNode* const container = FindBelow(root, ReferenceText(query.element));
    if (container == nullptr) {
        return 1;
    }
    try {
        return Run(operation, root, *container, query);
    } catch (const RefError&) {
        return 1;
    }
}
