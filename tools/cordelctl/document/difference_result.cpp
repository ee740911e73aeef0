// The differences between two documents as a verb's result.

#include "document/difference_result.h"

namespace {

const char* NameOf(Change change) {
    switch (change) {
    case Change::ContainerAdded:
        return "container-added";
    case Change::ContainerRemoved:
        return "container-removed";
    case Change::Added:
        return "added";
    case Change::Removed:
        return "removed";
    case Change::Changed:
        return "changed";
    case Change::Reordered:
        return "reordered";
    }
    return "";
}

std::string ValuesOf(const RecordChange& change) {
    std::string text;
    for (const ChangedValue& value : change.values) {
        text += (text.empty() ? "" : " ") + value.attribute + "=\"" +
                (change.change == Change::Added ? value.after : value.before) + "\"";
    }
    return text;
}

void AddLines(const RecordChange& change, std::vector<std::string>& lines) {
    switch (change.change) {
    case Change::ContainerAdded:
        lines.push_back("+ " + change.container);
        break;
    case Change::ContainerRemoved:
        lines.push_back("- " + change.container);
        break;
    case Change::Added:
        lines.push_back("+ " + change.container + " " + change.item + ": " + ValuesOf(change));
        break;
    case Change::Removed:
        lines.push_back("- " + change.container + " " + change.item + ": " + ValuesOf(change));
        break;
    case Change::Reordered:
        lines.push_back("~ " + change.container + ": the items stand in another order");
        break;
    case Change::Changed:
        for (const ChangedValue& value : change.values) {
            lines.push_back("~ " + change.container + " " + change.item + ": " + value.attribute + " \"" +
                            value.before + "\" is now \"" + value.after + "\"");
        }
        break;
    }
}

} // namespace

Result DifferenceResult(const std::vector<RecordChange>& changes) {
    Result result;
    result.data = Value::List();
    for (const RecordChange& change : changes) {
        Value values = Value::List();
        for (const ChangedValue& value : change.values) {
            values.Append(
                Value::Record{{"attribute", value.attribute}, {"before", value.before}, {"after", value.after}});
        }
        result.data.Append(Value::Record{{"container", change.container},
                                         {"change", NameOf(change.change)},
                                         {"item", change.item},
                                         {"values", values}});
        AddLines(change, result.said);
    }
    if (changes.empty()) {
        result.said.emplace_back("no difference");
    }
    return result;
}
