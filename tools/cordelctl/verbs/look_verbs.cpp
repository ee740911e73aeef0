// show, tree, schema: what a document holds, and what it can hold.

#include "failure.h"
#include "text/nearest.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include "document/tree_view.h"

#include <algorithm>

namespace {

CDocument& Chosen(Context& context) { return context.Has("--texts") ? context.Strings() : context.Document(); }

Result Show(Context& context) {
    const std::string container = context.Text("CONTAINER");
    CDocument& document = Chosen(context);
    if (!document.HasContainer(container)) {
        std::vector<std::string> known;
        const DocumentNode tree = document.Tree();
        for (const Item& item : ItemsOf(tree)) {
            known.push_back(item.node->name);
        }
        throw CFailure(ExitCode::Missing,
                       document.Title() + " has no container " + container + DidYouMean(container, known),
                       "see which it has: cordelctl tree");
    }
    const std::vector<Row> rows = document.RowsWhere(container, FilterOf(context.Texts("--where")));
    Result result = TableOf(rows);
    if (const ContainerSchema* const schema = FindContainerSchema(container); schema != nullptr) {
        result.names = AttributeNames(*schema);
    }
    if (rows.empty()) {
        result.shape = Result::Shape::Said;
        result.said.push_back(container + (context.Has("--where") ? " has no such item" : " is empty"));
    }
    return result;
}

Value TreeData(const DocumentNode& node) {
    Value attributes = Value::Record();
    for (const DocumentAttribute& attribute : node.attributes) {
        if (attributes.Find(attribute.name) == nullptr) {
            attributes.Add(attribute.name, attribute.value);
        }
    }
    Value tree = Value::Record{{"name", node.name}, {"attributes", attributes}};
    Value children = Value::List();
    for (const Item& item : ItemsOf(node)) {
        children.Append(TreeData(*item.node));
    }
    if (!children.Items().empty()) {
        tree.Add("children", std::move(children));
    }
    return tree;
}

void AddTreeLines(const DocumentNode& node, const std::string& indent, std::vector<std::string>& lines) {
    std::string line = indent + node.name;
    for (const DocumentAttribute& attribute : node.attributes) {
        line += " " + attribute.name + "=\"" + attribute.value + "\"";
    }
    const auto items = ItemsOf(node);
    lines.push_back(line + (items.empty() && node.attributes.empty() ? " (empty)" : ""));
    for (const Item& item : items) {
        AddTreeLines(*item.node, indent + "  ", lines);
    }
}

Result Tree(Context& context) {
    const DocumentNode root = Chosen(context).Tree();
    Result result;
    result.data = TreeData(root);
    AddTreeLines(root, "", result.said);
    return result;
}

Value AttributeData(const AttributeSchema& attribute) {
    const auto orNull = [](std::string_view text) { return text.empty() ? Value() : Value(text); };
    return Value::Record{
        {"attribute", attribute.name},
        {"kind", NameOf(attribute.kind)},
        {"bytes", attribute.longest == 0 ? Value() : Value(static_cast<std::size_t>(attribute.longest))},
        {"allowed", orNull(attribute.allowed)},
        {"types", orNull(attribute.types)},
        {"meaning", attribute.meaning}};
}

Value ContainerData(const ContainerSchema& container) {
    const auto orNull = [](std::string_view text) { return text.empty() ? Value() : Value(text); };
    Value attributes = Value::List();
    for (const AttributeSchema& attribute : container.attributes) {
        attributes.Append(AttributeData(attribute));
    }
    return Value::Record{
        {"container", container.name},         {"document", container.inStrings ? "strings" : "main, printer"},
        {"key", orNull(container.key)},        {"writtenBy", orNull(container.writers)},
        {"readBy", orNull(container.readers)}, {"inOrder", container.positional},
        {"meaning", container.meaning},        {"attributes", attributes}};
}

Result SchemaOfOne(const std::string& name) {
    const ContainerSchema* const container = FindContainerSchema(name);
    if (container == nullptr) {
        std::vector<std::string> known;
        std::transform(Containers().begin(), Containers().end(), std::back_inserter(known),
                       [](const ContainerSchema& other) { return std::string(other.name); });
        throw CFailure(ExitCode::Missing, "no container \"" + name + "\" is known" + DidYouMean(name, known),
                       "a document may hold others, which are its host's own; known: " + Joined(known, ", "));
    }
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const AttributeSchema& attribute : container->attributes) {
        result.data.Append(AttributeData(attribute));
    }
    result.columns = {{"attribute", "ATTRIBUTE", Format::Text}, {"types", "TYPES", Format::Text},
                      {"kind", "KIND", Format::Text},           {"bytes", "BYTES", Format::Number},
                      {"meaning", "MEANING", Format::Text},     {"allowed", "ALLOWED", Format::Text}};
    result.said.push_back(name + ": " + std::string(container->meaning) +
                          (container->key.empty() ? "" : "; told apart by " + std::string(container->key)) +
                          (container->positional ? "; the order of the attributes counts" : ""));
    return result;
}

Result ShowSchema(Context& context) {
    if (context.Has("CONTAINER")) {
        return SchemaOfOne(context.Text("CONTAINER"));
    }
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const ContainerSchema& container : Containers()) {
        result.data.Append(ContainerData(container));
    }
    result.columns = {{"container", "CONTAINER", Format::Text},
                      {"document", "DOCUMENT", Format::Text},
                      {"key", "KEY", Format::Text},
                      {"writtenBy", "WRITTEN BY", Format::Text},
                      {"meaning", "MEANING", Format::Text}};
    return result;
}

} // namespace

std::vector<Verb> LookVerbs() {
    const Option container{Option::Kind::Operand,       "CONTAINER", "",
                           "Tag name of the container", true,        Offer::Containers};
    Option anyContainer = container;
    anyContainer.required = false;
    anyContainer.help = "Tag name of a container; without, all of them";
    const Option texts{Option::Kind::Flag, "--texts", "", "Look at the texts of the language"};
    return {
        {"show",
         "Show the items of a container",
         Effect::Reads,
         &Show,
         {container, WhereOption("Only the items with this value; several must all match"), texts},
         {},
         "cordelctl show Jobs --printer Atrium\ncordelctl show Files --columns FileID,ID,LocalPath"},
        {"tree", "Show a whole document", Effect::Reads, &Tree, {texts}},
        {"schema",
         "Show what the documents can hold: containers, attributes, kinds and limits",
         Effect::None,
         &ShowSchema,
         {anyContainer},
         {},
         "cordelctl schema\ncordelctl schema Jobs"},
    };
}
