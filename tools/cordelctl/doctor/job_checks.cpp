// The stored jobs, which are read by position into short fields.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "schema/schema.h"

#include <algorithm>
#include <map>

namespace {

const auto& Fields() { return FindContainerSchema("Jobs")->attributes; }

void Add(Level level, const char* check, const Item& row, std::string what, const char* consequence, std::string mend,
         Findings& findings) {
    findings.push_back(
        {level, check, "Jobs", NameOfItem(row, "ID"), row.node->place, std::move(what), consequence, std::move(mend)});
}

void CheckOrder(const Item& row, Findings& findings) {
    const auto& attributes = row.node->attributes;
    for (std::size_t i = 0; i < Fields().size(); ++i) {
        const std::string name = i < attributes.size() ? attributes[i].name : "missing";
        if (name != Fields()[i].name) {
            Add(Level::Error, "job-order", row,
                "Attribute " + std::to_string(i + 1) + " is " + name + ", not " + std::string(Fields()[i].name) + ".",
                "GetJobs goes by position: the host gets values in the wrong fields.",
                "Put them in order: Name, ID, Type, Copies, Stored, checked.", findings);
            return;
        }
    }
}

/// By position, whatever the attributes are called: so they are read.
void CheckLengths(const Item& row, Findings& findings) {
    const auto& attributes = row.node->attributes;
    for (std::size_t i = 0; i < std::min(Fields().size(), attributes.size()); ++i) {
        const std::size_t length = ByteLength(attributes[i].value);
        if (length > Fields()[i].longest) {
            Add(Level::Error, "job-field-too-long", row,
                "The value of " + attributes[i].name + " takes " + std::to_string(length) + " bytes; the field for " +
                    std::string(Fields()[i].name) + " holds " + std::to_string(Fields()[i].longest) + ".",
                "GetJobs stops the host.", "Shorten it to at most " + std::to_string(Fields()[i].longest) + " bytes.",
                findings);
        }
    }
}

} // namespace

void CheckJobs(const DocumentNode& root, Findings& findings) {
    std::map<std::string, int> ids;
    for (const Item& row : ItemsOf(root, "Jobs")) {
        CheckOrder(row, findings);
        CheckLengths(row, findings);
        const std::string* const id = FindValueIn(*row.node, "ID");
        if (id == nullptr) {
            Add(Level::Error, "job-without-id", row, "The job has no ID.", "GetJobs does not list it.",
                "Give it an ID that no other job has.", findings);
            continue;
        }
        const auto [first, added] = ids.emplace(*id, row.number);
        if (!added) {
            Add(Level::Error, "job-id-repeated", row, "Item " + std::to_string(first->second) + " has the same ID.",
                "GetJobs gives the first of them twice, and never this one.", "Give it an ID that no other job has.",
                findings);
        }
    }
}
