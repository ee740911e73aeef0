// Single values that are overwritten and never created: their item must be there.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "schema/schema.h"

#include <algorithm>

namespace {

const std::string* FirstValue(const DocumentNode& root, std::string_view container, std::string_view attribute) {
    for (const Item& row : ItemsOf(root, container)) {
        if (const std::string* const value = FindValueIn(*row.node, attribute); value != nullptr) {
            return value;
        }
    }
    return nullptr;
}

void CheckSlot(const DocumentNode& root, const char* container, const char* attribute, const char* consequence,
               Findings& findings) {
    const DocumentNode* const node = FindContainerIn(root, container);
    if (node != nullptr && FirstValue(root, container, attribute) == nullptr) {
        findings.push_back({Level::Warning,
                            "value-missing",
                            container,
                            {},
                            node->place,
                            std::string("No item carries ") + attribute + ".",
                            consequence,
                            std::string("Add <Item ") + attribute + "=\"\"/> to the container."});
    }
}

bool IsNumber(std::string_view text) {
    if (text.starts_with('-')) {
        text.remove_prefix(1);
    }
    return !text.empty() && text.size() <= 9 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

void CheckPcl(const DocumentNode& root, Findings& findings) {
    constexpr const char* kContainer = "PCLCurrentSetting";
    const DocumentNode* const node = FindContainerIn(root, kContainer);
    if (node == nullptr) {
        return; // reported as missing
    }
    std::string missing;
    for (const AttributeSchema& setting : FindContainerSchema(kContainer)->attributes) {
        const std::string_view name = setting.name;
        const std::string* const value = FirstValue(root, kContainer, name);
        if (value == nullptr) {
            missing += (missing.empty() ? "" : ", ") + std::string(name);
        } else if (!IsNumber(*value)) {
            findings.push_back({Level::Warning, "setting-is-no-number", kContainer, std::string(name), node->place,
                                "The value is \"" + *value + "\".",
                                "ReadPCLFilter takes the number at its beginning, or 0.",
                                "Set it: cordelctl set PCLCurrentSetting " + std::string(name) + " NUMBER."});
        }
    }
    if (!missing.empty()) {
        findings.push_back({Level::Warning,
                            "setting-missing",
                            kContainer,
                            {},
                            node->place,
                            "These settings are missing: " + missing + ".",
                            "ReadPCLFilter gives 0 for them, and none of them can be set.",
                            "Add the attributes to an item of the container."});
    }
}

void CheckEditedFile(const DocumentNode& root, Findings& findings) {
    const std::string* const edited = FirstValue(root, "Property", "FileID");
    if (edited == nullptr || edited->empty()) {
        return;
    }
    const auto files = ItemsOf(root, "Files");
    if (std::none_of(files.begin(), files.end(),
                     [&](const Item& row) { return ValueIn(*row.node, "FileID") == *edited; })) {
        findings.push_back({Level::Note,
                            "edited-file-unknown",
                            "Property",
                            {},
                            {},
                            "No file has the FileID \"" + *edited + "\" of the file being edited.",
                            "CheckID finds no clash, whatever the IDs are.",
                            "Nothing, unless a host calls CheckID before it names another file."});
    }
}

} // namespace

void CheckSettings(const DocumentNode& root, Findings& findings) {
    CheckSlot(root, "Property", "FileID", "No host can say which file is edited: CheckID never finds a clash.",
              findings);
    CheckSlot(root, "CurrentChosePartition", "Name",
              "No host can say which partition is chosen: CopyPatition with mode 0 carries nothing.", findings);
    CheckPcl(root, findings);
    CheckEditedFile(root, findings);
}
