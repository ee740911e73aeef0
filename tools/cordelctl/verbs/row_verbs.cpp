// get, set, add, remove, clear, copy: values and rows of any container.

#include "failure.h"
#include "text/nearest.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <unordered_map>

namespace {

const Option kContainer{Option::Kind::Operand, "CONTAINER", "", "Tag name of the container", true, Offer::Containers};
const Option kAttribute{Option::Kind::Operand, "ATTRIBUTE", "", "Name of the attribute", true, Offer::Attributes};

/// The operand, which must not be empty.
std::string Named(const Context& context, std::string_view operand) {
    std::string text = context.Text(operand);
    if (text.empty()) {
        throw CFailure(ExitCode::Usage, "the " + std::string(operand) + " is empty");
    }
    return text;
}

std::string WhereText(const Context& context) {
    return context.Has("--where") ? " with " + Joined(context.Texts("--where"), ", ") : std::string();
}

Result GetRows(Context& context) {
    const std::string container = Named(context, "CONTAINER");
    const std::string attribute = Named(context, "ATTRIBUTE");
    const Filter filter = FilterOf(context.Texts("--where"));
    CDocument& document = context.Document();
    Result result;
    result.shape = context.Has("--all") ? Result::Shape::Lines : Result::Shape::Plain;
    result.data = context.Has("--all") ? Value(Value::List()) : Value();
    bool found = false;
    for (const Row& row : document.RowsWhere(container, filter)) {
        const std::string* const value = row.Find(attribute);
        if (value == nullptr) {
            continue;
        }
        found = true;
        if (!context.Has("--all")) {
            result.data = *value;
            return result;
        }
        result.data.Append(*value);
    }
    if (!found) {
        throw CFailure(ExitCode::Missing, "no item of " + container + WhereText(context) + " carries " + attribute,
                       "see what there is: cordelctl show " + container);
    }
    return result;
}

std::string CheckedValue(const std::string& container, const std::string& attribute, const std::string& value) {
    const ContainerSchema* const schema = FindContainerSchema(container);
    const AttributeSchema* const known = schema != nullptr ? FindAttributeSchema(*schema, attribute) : nullptr;
    if (known != nullptr) {
        return StoredValue(*known, value);
    }
    RequireText(value, "this value of " + container + " " + attribute);
    return value;
}

Result SetRows(Context& context) {
    const std::string container = Named(context, "CONTAINER");
    const std::string attribute = Named(context, "ATTRIBUTE");
    const std::string value = CheckedValue(container, attribute, context.Text("VALUE"));
    const Filter filter = FilterOf(context.Texts("--where"));
    CDocument& document = context.Document();
    std::vector<Row> rows = document.RowsWhere(container, filter);
    if (!context.Has("--create")) {
        std::erase_if(rows, [&](const Row& row) { return row.Find(attribute) == nullptr; });
    }
    if (rows.empty()) {
        throw CFailure(ExitCode::Missing, "no item of " + container + WhereText(context) + " carries " + attribute,
                       "an attribute that is not there is added with --create, an item with: cordelctl add " +
                           container);
    }
    if (!context.Has("--all")) {
        if (rows.size() > 1 && !filter.empty()) {
            throw CFailure(ExitCode::Refused,
                           std::to_string(rows.size()) + " items of " + container + WhereText(context) + " carry " +
                               attribute,
                           "say more closely which is meant, or change all of them: --all");
        }
        rows.resize(1);
    }
    const ContainerSchema* const schema = FindContainerSchema(container);
    if (schema != nullptr) {
        EditRows(document, *schema, rows, {{attribute, value}});
    } else {
        for (Row& row : rows) {
            document.SetValue(container, row, attribute, value);
        }
    }
    Result result;
    result.data =
        Value::Record{{"container", container}, {"attribute", attribute}, {"value", value}, {"rows", rows.size()}};
    result.said.push_back(container + " " + attribute + " = " + value +
                          (rows.size() > 1 ? " (" + std::to_string(rows.size()) + " items)" : ""));
    return result;
}

Result AddRow(Context& context) {
    const std::string container = Named(context, "CONTAINER");
    std::vector<Pair> values;
    for (const std::string& text : context.Texts("NAME=VALUE")) {
        const auto separator = text.find('=');
        if (separator == std::string::npos || separator == 0) {
            throw CFailure(ExitCode::Usage, "\"" + text + "\" is not of the form NAME=VALUE");
        }
        const std::string name = text.substr(0, separator);
        values.emplace_back(name, CheckedValue(container, name, text.substr(separator + 1)));
    }
    CDocument& document = context.Document();
    const ContainerSchema* const schema = FindContainerSchema(container);
    if (schema != nullptr) {
        // In the table's order, which counts where rows are read by position.
        const auto place = [schema](const Pair& pair) {
            const AttributeSchema* const known = FindAttributeSchema(*schema, pair.first);
            return known != nullptr ? known - schema->attributes.data()
                                    : static_cast<std::ptrdiff_t>(schema->attributes.size());
        };
        std::stable_sort(values.begin(), values.end(),
                         [&](const Pair& left, const Pair& right) { return place(left) < place(right); });
        for (const AttributeSchema& attribute : schema->attributes) {
            const bool given = std::any_of(values.begin(), values.end(),
                                           [&](const Pair& pair) { return pair.first == attribute.name; });
            if (schema->positional && attribute.required && attribute.types.empty() && !given) {
                throw CFailure(ExitCode::Refused,
                               "an item of " + container + " needs " + std::string(attribute.name) +
                                   ": it is read by position",
                               "give it, if only an empty one: " + std::string(attribute.name) + "=");
            }
            if (attribute.name == schema->key && given &&
                !document
                     .RowsWhere(container, {{std::string(schema->key),
                                             std::find_if(values.begin(), values.end(),
                                                          [&](const Pair& pair) { return pair.first == schema->key; })
                                                 ->second}})
                     .empty()) {
                throw CFailure(ExitCode::Refused,
                               "an item of " + container + " has this " + std::string(schema->key) + " already");
            }
        }
    }
    document.AppendRow(container, values);
    Result result;
    result.data = Value::Record{{"container", container}, {"added", 1}};
    result.said.push_back("added an item to " + container);
    return result;
}

Result RemoveRows(Context& context) {
    const std::string container = Named(context, "CONTAINER");
    const Filter filter = FilterOf(context.Texts("--where"));
    if (filter.empty()) {
        throw CFailure(ExitCode::Usage, "which items of " + container + " are meant is not said",
                       "give --where NAME=VALUE; to remove all: cordelctl clear " + container);
    }
    CDocument& document = context.Document();
    const std::vector<Row> rows = document.RowsWhere(container, filter);
    if (rows.empty()) {
        throw CFailure(ExitCode::Missing,
                       "no item of " + container + " has these values: " + Joined(context.Texts("--where"), ", "));
    }
    document.RemoveRows(container, rows);
    Result result;
    result.data = Value::Record{{"container", container}, {"removed", rows.size()}};
    result.said.push_back("removed " + Counted(rows.size(), "item") + " of " + container);
    return result;
}

Result ClearRows(Context& context) {
    const std::string container = Named(context, "CONTAINER");
    CDocument& document = context.Document();
    const std::size_t count = document.RemoveAllChildren(container);
    Result result;
    result.data = Value::Record{{"container", container}, {"removed", count}};
    result.said.push_back(container + (count > 0 ? " is empty now" : " had nothing to remove"));
    return result;
}

void RequireCarrier(CDocument& document, const std::string& container, const std::string& attribute) {
    if (!document.FirstValue(container, attribute)) {
        throw CFailure(ExitCode::Missing, "no item of " + container + " carries " + attribute);
    }
}

Result CopyProperty(Context& context) {
    const std::string source = Named(context, "SOURCE");
    const std::string target = Named(context, "TARGET");
    const std::string attribute = Named(context, "ATTRIBUTE");
    CDocument& document = context.Document();
    RequireCarrier(document, source, attribute);
    RequireCarrier(document, target, attribute);
    const std::string value = *document.FirstValue(source, attribute);
    for (Row& row : document.Rows(target)) {
        if (row.Find(attribute) != nullptr) {
            document.SetValue(target, row, attribute, value);
            break;
        }
    }
    Result result;
    result.data = Value::Record{{"container", target}, {"attribute", attribute}, {"value", value}};
    result.said.push_back(target + " " + attribute + " = " + value);
    return result;
}

Result CopyElements(Context& context) {
    constexpr std::size_t kCopied = 4; // of each item, as hosts copy them
    const std::string source = Named(context, "SOURCE");
    const std::string target = Named(context, "TARGET");
    const std::string key = Named(context, "KEY");
    CDocument& document = context.Document();
    RequireCarrier(document, source, key);
    std::vector<Row> targets = document.Rows(target);
    std::unordered_map<std::string, Row*> firstOf; // with each key
    for (Row& row : targets) {
        if (const std::string* const value = row.Find(key)) {
            firstOf.emplace(*value, &row);
        }
    }
    std::size_t copied = 0;
    for (const Row& row : document.Rows(source)) {
        const std::string* const value = row.Find(key);
        const auto found = value == nullptr ? firstOf.end() : firstOf.find(*value);
        if (found == firstOf.end()) {
            continue;
        }
        Row* const other = found->second;
        for (std::size_t i = 0; i < std::min(kCopied, row.values.size()); ++i) {
            if (other->Find(row.values[i].first) != nullptr) {
                document.SetValue(target, *other, row.values[i].first, row.values[i].second);
            }
        }
        ++copied;
    }
    Result result;
    result.data = Value::Record{{"source", source}, {"target", target}, {"copied", copied}};
    result.said.push_back(Counted(copied, "item") + " of " + target +
                          " took the first four attributes of the item of " + source + " with the same " + key +
                          ", as far as they carry them");
    return result;
}

} // namespace

