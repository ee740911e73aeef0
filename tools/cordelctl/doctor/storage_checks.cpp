// What a printer reported of its volumes, and what else speaks of them.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "text/number_text.h"

#include <set>

void CheckStorage(const DocumentNode& root, Findings& findings) {
    std::set<std::string> volumes;
    for (const Item& item : ItemsOf(root, "Storage")) {
        volumes.insert(ValueIn(*item.node, "Volume"));
        const auto total = ParseSize(ValueIn(*item.node, "TotalSpace"));
        const auto free = ParseSize(ValueIn(*item.node, "FreeSpace"));
        if (total && free && *free > *total) {
            findings.push_back(
                {Level::Warning, "free-space-impossible", "Storage", NameOfItem(item, "Volume"), item.node->place,
                 "More is free (" + std::to_string(*free) + " bytes) than there is (" + std::to_string(*total) + ").",
                 "What sending leaves free is worked out wrongly.",
                 "Record what the printer reports: cordelctl storage report FILE."});
        }
    }
    if (volumes.empty()) {
        return; // the volumes may be those of another document
    }
    for (const Item& item : ItemsOf(root, "Files")) {
        const std::string volume = ValueIn(*item.node, "Volume");
        if (volumes.count(volume) == 0) {
            findings.push_back({Level::Warning, "volume-unknown", "Files", NameOfItem(item, "FileID"), item.node->place,
                                "The file is meant for volume \"" + volume + "\", which Storage does not have.",
                                "What sending leaves free cannot be worked out.",
                                "Place it on another: cordelctl files edit FILE --volume VOLUME."});
        }
    }
}
