// string, filter: the user-visible texts.

#include "verbs.h"

#include "lookup.h"
#include "output.h"
#include "row_filter.h"
#include "session.h"

#include <cstring>

namespace {

struct Options {
    std::string element;
    std::string attribute;
    std::string where;
};

ExitCode PrintString(const Globals& globals, const Options& options) {
    const auto filter = ParseRowFilter(options.where);
    const CSession session(globals);
    session.RequireStrings();
    const auto text =
        filter ? FindValueWhere(options.element, filter->first, filter->second, options.attribute, kStringsDocument)
               : FindValue(options.element, options.attribute, kStringsDocument);
    if (!text) {
        throw CFailure(ExitCode::Missing, session.Strings().title + " has no text " + options.element + " " +
                                              options.attribute + (filter ? " with " + options.where : ""));
    }
    PrintText(globals, *text);
    return ExitCode::Done;
}

/// Room for every list of the strings document: GetFilter has no bound of its own. Entities make the text longer than
/// the file, but no parser lets them make it a hundred times as long once it exceeds some megabytes.
std::size_t ListBound(const DocumentPlace& strings) {
    constexpr std::size_t kExpansion = 100;
    constexpr std::size_t kUnguarded = std::size_t{16} << 20;
    return kExpansion * static_cast<std::size_t>(std::filesystem::file_size(strings.Loaded())) + kUnguarded;
}

ExitCode PrintFilter(const Globals& globals, const Options& options) {
    const CSession session(globals);
    session.RequireStrings();
    std::vector<char> list(ListBound(session.Strings()));
    constexpr uint32_t kNothingToFill = 0; // it is all zero already
    GetFilter(ToAnsi(options.element), list.data(), kNothingToFill);
    Json texts = Json::array();
    for (const char* text = list.data(); *text != '\0'; text += std::strlen(text) + 1) {
        texts.push_back(JsonText(text));
        Say(globals, text);
    }
    if (texts.empty()) {
        throw CFailure(ExitCode::Missing, session.Strings().title + " has no list " + options.element);
    }
    if (globals.json) {
        PrintJson(texts);
    }
    return ExitCode::Done;
}

} // namespace

void AddStringVerbs(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const string = app.add_subcommand("string", "Print a user-visible text");
    string->add_option("ELEMENT", options->element, "Container of the strings document")->required();
    string->add_option("ATTRIBUTE", options->attribute, "Name of the attribute")->required();
    string->add_option("--where", options->where, "The item to use")->type_name("NAME=VALUE");
    string->callback([&host, options] { host.exit = PrintString(host.globals, *options); });

    auto* const filter = app.add_subcommand("filter", "Print a filter list: each text, followed by its pattern");
    filter->add_option("ELEMENT", options->element, "Container of the strings document, such as FileFilter")
        ->required();
    filter->callback([&host, options] { host.exit = PrintFilter(host.globals, *options); });
}
