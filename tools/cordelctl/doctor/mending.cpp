// What the doctor mends by itself.

#include "doctor/mending.h"

#include "records/file_numbers.h"
#include "schema/schema.h"

#include <algorithm>
#include <set>

namespace {

constexpr std::string_view kMendable[] = {"container-missing", "value-missing", "setting-missing",
                                          "tick-is-no-tick",   "key-repeated",  "stray-node"};

/// Adds the container, with an item for values that are overwritten and never added.
void AddContainer(CDocument& document, const std::string& name) {
    if (!document.HasContainer(name)) {
        document.AddContainer(name);
    }
    const ContainerSchema* const schema = FindContainerSchema(name);
    if (schema == nullptr || !schema->single || schema->inStrings) {
        return;
    }
    std::vector<Row> rows = document.Rows(name);
    if (rows.empty()) {
        std::vector<Pair> values;
        for (const AttributeSchema& attribute : schema->attributes) {
            values.emplace_back(attribute.name, std::string(DefaultOf(attribute)));
        }
        document.AppendRow(name, values);
        return;
    }
    for (const AttributeSchema& attribute : schema->attributes) {
        const std::string attributeName(attribute.name);
        if (!document.FirstValue(name, attributeName)) {
            std::vector<Row> present = document.Rows(name);
            document.SetValue(name, present.front(), attributeName, std::string(DefaultOf(attribute)));
        }
    }
}

/// Only exactly 1 is a tick: anything else is none.
void MendTicks(CDocument& document) {
    for (Row& row : document.Rows("Files")) {
        const std::string* const tick = row.Find("checked");
        if (tick != nullptr && *tick != "0" && *tick != "1") {
            document.SetValue("Files", row, "checked", "0");
        }
    }
}

/// Functions find the first file of a FileID: the others get FileIDs of their own.
void MendKeys(CDocument& document) {
    CFreeNumbers numbers(document);
    std::set<std::string> seen;
    for (Row& row : document.Rows("Files")) {
        const std::string* const key = row.Find("FileID");
        if (key != nullptr && !seen.insert(*key).second) {
            document.SetValue("Files", row, "FileID", numbers.TakeFileID());
        }
    }
}

} // namespace

bool IsMendable(const Finding& finding) {
    return std::find(std::begin(kMendable), std::end(kMendable), finding.check) != std::end(kMendable) &&
           (finding.check != "stray-node" || finding.what.starts_with("A comment")) &&
           (finding.check != "container-missing" || finding.level != Level::Note);
}

void MendDocument(CDocument& document, const Findings& findings) {
    for (const Finding& finding : findings) {
        if (!IsMendable(finding)) {
            continue;
        }
        if (finding.check == "stray-node") {
            document.RemoveComments(finding.container);
        } else if (finding.check == "tick-is-no-tick") {
            MendTicks(document);
        } else if (finding.check == "key-repeated") {
            MendKeys(document);
        } else {
            AddContainer(document, finding.container);
        }
    }
}
