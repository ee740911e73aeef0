// copy: values from one container over those of another.

#include "verbs.h"

#include "lookup.h"
#include "output.h"
#include "session.h"

namespace {

struct Options {
    std::string source;
    std::string target;
    std::string name; // of the attribute to copy, or of the key
};

void RequireAttribute(const std::string& container, const std::string& attribute) {
    if (!FindValue(container, attribute)) {
        throw CFailure(ExitCode::Missing, "no item of " + container + " carries " + attribute + ", or it is empty",
                       "to empty a value, use: cordelctl set CONTAINER ATTRIBUTE \"\"");
    }
}

ExitCode CopyOneProperty(const Globals& globals, const Options& options) {
    const CSession session(globals);
    RequireAttribute(options.source, options.name); // without, the copy would blank the target
    CopyProperty(options.source.c_str(), options.target.c_str(), options.name.c_str());
    if (FindValue(options.target, options.name) != FindValue(options.source, options.name)) {
        throw CFailure(ExitCode::Missing,
                       "nothing was copied: no item of " + options.target + " carries " + options.name);
    }
    Say(globals, options.target + " " + options.name + " = " + FindValue(options.target, options.name).value_or(""));
    session.RequireKept();
    return ExitCode::Done;
}

ExitCode CopyElements(const Globals& globals, const Options& options) {
    const CSession session(globals);
    RequireAttribute(options.source, options.name); // without, nothing would be copied, nor saved
    CopyElement(options.source.c_str(), options.target.c_str(), options.name.c_str());
    Say(globals, "items of " + options.target + " with the " + options.name + " of an item of " + options.source +
                     " took its first four attributes, as far as they carry them");
    session.RequireKept();
    return ExitCode::Done;
}

} // namespace

void AddCopyVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const copy = AddFamily(app, "copy", "Copy values from one container to another");
    const auto addPlaces = [&](CLI::App* verb) {
        verb->add_option("SOURCE", options->source, "Container to copy from")->required();
        verb->add_option("TARGET", options->target, "Container to copy to")->required();
    };

    auto* const property = copy->add_subcommand("property", "Copy one attribute, from first item to first item");
    addPlaces(property);
    property->add_option("ATTRIBUTE", options->name, "Name of the attribute")->required();
    property->callback([&host, options] { host.exit = CopyOneProperty(host.globals, *options); });

    auto* const element = copy->add_subcommand("element", "Copy the first four attributes of every item over the "
                                                          "item with the same key; nothing is created");
    addPlaces(element);
    element->add_option("KEY", options->name, "Name of the attribute that pairs the items")->required();
    element->callback([&host, options] { host.exit = CopyElements(host.globals, *options); });
}
