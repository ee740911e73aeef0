// get, set, clear: single values and whole containers of the current document.

#include "verbs.h"

#include "lookup.h"
#include "output.h"
#include "row_edit.h"
#include "row_filter.h"
#include "row_index.h"
#include "session.h"

namespace {

struct Options {
    std::string container;
    std::string attribute;
    std::string value;
    std::string where;
};

ExitCode Get(const Globals& globals, const Options& options) {
    const auto filter = ParseRowFilter(options.where);
    const CSession session(globals);
    const auto value = filter ? FindValueWhere(options.container, filter->first, filter->second, options.attribute)
                              : FindValue(options.container, options.attribute);
    if (!value) {
        throw CFailure(ExitCode::Missing, "no item of " + options.container +
                                              (filter ? " with " + filter->first + " \"" + filter->second + "\"" : "") +
                                              " carries " + options.attribute + ", or it is empty");
    }
    PrintText(globals, *value);
    return ExitCode::Done;
}

ExitCode Set(const Globals& globals, const Options& options) {
    const auto filter = ParseRowFilter(options.where);
    const CSession session(globals);
    if (filter) {
        OverwriteInRow(options.container, filter->first, filter->second, options.attribute, options.value);
    } else {
        OverwriteFirst(options.container, options.attribute, options.value);
    }
    Say(globals, options.container + " " + options.attribute + " = " + options.value);
    session.RequireKept();
    return ExitCode::Done;
}

ExitCode Clear(const Globals& globals, const Options& options) {
    const CSession session(globals);
    const bool removed = DelAllElem(ToAnsi(options.container)) != 0;
    if (!ReadIndex(options.container).empty()) {
        ClearIndex(options.container);
    }
    Say(globals, options.container + (removed ? " is empty now" : " had nothing to remove"));
    session.RequireKept();
    return ExitCode::Done;
}

} // namespace

void AddAttributeVerbs(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    const auto addPlace = [&](CLI::App* verb) {
        verb->add_option("CONTAINER", options->container, "Tag name of the container")->required();
        verb->add_option("ATTRIBUTE", options->attribute, "Name of the attribute")->required();
    };
    const auto addWhere = [&](CLI::App* verb) {
        verb->add_option("--where", options->where, "The item to use; without, the first that has the attribute")
            ->type_name("NAME=VALUE");
    };

    auto* const get = app.add_subcommand("get", "Print a value");
    addPlace(get);
    addWhere(get);
    get->callback([&host, options] { host.exit = Get(host.globals, *options); });

    auto* const set = app.add_subcommand("set", "Overwrite a value that is there");
    addPlace(set);
    set->add_option("VALUE", options->value, "The new value")->required();
    addWhere(set);
    set->callback([&host, options] { host.exit = Set(host.globals, *options); });

    auto* const clear = app.add_subcommand("clear", "Remove all items of a container");
    clear->add_option("CONTAINER", options->container, "Tag name of the container")->required();
    clear->callback([&host, options] { host.exit = Clear(host.globals, *options); });
}
