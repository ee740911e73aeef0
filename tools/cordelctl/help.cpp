// What the tool says of itself.

#include "help.h"

#include "command_line.h"
#include "failure.h"
#include "text/nearest.h"

#include <algorithm>
#include <sstream>
#include <utility>

namespace {

constexpr std::size_t kWidth = 78;

constexpr const char* kPurpose =
    "Works on the documents of Cordelbox: storage, partitions, files and jobs of printers.";

struct Status {
    const char* number;
    const char* meaning;
};

constexpr Status kStatuses[] = {
    {"0", "done"},
    {"1",
     "the answer is no: files share an ID, the project does not fit, a file would not work on a printer, documents "
     "differ, or the doctor found an error or a warning"},
    {"2", "the command line was not understood"},
    {"3", "what was asked for, or was to be changed, is not in the document"},
    {"4", "the change was not kept: there is no per-user copy that may be written, another program holds it or changed "
          "it meanwhile, or it could not be saved"},
    {"5", "a document could not be opened"},
    {"6", "a file or a value was refused"},
    {"7", "the output could not be written"},
    {"130", "interrupted; a line says whether the change was saved"}};

bool IsOperand(const Option& option) {
    return option.kind == Option::Kind::Operand || option.kind == Option::Kind::Operands;
}

/// How an option stands in a line: "--where NAME=VALUE".
std::string Written(const Option& option) {
    std::string text(option.name);
    if (!option.value.empty()) {
        text += " " + std::string(option.value);
    }
    return text;
}

std::string Synopsis(const Verb& verb) {
    std::string text = "cordelctl " + std::string(verb.name);
    const bool hasOptions = std::any_of(verb.options.begin(), verb.options.end(),
                                        [](const Option& option) { return !IsOperand(option) && !option.required; });
    for (const Option& option : verb.options) {
        if (!IsOperand(option) && option.required) {
            text += " " + Written(option);
        }
    }
    text += hasOptions ? " [OPTION...]" : "";
    for (const Option& option : verb.options) {
        if (IsOperand(option)) {
            const std::string name = std::string(option.name) + (option.kind == Option::Kind::Operands ? "..." : "");
            text += option.required ? " " + name : " [" + name + "]";
        }
    }
    return text;
}

/// The text in lines of at most kWidth bytes, the second and further ones behind `indent` blanks; the first of them is
/// `column` wide already.
std::string Wrapped(const std::string& text, std::size_t column, std::size_t indent) {
    std::string result;
    for (const std::string& word : WordsOf(text)) {
        if (column + word.size() + 1 > kWidth && column > indent) {
            result += "\n" + std::string(indent, ' ');
            column = indent;
        } else if (!result.empty() && column > indent) {
            result += " ";
            ++column;
        }
        result += word;
        column += word.size();
    }
    return result;
}

std::string Entry(const std::string& name, const std::string& meaning) {
    constexpr std::size_t kIndent = 26;
    std::string line = "  " + name;
    if (line.size() + 2 > kIndent) {
        line += "\n" + std::string(kIndent, ' ');
    } else {
        line.resize(kIndent, ' ');
    }
    return line + Wrapped(meaning, kIndent, kIndent) + "\n";
}

std::string EntryOf(const Option& option) { return Entry(Written(option), std::string(option.help)); }

/// The names of the verbs that begin with these words.
std::vector<const Verb*> Below(std::span<const Verb> verbs, const std::vector<std::string>& words) {
    std::vector<const Verb*> below;
    for (const Verb& verb : verbs) {
        const std::vector<std::string> name = WordsOf(verb.name);
        if (!verb.hidden && name.size() >= words.size() && std::equal(words.begin(), words.end(), name.begin())) {
            below.push_back(&verb);
        }
    }
    return below;
}

/// True for an option of the program behind which its value stands.
bool TakesValue(const std::string& word) {
    const auto globals = GlobalOptions();
    return std::any_of(globals.begin(), globals.end(),
                       [&](const Option& option) { return option.name == word && option.kind != Option::Kind::Flag; });
}

std::string HelpForVerb(const Verb& verb) {
    std::string help = Synopsis(verb) + "\n\n" + Wrapped(std::string(verb.summary) + ".", 0, 0) + "\n";
    if (!verb.details.empty()) {
        help += "\n" + std::string(verb.details) + "\n";
    }
    if (!verb.options.empty()) {
        help += "\n";
        for (const Option& option : verb.options) {
            help += EntryOf(option);
        }
    }
    if (!verb.examples.empty()) {
        help += "\nExamples:\n";
        std::istringstream lines{std::string(verb.examples)};
        for (std::string line; std::getline(lines, line);) {
            help += "  " + line + "\n";
        }
    }
    return help + "\nOptions that stand for every verb, and the exit statuses: cordelctl --help\n";
}

std::string HelpForFamily(const std::vector<std::string>& words, const std::vector<const Verb*>& family) {
    std::string help = "cordelctl " + Joined(words, " ") + " VERB ...\n\n";
    for (const Verb* const verb : family) {
        std::vector<std::string> rest = WordsOf(verb->name);
        rest.erase(rest.begin(), rest.begin() + static_cast<std::ptrdiff_t>(words.size()));
        help += Entry(Joined(rest, " "), std::string(verb->summary));
    }
    return help;
}

std::string HelpForAll(std::span<const Verb> verbs) {
    std::string help = std::string("cordelctl [OPTION...] VERB ...\n\n") + kPurpose + "\n\nVerbs:\n";
    for (const Verb& verb : verbs) {
        help += verb.hidden ? "" : Entry(std::string(verb.name), std::string(verb.summary));
    }
    help += "\nOptions:\n";
    for (const Option& option : GlobalOptions()) {
        help += EntryOf(option);
    }
    help += Entry("--help", "Print this, or the help for a verb") + Entry("--version", "Print the version");
    help += "\nExit status:\n";
    for (const Status& status : kStatuses) {
        help += Entry(status.number, status.meaning);
    }
    return help;
}

/// The text for man: a backslash, a hyphen and a leading dot have meanings of their own there.
std::string Roff(std::string_view text) {
    std::string result;
    for (const char c : text) {
        if (c == '\\') {
            result += "\\e";
        } else if (c == '-') {
            result += "\\-";
        } else if ((c == '.' || c == '\'') && (result.empty() || result.back() == '\n')) {
            result += std::string("\\&") + c;
        } else {
            result += c;
        }
    }
    return result;
}

std::string RoffEntry(const std::string& name, std::string_view meaning) {
    return ".TP\n.B " + Roff(name) + "\n" + Roff(meaning) + "\n";
}

} // namespace

