// Turns a command line into a command: the one file that knows the command-line library. That library only takes the
// line apart; what it has to know of the verbs comes from their table, and so does the help.

#include "command_line.h"

#include "failure.h"
#include "help.h"
#include "text/nearest.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <deque>
#include <memory>

namespace {

const std::vector<Option> kGlobalOptions{
    {Option::Kind::Texts, "--printer", "NAME",
     "Work on this printer's document, not on the main document; what reads takes several", false, Offer::Printers},
    {Option::Kind::Flag, "--all-printers", "", "Read the documents of all printers, one after the other"},
    {Option::Kind::Text, "--language", "NAME", "Language of the texts; without, English", false, Offer::Languages},
    {Option::Kind::Flag, "--json", "", "Print data as JSON, and errors too"},
    {Option::Kind::Flag, "--quiet", "", "Print no lines that only tell what was done"},
    {Option::Kind::Flag, "--dry-run", "", "Print what a command would change, and change nothing"},
    {Option::Kind::Text, "--wait", "SECONDS",
     "Wait so long for another cordelctl that works on the document; without, 10"},
    {Option::Kind::Text, "--columns", "A,B,...", "Print these columns of a table, by the names that JSON has"},
    {Option::Kind::Text, "--format", "TEXT",
     "Print this line for each row of a table, with {COLUMN} for a value, \\t and \\n"},
    {Option::Kind::Flag, "--zero", "", "End each row, or each line of a list, with a zero byte; or -0"},
};

/// What the library fills for one option.
struct Slot {
    const Option* option;
    std::vector<std::string> values;
    std::string single;
    bool flag = false;
    CLI::Option* known = nullptr;

    std::vector<std::string> Given() const {
        return option->kind == Option::Kind::Operand || option->kind == Option::Kind::Text ? std::vector{single}
                                                                                           : values;
    }
};

using Slots = std::deque<Slot>;

void AddOption(CLI::App& app, const Option& option, Slots& slots) {
    Slot& slot = slots.emplace_back(Slot{&option, {}, {}, false, nullptr});
    const std::string name(option.name);
    switch (option.kind) {
    case Option::Kind::Flag:
        slot.known = app.add_flag(name, slot.flag);
        return;
    case Option::Kind::Operand:
        slot.known = app.add_option(name, slot.single);
        break;
    case Option::Kind::Operands:
        slot.known = app.add_option(name, slot.values)->expected(1, 1 << 20); // or none, unless it is required
        break;
    case Option::Kind::Text:
        slot.known = app.add_option(name, slot.single)->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        break;
    case Option::Kind::Texts:
        slot.known = app.add_option(name, slot.values)
                         ->expected(1)
                         ->allow_extra_args(false)
                         ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
        break;
    }
    slot.known->required(option.required);
}

void RequireChoices(const Slots& slots) {
    for (const Slot& slot : slots) {
        if (slot.option->choices.empty() || slot.known->count() == 0) {
            continue;
        }
        const std::vector<std::string> allowed = WordsOf(slot.option->choices);
        for (const std::string& value : slot.Given()) {
            if (std::find(allowed.begin(), allowed.end(), value) == allowed.end()) {
                throw CFailure(ExitCode::Usage,
                               std::string(slot.option->name) + " takes no \"" + value + "\"" +
                                   DidYouMean(value, allowed),
                               "one of: " + Joined(allowed, ", "));
            }
        }
    }
}

/// The verbs of the table, each word of a name a subcommand.
class CVerbTree {
public:
    /// Of the verbs that the line can mean: those whose first word is one of its own.
    CVerbTree(CLI::App& app, std::span<const Verb> verbs, const std::vector<std::string>& line) {
        for (const Verb& verb : verbs) {
            const std::vector<std::string> words = WordsOf(verb.name);
            if (std::find(line.begin(), line.end(), words.front()) == line.end()) {
                continue;
            }
            CLI::App* parent = &app;
            for (const std::string& word : words) {
                parent = Child(*parent, word);
            }
            auto& node = m_nodes.emplace_back();
            node.app = parent;
            node.verb = &verb;
            for (const Option& option : verb.options) {
                AddOption(*parent, option, node.slots);
            }
        }
    }

    struct Node {
        CLI::App* app = nullptr;
        const Verb* verb = nullptr;
        Slots slots;
    };

