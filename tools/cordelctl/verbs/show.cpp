// show, tree: what a document holds, container by container.

#include "verbs.h"

#include "decoration.h"
#include "doctor/document_view.h"
#include "document_choice.h"
#include "output.h"
#include "platform/platform.h"

#include <algorithm>
#include <iostream>

namespace {

struct Options {
    std::string container;
    bool texts = false;
};

/// The library reads no further than the first node that is no element.
void NoteWhatStopsReads(const DocumentNode& container) {
    std::size_t seen = 0;
    for (const DocumentNode& child : container.children) {
        if (child.kind != NodeKind::Element) {
            Note("the library reads only the first " + std::to_string(seen) + ": see cordelctl doctor");
            return;
        }
        ++seen;
    }
}

Json RecordOf(const DocumentNode& row) {
    Json record = Json::object();
    for (const DocumentAttribute& attribute : row.attributes) {
        record.emplace(std::string(BaseName(attribute.name)), attribute.value); // the first of a name counts
    }
    return record;
}

ExitCode Show(const Globals& globals, const Options& options) {
    const ChosenDocument chosen = CurrentChoice(globals, options.texts);
    const DocumentNode root = ReadChosen(chosen);
    const DocumentNode* const container = FindContainerIn(root, platform::ToUtf8(options.container));
    if (container == nullptr) {
        throw CFailure(ExitCode::Missing, chosen.title + " has no container " + options.container,
                       "see which it has: cordelctl tree");
    }
    std::vector<Json> rows;
    std::vector<std::string> names;
    for (const Row& row : RowsOf(*container)) {
        rows.push_back(RecordOf(*row.node));
        for (const auto& member : rows.back().items()) {
            if (std::find(names.begin(), names.end(), member.key()) == names.end()) {
                names.push_back(member.key());
            }
        }
    }
    std::vector<Column> columns(names.size());
    std::transform(names.begin(), names.end(), columns.begin(), [](const std::string& name) {
        return Column{name.c_str(), name.c_str()};
    });
    if (rows.empty()) {
        Say(globals, options.container + " is empty");
    }
    if (globals.json || !rows.empty()) {
        PrintRows(globals, columns, rows);
    }
    NoteWhatStopsReads(*container);
    return ExitCode::Done;
}

Json TreeOf(const DocumentNode& node) {
    Json children = Json::array();
    for (const Row& row : RowsOf(node)) {
        children.push_back(TreeOf(*row.node));
    }
    Json tree{{"name", node.name}, {"attributes", RecordOf(node)}};
    if (!children.empty()) {
        tree["children"] = std::move(children);
    }
    return tree;
}

void PrintTree(const DocumentNode& node, const std::string& indent, bool isContainer) {
    std::string line;
    for (const DocumentAttribute& attribute : node.attributes) {
        line += " " + attribute.name + "=\"" + attribute.value + "\"";
    }
    const auto rows = RowsOf(node);
    if (isContainer && rows.empty() && node.attributes.empty()) {
        line += " (empty)";
    }
    std::replace_if(
        line.begin(), line.end(), [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }, ' ');
    const std::string name = platform::FromUtf8(node.name);
    std::cout << indent << (isContainer ? Coloured(name, Colour::Blue) : name) << platform::FromUtf8(line) << '\n';
    for (const Row& row : rows) {
        PrintTree(*row.node, indent + "  ", !RowsOf(*row.node).empty());
    }
}

ExitCode Tree(const Globals& globals, const Options& options) {
    const DocumentNode root = ReadChosen(CurrentChoice(globals, options.texts));
    if (globals.json) {
        PrintJson(TreeOf(root));
        return ExitCode::Done;
    }
    std::cout << platform::FromUtf8(root.name) << '\n';
    for (const Row& row : RowsOf(root)) {
        PrintTree(*row.node, "  ", true);
    }
    return ExitCode::Done;
}

} // namespace

void AddShowVerbs(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    const auto addTexts = [&](CLI::App* verb) {
        verb->add_flag("--texts", options->texts, "Look at the texts of the language, not at the main document");
    };

    auto* const show = app.add_subcommand("show", "Show the items of a container");
    show->add_option("CONTAINER", options->container, "Tag name of the container")->required();
    addTexts(show);
    show->callback([&host, options] { host.exit = Show(host.globals, *options); });

    auto* const tree = app.add_subcommand("tree", "Show a whole document");
    addTexts(tree);
    tree->callback([&host, options] { host.exit = Tree(host.globals, *options); });
}
