// The files on this computer that the list of files names, and where they would go.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "schema/schema.h"
#include "text/number_text.h"

#include <filesystem>
#include <map>

namespace {

void Add(Level level, const char* check, const Item& item, std::string what, const char* consequence, const char* mend,
         Findings& findings) {
    findings.push_back(
        {level, check, "Files", NameOfItem(item, "FileID"), item.node->place, std::move(what), consequence, mend});
}

void CheckLocal(const Item& item, Findings& findings) {
    const std::string* const path = FindValueIn(*item.node, "LocalPath");
    if (path == nullptr || path->empty()) {
        return;
    }
    std::error_code error;
    const auto file = host::PathOf(*path);
    if (!std::filesystem::is_regular_file(file, error)) {
        Add(Level::Warning, "local-file-gone", item, "The file is not on this computer: " + *path + ".",
            "It cannot be sent.", "Bring it back, or take it from the list: cordelctl files remove FILE.", findings);
        return;
    }
    const auto recorded = ParseSize(ValueIn(*item.node, "Size"));
    const auto size = std::filesystem::file_size(file, error);
    if (!error && recorded && static_cast<std::uintmax_t>(*recorded) != size) {
        Add(Level::Warning, "local-file-changed", item,
            "The file has " + std::to_string(size) + " bytes, and " + std::to_string(*recorded) + " are recorded.",
            "What sending takes is worked out wrongly, and what is recorded of the file may be another's.",
            "When it is as it should be, record it anew: cordelctl files renew FILE.", findings);
    }
}

} // namespace

void CheckLocalFiles(const DocumentNode& root, Findings& findings) {
    std::map<std::pair<std::string, std::string>, int> targets;
    for (const Item& item : ItemsOf(root, "Files")) {
        CheckLocal(item, findings);
        const std::string path = ValueIn(*item.node, "Path");
        const auto [first, added] = targets.emplace(std::pair(ValueIn(*item.node, "Volume"), path), item.number);
        if (!added && !path.empty()) {
            Add(Level::Warning, "target-taken-twice", item,
                "Item " + std::to_string(first->second) + " goes to the same path of the same volume.",
                "One replaces the other on the printer.",
                "Give it another path: cordelctl files edit FILE --path PATH.", findings);
        }
    }
}
