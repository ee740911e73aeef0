// The rows of files, which are read by position.

#include "doctor/checks.h"

#include "document/tree_view.h"
#include "records/field_text.h"
#include "schema/schema.h"

#include <algorithm>
#include <array>
#include <map>

namespace {

constexpr std::array<std::string_view, 10> kRow{"FileID", "Component", "ID",   "Type",       "Volume",
                                                "Path",   "LocalPath", "Size", "CreateDate", "checked"};
constexpr std::size_t kFieldsRead = 7; // the first of them go into fields of a record
constexpr std::string_view kTypes[] = {"1", "2", "5", "6", "8"};

class CFileRowCheck {
public:
    CFileRowCheck(const Item& row, Findings& findings) : m_row(row), m_findings(findings) {
        const auto& attributes = row.node->attributes;
        m_start = std::find_if(attributes.begin(), attributes.end(),
                               [](const DocumentAttribute& attribute) { return attribute.name == kRow.front(); });
    }

    void Run() const {
        if (m_start == m_row.node->attributes.end()) {
            Add(Level::Error, "file-without-key", "The row has no FileID.",
                "No function finds this file: it is not listed, not checked and not sent.",
                "Give it a FileID that no other file has, as the first attribute.");
            return;
        }
        CheckOrder();
        CheckLengths();
        CheckValues();
    }

private:
    std::size_t Count() const { return static_cast<std::size_t>(m_row.node->attributes.end() - m_start); }

    void CheckOrder() const {
        if (Count() < kRow.size()) {
            Add(Level::Error, "file-row-short",
                "The row has " + std::to_string(Count()) + " attributes from FileID on, not ten.",
                "GetFiles takes what is missing from the next file, which is skipped or mixed up.",
                "Complete it: FileID, Component, ID, Type, Volume, Path, LocalPath, Size, CreateDate, checked.");
        }
        for (std::size_t i = 0; i < std::min(Count(), kRow.size()); ++i) {
            const std::string_view name = m_start[static_cast<std::ptrdiff_t>(i)].name;
            if (name != kRow[i]) {
                Add(Level::Error, "file-row-order",
                    "Attribute " + std::to_string(i + 1) + " from FileID on is " + std::string(name) + ", not " +
                        std::string(kRow[i]) + ".",
                    "GetFiles goes by position: the host gets values in the wrong fields.",
                    "Put them in order: FileID, Component, ID, Type, Volume, Path, LocalPath, Size, CreateDate, "
                    "checked.");
                return;
            }
        }
    }

    void CheckLengths() const {
        for (std::size_t i = 0; i < Count(); ++i) {
            const DocumentAttribute& attribute = m_start[static_cast<std::ptrdiff_t>(i)];
            const std::size_t length = ByteLength(attribute.value);
            if (length <= kFieldLength || attribute.name == "Comment") {
                continue;
            }
            const std::string what = "The value of " + attribute.name + " takes " + std::to_string(length) + " bytes.";
            if (i < kFieldsRead) {
                Add(Level::Error, "field-too-long", what,
                    "GetFiles stops the host, whether or not this file is ticked: a field holds 255 bytes.",
                    "Shorten it to at most 255 bytes.");
            } else {
                Add(Level::Warning, "value-too-long", what,
                    "A host that takes it into a field of 256 bytes cuts it or overruns the field.",
                    "Shorten it to at most 255 bytes.");
            }
        }
    }

    void CheckValues() const {
        const std::string type = ValueIn(*m_row.node, "Type");
        if (std::find(std::begin(kTypes), std::end(kTypes), type) == std::end(kTypes)) {
            Add(Level::Warning, "unknown-type", "The Type is \"" + type + "\".",
                "Such a file belongs to no group: its ID is never checked.", "Set it to 1, 2, 5, 6 or 8.");
        }
        const std::string ticked = ValueIn(*m_row.node, "checked");
        if (ticked != "0" && ticked != "1") {
            Add(Level::Warning, "tick-is-no-tick", "The value of checked is \"" + ticked + "\".",
                "Only exactly 1 means ticked: the file is not sent.", "Set it to 0 or 1.");
        }
    }

    void Add(Level level, const char* check, std::string what, const char* consequence, const char* mend) const {
        m_findings.push_back({level, check, "Files", NameOfItem(m_row, "FileID"), m_row.node->place, std::move(what),
                              consequence, mend});
    }

    const Item& m_row;
    Findings& m_findings;
    std::vector<DocumentAttribute>::const_iterator m_start;
};

} // namespace

void CheckFiles(const DocumentNode& root, Findings& findings) {
    std::map<std::string, int> keys;
    for (const Item& row : ItemsOf(root, "Files")) {
        CFileRowCheck(row, findings).Run();
        const std::string* const key = FindValueIn(*row.node, "FileID");
        if (key == nullptr) {
            continue;
        }
        const auto [first, added] = keys.emplace(*key, row.number);
        if (!added) {
            findings.push_back({Level::Error, "key-repeated", "Files", NameOfItem(row, "FileID"), row.node->place,
                                "Item " + std::to_string(first->second) + " has the same FileID.",
                                "Functions that look a file up find the first for both: this one is never checked or "
                                "edited.",
                                "Give it a FileID that no other file has."});
        }
    }
}
