// The two layouts of each medium, whose partitions are paired by name.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "text/number_text.h"

#include <algorithm>
#include <set>

namespace {

struct Medium {
    const char* current;
    const char* standard;
    bool hasPercent;
};

constexpr Medium kMedia[] = {{"CurrentDisk", "DefaultDisk", true}, {"CurrentFlash", "DefaultFlash", false}};

void Add(Level level, const char* check, const char* layout, const Item& row, std::string what, const char* consequence,
         std::string mend, Findings& findings) {
    findings.push_back({level, check, layout, NameOfItem(row, "Partition"), row.node->place, std::move(what),
                        consequence, std::move(mend)});
}

std::set<std::string> NamesIn(const DocumentNode& root, const char* layout) {
    std::set<std::string> names;
    for (const Item& row : ItemsOf(root, layout)) {
        names.insert(ValueIn(*row.node, "Partition"));
    }
    return names;
}

void CheckPaired(const DocumentNode& root, const char* layout, const char* other, Findings& findings) {
    const auto others = NamesIn(root, other);
    std::set<std::string> seen;
    for (const Item& row : ItemsOf(root, layout)) {
        const std::string name = ValueIn(*row.node, "Partition");
        if (others.count(name) == 0) {
            Add(Level::Warning, "partition-unpaired", layout, row,
                std::string("There is no such partition in ") + other + ".",
                "CopyPatition carries nothing between them: it creates no partition.",
                std::string("Add it to ") + other + ", or remove it here.", findings);
        }
        if (!seen.insert(name).second) {
            Add(Level::Warning, "partition-repeated", layout, row, "Another partition before it has the same name.",
                "Functions that go by name find the first only; WritePartition adds a changed one beside the old.",
                "Remove the one that is out of date.", findings);
        }
    }
}

void CheckValues(const DocumentNode& root, const Medium& medium, Findings& findings) {
    for (const Item& row : ItemsOf(root, medium.current)) {
        for (const char* const attribute : {"Image", "Size", "Percent"}) {
            const bool expected = medium.hasPercent || std::string_view(attribute) != "Percent";
            if (expected && FindValueIn(*row.node, attribute) == nullptr) {
                Add(Level::Warning, "partition-value-missing", medium.current, row,
                    std::string("The partition has no ") + attribute + ".",
                    "GetDiskPercent and CopyPatition take the partition's name in its place.",
                    std::string("Add ") + attribute + " to the item.", findings);
            }
        }
    }
}

void CheckChosen(const DocumentNode& root, Findings& findings) {
    for (const Item& row : ItemsOf(root, "CurrentChosePartition")) {
        const std::string name = ValueIn(*row.node, "Name");
        if (!name.empty() && NamesIn(root, "CurrentDisk").count(name) == 0) {
            findings.push_back({Level::Warning, "chosen-partition-unknown", "CurrentChosePartition",
                                NameOfItem(row, "Name"), row.node->place, "CurrentDisk has no partition of that name.",
                                "CopyPatition with mode 0 carries nothing that means anything.",
                                "Choose another: cordelctl set CurrentChosePartition Name NAME."});
        }
    }
}

void CheckPercentages(const DocumentNode& root, Findings& findings) {
    for (const char* const layout : {"CurrentDisk", "DefaultDisk"}) {
        std::int64_t total = 0;
        for (const Item& item : ItemsOf(root, layout)) {
            total += std::min<std::int64_t>(ParseSize(ValueIn(*item.node, "Percent")).value_or(0), 1'000'000);
        }
        if (total > 100) {
            findings.push_back({Level::Warning,
                                "percentages-over-100",
                                layout,
                                {},
                                FindContainerIn(root, layout)->place,
                                "The partitions take " + std::to_string(total) + " % of the disk in all.",
                                "A printer cannot be divided like this.",
                                "Give them less: cordelctl partition edit NAME --percent NUMBER."});
        }
    }
}

} // namespace

void CheckPartitions(const DocumentNode& root, Findings& findings) {
    for (const Medium& medium : kMedia) {
        CheckPaired(root, medium.current, medium.standard, findings);
        CheckPaired(root, medium.standard, medium.current, findings);
        CheckValues(root, medium, findings);
    }
    CheckChosen(root, findings);
    CheckPercentages(root, findings);
}