std::string HelpFor(const std::vector<std::string>& words, std::span<const Verb> verbs) {
    // The longest beginning of the words, options left out, that names a verb or a family.
    std::vector<std::string> named;
    bool isValue = false;
    for (const std::string& word : words) {
        const bool skipped = std::exchange(isValue, TakesValue(word)) || word.starts_with("-");
        std::vector<std::string> longer = named;
        longer.push_back(word);
        if (!skipped && !Below(verbs, longer).empty()) {
            named = std::move(longer);
        } else if (!skipped && named.empty()) {
            throw CFailure(ExitCode::Usage, "there is no verb \"" + word + "\"",
                           "see which there are: cordelctl --help");
        }
    }
    if (named.empty()) {
        return HelpForAll(verbs);
    }
    const std::string name = Joined(named, " ");
    const auto exact = std::find_if(verbs.begin(), verbs.end(), [&](const Verb& verb) { return verb.name == name; });
    return exact != verbs.end() ? HelpForVerb(*exact) : HelpForFamily(named, Below(verbs, named));
}

std::string ManualPage(std::span<const Verb> verbs) {
    std::string page = ".TH CORDELCTL 1 \"\" \"cordelctl " CORDELBOX_VERSION "\" \"Cordelbox\"\n"
                       ".SH NAME\ncordelctl \\- work on the documents of Cordelbox\n"
                       ".SH SYNOPSIS\n.B cordelctl\n[\\fIOPTION\\fR...] \\fIVERB\\fR ...\n.SH DESCRIPTION\n";
    page += Roff(kPurpose);
    page += "\nA command that changes a document loads it, changes it and saves it once, or changes nothing. What was "
            "there "
            "before is kept, and\n.B cordelctl undo\nbrings it back.\n.SH OPTIONS\n";
    for (const Option& option : GlobalOptions()) {
        page += RoffEntry(Written(option), option.help);
    }
    page += RoffEntry("--help", "Print help, for the whole program or for a verb") +
            RoffEntry("--version", "Print the version");
    page += ".SH VERBS\n";
    for (const Verb& verb : verbs) {
        if (verb.hidden) {
            continue;
        }
        page += ".SS " + Roff(Synopsis(verb)) + "\n" + Roff(verb.summary) + ".\n";
        if (!verb.details.empty()) {
            page += ".PP\n.nf\n" + Roff(verb.details) + "\n.fi\n";
        }
        for (const Option& option : verb.options) {
            page += RoffEntry(Written(option), option.help);
        }
        if (!verb.examples.empty()) {
            page += ".PP\nExamples:\n.PP\n.nf\n" + Roff(verb.examples) + "\n.fi\n";
        }
    }
    page += ".SH EXIT STATUS\n";
    for (const Status& status : kStatuses) {
        page += RoffEntry(status.number, status.meaning);
    }
    page += ".SH ENVIRONMENT\n";
    page +=
        RoffEntry("CORDELCTL_HISTORY", "How many states of a document are kept for undo: 50 without it, none with 0");
    page += RoffEntry("CORDELCTL_HISTORY_BYTES", "How many bytes they may take in all: 64M without it");
    page += RoffEntry("NO_COLOR", "When it is set, and not empty, output has no colours");
    page +=
        RoffEntry("XDG_CONFIG_HOME, HOME", "Where the user's own copies lie: below Marvane/Hollivet in the one, or in "
                                           ".config in the other");
    return page;
}

std::string Reference(std::span<const Verb> verbs) {
    std::string text;
    for (const Verb& verb : verbs) {
        if (verb.hidden) {
            continue;
        }
        text += "### " + std::string(verb.name) + "\n\n    " + Synopsis(verb) + "\n\n" + std::string(verb.summary) +
                ".\n\n";
        if (!verb.details.empty()) {
            text += std::string(verb.details) + "\n\n";
        }
        for (const Option& option : verb.options) {
            text += "- `" + Written(option) + "`: " + std::string(option.help) + "\n";
        }
        text += verb.options.empty() ? "" : "\n";
    }
    return text;
}
