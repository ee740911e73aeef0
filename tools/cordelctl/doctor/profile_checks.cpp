// The slots of ICM profiles.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "schema/schema.h"

#include <map>

namespace {

struct SlotKind {
    const char* profileType;
    const char* container;
};

constexpr SlotKind kKinds[] = {{"0", "RGBSource"}, {"2", "PrinterProfile"}, {"3", "LinkedProfile"}};

std::string SlotsOf(const DocumentNode& root, const char* container) {
    for (const Item& row : ItemsOf(root, container)) {
        if (const std::string* const slots = FindValueIn(*row.node, "IDArray"); slots != nullptr) {
            return *slots;
        }
    }
    return {};
}

void CheckArray(const DocumentNode& root, const SlotKind& kind, const std::string& slots, Findings& findings) {
    const DocumentNode* const container = FindContainerIn(root, kind.container);
    if (container == nullptr) {
        return; // reported as missing
    }
    if (slots.empty()) {
        findings.push_back({Level::Warning,
                            "no-slots",
                            kind.container,
                            {},
                            container->place,
                            "No item has an IDArray with slots.",
                            "GetAvailICMID finds no free slot for such a profile.",
                            "Add an item with IDArray, one character for each slot."});
    } else if (const auto other = slots.find_first_not_of("012"); other != std::string::npos) {
        findings.push_back({Level::Warning,
                            "slot-state-unknown",
                            kind.container,
                            {},
                            container->place,
                            "Slot " + std::to_string(other + 1) + " of IDArray is neither 0 nor 1 nor 2.",
                            "It is never given to a profile.",
                            "Set it to 1 when it may be used, to 2 when not."});
    }
}

void CheckProfilesOf(const DocumentNode& root, const SlotKind& kind, const std::string& slots, Findings& findings) {
    std::map<std::size_t, int> users;
    for (const Item& row : ItemsOf(root, "Files")) {
        if (ValueIn(*row.node, "Type") != "6" || ValueIn(*row.node, "ProfileType") != kind.profileType) {
            continue;
        }
        const auto add = [&](Level level, const char* check, std::string what, const char* consequence) {
            findings.push_back({level, check, "Files", NameOfItem(row, "FileID"), row.node->place, std::move(what),
                                consequence, "Give it a free slot: cordelctl files edit FILE --id next."});
        };
        const std::string id = ValueIn(*row.node, "ID");
        const std::size_t slot = IsPlainNumber(id) && id.size() < 10 ? std::stoul(id) : 0;
        if (slot < 1 || slot > slots.size()) {
            add(Level::Error, "slot-out-of-range",
                "The slot is \"" + id + "\", but " + kind.container + " has " + std::to_string(slots.size()) + ".",
                "GetAvailICMID ignores this profile, and the printer has no such slot.");
            continue;
        }
        const auto [first, added] = users.emplace(slot, row.number);
        if (!added) {
            add(Level::Error, "slot-taken-twice",
                "Slot " + id + " of " + kind.container + " is that of item " + std::to_string(first->second) + " too.",
                "No function of the library checks it: one profile replaces the other on the printer.");
        } else if (slots[slot - 1] == '2') {
            add(Level::Note, "slot-in-use", "Slot " + id + " of " + kind.container + " is marked as in use.",
                "Unless it is this profile that the printer holds there, sending replaces another.");
        }
    }
}

} // namespace

void CheckProfileSlots(const DocumentNode& root, Findings& findings) {
    for (const SlotKind& kind : kKinds) {
        const std::string slots = SlotsOf(root, kind.container);
        CheckArray(root, kind, slots, findings);
        CheckProfilesOf(root, kind, slots, findings);
    }
    for (const Item& row : ItemsOf(root, "Files")) {
        const std::string profileType = ValueIn(*row.node, "ProfileType");
        if (ValueIn(*row.node, "Type") == "6" && profileType != "0" && profileType != "2" && profileType != "3") {
            findings.push_back({Level::Warning, "profile-without-slots", "Files", NameOfItem(row, "FileID"),
                                row.node->place, "The ProfileType is \"" + profileType + "\".",
                                "The profile belongs to no slots: its ID is never looked at.", "Set it to 0, 2 or 3."});
        }
    }
}