    const Node* Called() const {
        const auto found = std::find_if(m_nodes.begin(), m_nodes.end(), [](const Node& node) {
            return node.app->parsed() && node.app->get_subcommands().empty();
        });
        return found != m_nodes.end() ? &*found : nullptr;
    }

private:
    static CLI::App* Child(CLI::App& parent, const std::string& word) {
        for (CLI::App* const child : parent.get_subcommands([](const CLI::App*) { return true; })) {
            if (child->get_name() == word) {
                return child;
            }
        }
        CLI::App* const child = parent.add_subcommand(word);
        child->set_help_flag();
        child->fallthrough();
        child->allow_windows_style_options(false);
        return child;
    }

    std::deque<Node> m_nodes;
};

/// The words that the library could not place; the mark that ends the options is none of them.
std::vector<std::string> Extras(const CLI::App& app) {
    std::vector<std::string> extras = app.remaining(true);
    std::erase(extras, "--");
    return extras;
}

/// The verbs, or parts of verbs, that may stand behind these words.
std::vector<std::string> Following(std::span<const Verb> verbs, const std::vector<std::string>& words) {
    std::vector<std::string> following;
    for (const Verb& verb : verbs) {
        const std::vector<std::string> name = WordsOf(verb.name);
        if (!verb.hidden && name.size() > words.size() && std::equal(words.begin(), words.end(), name.begin()) &&
            std::find(following.begin(), following.end(), name[words.size()]) == following.end()) {
            following.push_back(name[words.size()]);
        }
    }
    return following;
}

/// The words of the line that name a verb or a part of one.
std::vector<std::string> VerbWords(const CLI::App& app) {
    std::vector<std::string> words;
    for (const CLI::App* called = &app; !called->get_subcommands().empty();) {
        called = called->get_subcommands().front();
        words.push_back(called->get_name());
    }
    return words;
}

std::vector<std::string> OptionNames(const Verb* verb) {
    std::vector<std::string> names;
    const auto add = [&names](const Option& option) {
        if (option.name.starts_with('-')) {
            names.emplace_back(option.name);
        }
    };
    std::for_each(kGlobalOptions.begin(), kGlobalOptions.end(), add);
    if (verb != nullptr) {
        std::for_each(verb->options.begin(), verb->options.end(), add);
    }
    return names;
}

[[noreturn]] void FailForExtras(const CLI::App& app, const std::vector<std::string>& extras,
                                const CVerbTree::Node* node, std::span<const Verb> verbs) {
    const std::string& word = extras.front();
    const std::vector<std::string> words = VerbWords(app);
    const std::string behind = words.empty() ? "" : " " + Joined(words, " ");
    const std::string help = "see: cordelctl" + behind + " --help";
    if (word.starts_with("-")) {
        const std::string name = word.substr(0, word.find('='));
        throw CFailure(
            ExitCode::Usage,
            "there is no option " + name + DidYouMean(name, OptionNames(node != nullptr ? node->verb : nullptr)), help);
    }
    if (node != nullptr) {
        throw CFailure(ExitCode::Usage, "\"" + word + "\" is one word too many for cordelctl" + behind, help);
    }
    const std::vector<std::string> following = Following(verbs, words);
    throw CFailure(ExitCode::Usage,
                   "there is no verb \"" + (words.empty() ? "" : Joined(words, " ") + " ") + word + "\"" +
                       DidYouMean(word, following),
                   "one of: " + Joined(following, ", "));
}

/// What the library says of a line that it could not take apart, in the words of this tool.
[[noreturn]] void FailFor(const CLI::ParseError& error, const CLI::App& app) {
    const std::vector<std::string> words = VerbWords(app);
    std::string reason = error.what();
    constexpr std::string_view kRequired = " is required";
    if (reason.ends_with(kRequired)) {
        reason.resize(reason.size() - kRequired.size());
        reason += " is missing";
    }
    throw CFailure(ExitCode::Usage, reason,
                   "see: cordelctl" + (words.empty() ? "" : " " + Joined(words, " ")) + " --help");
}

int WaitOf(const std::string& text) {
    const bool number = !text.empty() && text.size() <= 5 &&
                        std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
    if (!number) {
        throw CFailure(ExitCode::Usage, "--wait takes no \"" + text + "\"", "give a number of seconds");
    }
    return std::stoi(text);
}

void TakeGlobals(const Slots& slots, Globals& globals) {
    Arguments given;
    for (const Slot& slot : slots) {
        if (slot.known->count() != 0) {
            given.Set(slot.option->name, slot.Given());
        }
    }
    if (given.Has("--printer")) {
        globals.printers = given.Texts("--printer");
        if (std::any_of(globals.printers.begin(), globals.printers.end(),
                        [](const auto& name) { return name.empty(); })) {
            throw CFailure(ExitCode::Usage, "the name behind --printer is empty",
                           "without --printer the main document is meant; an empty name is refused, since an empty "
                           "variable would mean it by mistake");
        }
    }
    if (given.Has("--language")) {
        globals.language = given.Text("--language");
        if (globals.language.empty() || globals.language.find_first_of("/\\") != std::string::npos ||
            globals.language.starts_with('.')) {
            throw CFailure(ExitCode::Usage, "\"" + globals.language + "\" is not the name of a language",
                           "give a folder's name in Cordelbox/language");
        }
    }
    globals.allPrinters = globals.allPrinters || given.Has("--all-printers");
    globals.json = globals.json || given.Has("--json");
    globals.quiet = globals.quiet || given.Has("--quiet");
    globals.dryRun = globals.dryRun || given.Has("--dry-run");
    globals.zero = globals.zero || given.Has("--zero");
    globals.columns = given.Has("--columns") ? given.Text("--columns") : globals.columns;
    globals.format = given.Has("--format") ? given.Text("--format") : globals.format;
    globals.wait = given.Has("--wait") ? WaitOf(given.Text("--wait")) : globals.wait;
}

} // namespace

