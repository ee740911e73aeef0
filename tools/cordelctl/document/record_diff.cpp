// What differs between two documents, record by record.
//
// Items are paired by the attribute that is the key of their container, as long as no two items of a document share its
// value. The items of other containers are paired when they are equal; of what is left, the first with the first.

#include "document/record_diff.h"

#include "document/tree_view.h"
#include "schema/schema.h"

#include <algorithm>
#include <map>
#include <set>

namespace {

using Rows = std::vector<const DocumentNode*>;

Rows NodesOf(const DocumentNode& container) {
    Rows nodes;
    for (const Item& row : ItemsOf(container)) {
        nodes.push_back(row.node);
    }
    return nodes;
}

bool AreKeys(const Rows& rows, std::string_view key) {
    std::set<std::string> values;
    return std::all_of(rows.begin(), rows.end(), [&](const DocumentNode* row) {
        const std::string* const value = FindValueIn(*row, key);
        return value != nullptr && values.insert(*value).second;
    });
}

/// The key of the container's items; empty when they have none.
std::string_view KeyOf(std::string_view container, const Rows& before, const Rows& after) {
    const ContainerSchema* const known = FindContainerSchema(container);
    return known != nullptr && !known->key.empty() && AreKeys(before, known->key) && AreKeys(after, known->key)
               ? known->key
               : std::string_view();
}

std::vector<ChangedValue> Differences(const DocumentNode* before, const DocumentNode* after) {
    std::vector<ChangedValue> values;
    for (const DocumentNode* const row : {before, after}) {
        for (const DocumentAttribute& attribute : row != nullptr ? row->attributes : std::vector<DocumentAttribute>()) {
            const std::string name(attribute.name);
            const std::string* const old = before != nullptr ? FindValueIn(*before, name) : nullptr;
            const std::string* const now = after != nullptr ? FindValueIn(*after, name) : nullptr;
            const bool equal = old != nullptr && now != nullptr && *old == *now;
            const bool isNew = std::none_of(values.begin(), values.end(),
                                            [&](const ChangedValue& value) { return value.attribute == name; });
            if (!equal && isNew) {
                values.push_back({name, old != nullptr ? *old : "", now != nullptr ? *now : ""});
            }
        }
    }
    return values;
}

class CContainerComparison {
public:
    CContainerComparison(const std::string& name, const DocumentNode& before, const DocumentNode& after,
                         std::vector<RecordChange>& changes)
        : m_strName(name), m_before(NodesOf(before)), m_after(NodesOf(after)), m_key(KeyOf(name, m_before, m_after)),
          m_partners(m_before.size(), kNone), m_taken(m_after.size(), false), m_changes(changes) {}

    void Run() {
        if (!m_key.empty()) {
            Pair([this](const DocumentNode& left, const DocumentNode& right) {
                return ValueIn(left, m_key) == ValueIn(right, m_key);
            });
        } else {
            Pair([](const DocumentNode& left, const DocumentNode& right) {
                return left.attributes == right.attributes;
            });
            Pair([](const DocumentNode&, const DocumentNode&) { return true; });
        }
        Report();
    }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    template <class Belong>
    void Pair(Belong belong) {
        std::size_t start = 0; // of what is not taken: pairing in order stays fast
        for (std::size_t i = 0; i < m_before.size(); ++i) {
            while (start < m_after.size() && m_taken[start]) {
                ++start;
            }
            for (std::size_t k = start; m_partners[i] == kNone && k < m_after.size(); ++k) {
                if (!m_taken[k] && belong(*m_before[i], *m_after[k])) {
                    m_partners[i] = k;
                    m_taken[k] = true;
                }
            }
        }
    }

    std::string NameOf(const DocumentNode& row, std::size_t index) const {
        return NameOfItem({&row, static_cast<int>(index) + 1}, m_key);
    }

    void Report() {
        std::vector<std::size_t> order;
        for (std::size_t i = 0; i < m_before.size(); ++i) {
            if (m_partners[i] == kNone) {
                m_changes.push_back(
                    {Change::Removed, m_strName, NameOf(*m_before[i], i), Differences(m_before[i], nullptr)});
                continue;
            }
            order.push_back(m_partners[i]);
            auto values = Differences(m_before[i], m_after[m_partners[i]]);
            if (!values.empty()) {
                m_changes.push_back({Change::Changed, m_strName, NameOf(*m_before[i], i), std::move(values)});
            }
        }
        for (std::size_t k = 0; k < m_after.size(); ++k) {
            if (!m_taken[k]) {
                m_changes.push_back(
                    {Change::Added, m_strName, NameOf(*m_after[k], k), Differences(nullptr, m_after[k])});
            }
        }
        if (!std::is_sorted(order.begin(), order.end())) {
            m_changes.push_back({Change::Reordered, m_strName, {}, {}});
        }
    }

    const std::string& m_strName;
    Rows m_before;
    Rows m_after;
    std::string_view m_key;
    std::vector<std::size_t> m_partners; // of each item before, the index of the one after
    std::vector<bool> m_taken;
    std::vector<RecordChange>& m_changes;
};

/// Names of the containers of both documents, those of the first before those that only the second has.
std::vector<std::string> ContainerNames(const DocumentNode& before, const DocumentNode& after) {
    std::vector<std::string> names;
    std::set<std::string> seen;
    for (const DocumentNode* const root : {&before, &after}) {
        for (const Item& row : ItemsOf(*root)) {
            if (seen.insert(row.node->name).second) {
                names.push_back(row.node->name);
            }
        }
    }
    return names;
}

} // namespace

std::vector<RecordChange> CompareDocuments(const DocumentNode& before, const DocumentNode& after) {
    static const DocumentNode none{};
    std::vector<RecordChange> changes;
    for (const std::string& name : ContainerNames(before, after)) {
        const DocumentNode* const left = FindContainerIn(before, name);
        const DocumentNode* const right = FindContainerIn(after, name);
        if (left == nullptr || right == nullptr) {
            changes.push_back({left == nullptr ? Change::ContainerAdded : Change::ContainerRemoved, name, {}, {}});
        }
        CContainerComparison(name, left != nullptr ? *left : none, right != nullptr ? *right : none, changes).Run();
    }
    return changes;
}