std::vector<Verb> RowVerbs() {
    const Option all{Option::Kind::Flag, "--all", "", "All items that match, not the first"};
    const Option source{Option::Kind::Operand, "SOURCE", "", "Container to copy from", true, Offer::Containers};
    const Option target{Option::Kind::Operand, "TARGET", "", "Container to copy to", true, Offer::Containers};
    return {
        {"get",
         "Print a value",
         Effect::Reads,
         &GetRows,
         {kContainer, kAttribute,
          WhereOption("The item to use; several must all match. Without, the first that has the attribute"), all},
         {},
         "cordelctl get Files LocalPath --where FileID=3\ncordelctl get Jobs Name --all --printer Atrium"},
        {"set",
         "Overwrite a value",
         Effect::Changes,
         &SetRows,
         {kContainer,
          kAttribute,
          {Option::Kind::Operand, "VALUE", "", "The new value; sizes may have a unit, as 4G", true},
          WhereOption("The item to change; several must all match. Without, the first that has the attribute"),
          all,
          {Option::Kind::Flag, "--create", "", "Add the attribute to items that do not have it"}},
         {},
         "cordelctl set PCLCurrentSetting CMCOPIES 3\ncordelctl set CurrentDisk Percent 25 --where Partition=Fonts "
         "--printer Atrium"},
        {"add",
         "Add an item to a container",
         Effect::Changes,
         &AddRow,
         {kContainer, {Option::Kind::Operands, "NAME=VALUE", "", "The values of the item", true, Offer::Attributes}},
         {},
         "cordelctl add ProjectFilter ID=9 Value=Other"},
        {"remove",
         "Remove items of a container",
         Effect::Changes,
         &RemoveRows,
         {kContainer, WhereOption("The items to remove; several must all match")},
         {},
         "cordelctl remove Jobs --where Type=Proof --printer Atrium"},
        {"clear", "Remove all that a container holds", Effect::Changes, &ClearRows, {kContainer}},
        {"copy property",
         "Copy one attribute, from the first item that has it to the first that has it",
         Effect::Changes,
         &CopyProperty,
         {source, target, kAttribute}},
        {"copy element",
         "Copy the first four attributes of every item over the item with the same key; nothing is created",
         Effect::Changes,
         &CopyElements,
         {source,
          target,
          {Option::Kind::Operand, "KEY", "", "Name of the attribute that pairs the items", true, Offer::Attributes}}},
    };
}
