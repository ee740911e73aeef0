// The IDs under which a printer stores files: one of a kind in each group.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "schema/schema.h"

#include <map>

namespace {

enum class Group { None, Macros, Overlays, Fonts };

Group GroupOf(const std::string& type) {
    return type == "2"                  ? Group::Macros
           : type == "8"                ? Group::Overlays
           : type == "1" || type == "5" ? Group::Fonts
                                        : Group::None;
}

const char* NameOf(Group group) {
    return group == Group::Macros ? "Type 2 files" : group == Group::Overlays ? "Type 8 files" : "fonts";
}

void CheckNumber(const Item& row, const std::string& id, Findings& findings) {
    constexpr int kLargestID = 32767;
    if (IsPlainNumber(id) && id.size() <= 5 && std::stoi(id) <= kLargestID) {
        return;
    }
    findings.push_back({Level::Warning, "id-is-no-number", "Files", NameOfItem(row, "FileID"), row.node->place,
                        "The ID is \"" + id + "\", which is no plain number from 0 to 32767.",
                        id.empty() ? "An empty ID never clashes for the check before sending, and is 0 in messages."
                                   : "IDs are compared as texts, so it can be another file's number and not clash; "
                                     "messages show it as a number.",
                        "Give it a free one: cordelctl files edit FILE --id next."});
}

bool IsTicked(const Item& row) { return ValueIn(*row.node, "checked") == "1"; }

void CheckClash(Group group, const std::string& id, const std::vector<Item>& rows, Findings& findings) {
    if (rows.size() < 2) {
        return;
    }
    std::string items;
    int ticked = 0;
    for (const Item& row : rows) {
        items += (items.empty() ? "" : ", ") + NameOfItem(row, "FileID");
        ticked += IsTicked(row) ? 1 : 0;
    }
    const std::string consequence =
        group == Group::Overlays
            ? "The check before sending does not look at Type 8: one replaces the other on the printer without a word."
        : ticked > 1 ? "IdsAreValid refuses to send them."
                     : "CheckID reports it when one of them is edited, and IdsAreValid when both are ticked.";
    findings.push_back({ticked > 1 ? Level::Error : Level::Warning, "id-clash", "Files", items, rows[1].node->place,
                        std::to_string(rows.size()) + " " + NameOf(group) + " have the ID " + id + ".", consequence,
                        "Give all but one of them another: cordelctl files edit FILE --id next."});
}

} // namespace

void CheckIds(const DocumentNode& root, Findings& findings) {
    std::map<std::pair<Group, std::string>, std::vector<Item>> users;
    for (const Item& row : ItemsOf(root, "Files")) {
        const Group group = GroupOf(ValueIn(*row.node, "Type"));
        const std::string* const id = FindValueIn(*row.node, "ID");
        if (group == Group::None || id == nullptr) {
            continue;
        }
        CheckNumber(row, *id, findings);
        if (!id->empty()) {
            users[{group, *id}].push_back(row);
        }
    }
    for (const auto& [key, rows] : users) {
        CheckClash(key.first, key.second, rows, findings);
    }
}