std::span<const Option> GlobalOptions() { return kGlobalOptions; }

Command ReadCommandLine(const std::vector<std::string>& words, std::span<const Verb> verbs, const Globals& defaults) {
    // Help is asked for by a word anywhere before "--", and must not fail for what else is missing.
    const auto end = std::find(words.begin(), words.end(), "--");
    const auto asks = [&](std::string_view word) { return std::find(words.begin(), end, word) != end; };
    Command command;
    command.globals = defaults;
    if (asks("--version")) {
        command.text = "cordelctl " CORDELBOX_VERSION "\n";
        return command;
    }
    if (asks("--help") || asks("-h")) { // which needs nothing else
        command.text = HelpFor(words, verbs);
        return command;
    }
    CLI::App app("", "cordelctl");
    app.set_help_flag();
    app.fallthrough();                      // the options of the program may stand anywhere
    app.allow_windows_style_options(false); // a path may begin with a slash on every system
    app.allow_extras();
    Slots globals;
    for (const Option& option : kGlobalOptions) {
        AddOption(app, option, globals);
    }
    const CVerbTree tree(app, verbs, words);
    try {
        std::vector<std::string> reversed(words.rbegin(), words.rend()); // it takes them from the back
        const auto operands = std::find(reversed.rbegin(), reversed.rend(), "--");
        std::replace(reversed.rbegin(), operands, std::string("-0"), std::string("--zero"));
        app.parse(std::move(reversed));
    } catch (const CLI::ParseError& error) {
        if (const std::vector<std::string> extras = Extras(app); !extras.empty() && tree.Called() == nullptr) {
            FailForExtras(app, extras, nullptr, verbs);
        }
        FailFor(error, app);
    }
    const CVerbTree::Node* const called = tree.Called();
    if (const std::vector<std::string> extras = Extras(app); !extras.empty()) {
        FailForExtras(app, extras, called, verbs);
    }
    if (called == nullptr) {
        const std::vector<std::string> family = VerbWords(app);
        if (family.empty()) {
            throw CFailure(ExitCode::Usage, "no verb was given",
                           "one of: " + Joined(Following(verbs, {}), ", ") + "; see: cordelctl --help");
        }
        throw CFailure(ExitCode::Usage, Joined(family, " ") + " what?",
                       "one of: " + Joined(Following(verbs, family), ", "));
    }
    TakeGlobals(globals, command.globals);
    RequireChoices(called->slots);
    command.verb = called->verb;
    for (const Slot& slot : called->slots) {
        if (slot.known->count() != 0) {
            command.arguments.Set(slot.option->name, slot.Given());
        }
    }
    return command;
}

std::vector<std::string> SplitWords(const std::string& line) {
    std::vector<std::string> words;
    std::string word;
    bool begun = false;
    char quote = '\0';
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        if (quote != '\0' && c == quote) {
            quote = '\0';
        } else if (c == '\\' && quote != '\'' && i + 1 < line.size()) {
            word += line[++i];
            begun = true;
        } else if (quote != '\0') {
            word += c;
        } else if (c == '"' || c == '\'') {
            quote = c;
            begun = true;
        } else if (c == ' ' || c == '\t' || c == '\r') {
            if (begun) {
                words.push_back(std::move(word));
            }
            word.clear();
            begun = false;
        } else {
            word += c;
            begun = true;
        }
    }
    if (quote != '\0') {
        throw CFailure(ExitCode::Usage, std::string("a quote ") + quote + " is not closed");
    }
    if (begun) {
        words.push_back(std::move(word));
    }
    return words;
}
