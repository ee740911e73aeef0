// What may stand where on a command line.

#include "verbs/completion.h"

#include "command_line.h"
#include "document/document.h"
#include "document/places.h"
#include "failure.h"
#include "schema/schema.h"
#include "text/nearest.h"
#include "transaction/history.h"

#include <algorithm>
#include <filesystem>

namespace {

/// A line as far as it was typed.
struct Typed {
    const Verb* verb = nullptr;
    std::vector<std::string> verbWords;
    std::vector<std::string> operands;
    const Option* expecting = nullptr; // the option whose value comes next
    std::string printer;
    std::string language = "English";
};

const Option* FindOption(const Verb* verb, const std::string& name) {
    const auto is = [&](const Option& option) { return option.name == name; };
    const auto globals = GlobalOptions();
    if (const auto found = std::find_if(globals.begin(), globals.end(), is); found != globals.end()) {
        return &*found;
    }
    if (verb != nullptr) {
        if (const auto found = std::find_if(verb->options.begin(), verb->options.end(), is);
            found != verb->options.end()) {
            return &*found;
        }
    }
    return nullptr;
}

bool IsBeginOfVerb(std::span<const Verb> verbs, const std::vector<std::string>& words) {
    return std::any_of(verbs.begin(), verbs.end(), [&](const Verb& verb) {
        const auto name = WordsOf(verb.name);
        return !verb.hidden && name.size() >= words.size() && std::equal(words.begin(), words.end(), name.begin());
    });
}

Typed Read(std::span<const std::string> words, std::span<const Verb> verbs) {
    Typed typed;
    for (const std::string& word : words) {
        if (typed.expecting != nullptr) {
            if (typed.expecting->name == "--printer") {
                typed.printer = word;
            } else if (typed.expecting->name == "--language") {
                typed.language = word;
            }
            typed.expecting = nullptr;
            continue;
        }
        if (word.starts_with("-")) {
            const Option* const option = FindOption(typed.verb, word);
            typed.expecting = option != nullptr && option->kind != Option::Kind::Flag ? option : nullptr;
            continue;
        }
        auto longer = typed.verbWords;
        longer.push_back(word);
        if (typed.operands.empty() && IsBeginOfVerb(verbs, longer)) {
            typed.verbWords = std::move(longer);
            const std::string name = Joined(typed.verbWords, " ");
            const auto found =
                std::find_if(verbs.begin(), verbs.end(), [&](const Verb& verb) { return verb.name == name; });
            typed.verb = found != verbs.end() ? &*found : nullptr;
        } else {
            typed.operands.push_back(word);
        }
    }
    return typed;
}

std::vector<std::string> Values(const Typed& typed, const char* container, const char* attribute) {
    const DocumentPlace place =
        typed.printer.empty() ? MainDocument() : PrinterDocument(PrinterFileName(typed.printer));
    DocumentError error;
    const auto document = CDocument::TryLoad(place.Loaded(), error);
    std::vector<std::string> values;
    if (document != nullptr) {
        for (const Row& row : document->RowsOrNone(container)) {
            values.push_back(row.Value(attribute));
        }
    }
    return values;
}

std::vector<std::string> AttributeNames(const Typed& typed) {
    std::vector<std::string> names;
    const ContainerSchema* const container =
        typed.operands.empty() ? nullptr : FindContainerSchema(typed.operands.front());
    if (container != nullptr) {
        for (const AttributeSchema& attribute : container->attributes) {
            names.emplace_back(attribute.name);
        }
    }
    return names;
}

std::vector<std::string> Offered(const Option& option, const Typed& typed) {
    switch (option.offer) {
    case Offer::Printers: {
        std::vector<std::string> names;
        for (const std::string& name : PrinterFileNames()) {
            names.push_back(host::TextOf(host::PathOf(name).stem()));
        }
        return names;
    }
    case Offer::Languages:
        return InstalledLanguages();
    case Offer::Documents: {
        std::vector<std::string> names;
        for (const DocumentPlace& place : AllDocuments(typed.language)) {
            names.push_back(place.name);
        }
        return names;
    }
    case Offer::Containers: {
        std::vector<std::string> names;
        for (const ContainerSchema& container : Containers()) {
            names.emplace_back(container.name);
        }
        return names;
    }
    case Offer::Attributes:
        return AttributeNames(typed);
    case Offer::FileKeys:
        return Values(typed, "Files", "FileID");
    case Offer::JobKeys:
        return Values(typed, "Jobs", "ID");
    case Offer::PartitionKeys:
        return Values(typed, "CurrentDisk", "Partition");
    case Offer::VolumeKeys:
        return Values(typed, "Storage", "Volume");
    case Offer::States: {
        std::vector<std::string> numbers;
        const DocumentPlace place =
            typed.printer.empty() ? MainDocument() : PrinterDocument(PrinterFileName(typed.printer));
        for (const HistoryState& state : CHistory(place).States()) {
            numbers.push_back(std::to_string(state.number));
        }
        return numbers;
    }
    case Offer::Choices:
        return WordsOf(option.choices);
    default:
        return {};
    }
}

std::vector<std::string> AllCandidates(const Typed& typed, const std::string& begun, std::span<const Verb> verbs) {
    if (typed.expecting != nullptr) {
        return Offered(*typed.expecting, typed);
    }
    std::vector<std::string> all;
    if (begun.starts_with("-")) {
        for (const Option& option : GlobalOptions()) {
            all.emplace_back(option.name);
        }
        all.emplace_back("--help");
        if (typed.verb != nullptr) {
            for (const Option& option : typed.verb->options) {
                if (option.name.starts_with('-')) {
                    all.emplace_back(option.name);
                }
            }
        }
        return all;
    }
    if (typed.operands.empty()) {
        for (const Verb& verb : verbs) {
            const auto name = WordsOf(verb.name);
            if (!verb.hidden && name.size() > typed.verbWords.size() &&
                std::equal(typed.verbWords.begin(), typed.verbWords.end(), name.begin())) {
                all.push_back(name[typed.verbWords.size()]);
            }
        }
    }
    if (typed.verb != nullptr) {
        std::size_t place = 0;
        for (const Option& option : typed.verb->options) {
            if (option.kind == Option::Kind::Operands ||
                (option.kind == Option::Kind::Operand && place == typed.operands.size())) {
                const auto offered = Offered(option, typed);
                all.insert(all.end(), offered.begin(), offered.end());
                break;
            }
            place += option.kind == Option::Kind::Operand ? 1 : 0;
        }
    }
    return all;
}

} // namespace

std::vector<std::string> Candidates(const std::vector<std::string>& words, std::span<const Verb> verbs) {
    if (words.empty()) {
        return {};
    }
    const std::string& begun = words.back();
    std::vector<std::string> all;
    try {
        all = AllCandidates(Read({words.data(), words.size() - 1}, verbs), begun, verbs);
    } catch (const CFailure&) {
        return {}; // what cannot be read offers nothing
    }
    std::erase_if(all, [&](const std::string& word) { return !word.starts_with(begun); });
    std::sort(all.begin(), all.end());
    all.erase(std::unique(all.begin(), all.end()), all.end());
    return all;
}

std::string CompletionScript(const std::string& shell) {
    if (shell == "zsh") {
        return R"SCRIPT(#compdef cordelctl
# Completion of cordelctl for zsh: the program itself says what may stand where.

_cordelctl() {
    local -a candidates
    candidates=("${(@f)$(cordelctl complete -- "${(@Q)words[2,CURRENT-1]}" "${(Q)PREFIX}" 2>/dev/null)}")
    candidates=(${candidates:#})
    if (( ${#candidates} )); then
        compadd -a candidates
    else
        _files
    fi
}

if [ "$funcstack[1]" = "_cordelctl" ]; then
    _cordelctl "$@"
else
    compdef _cordelctl cordelctl
fi
)SCRIPT";
    }
    return R"SCRIPT(# Completion of cordelctl for bash: the program itself says what may stand where.

_cordelctl() {
    local words=() word candidate
    for word in "${COMP_WORDS[@]:1:COMP_CWORD}"; do
        # What is typed so far may be quoted.
        case $word in
        \"* | \'*) word=${word:1} word=${word%[\"\']} ;;
        *) word=${word//\\/} ;;
        esac
        words+=("$word")
    done
    COMPREPLY=()
    while IFS= read -r candidate; do
        [ -n "$candidate" ] && COMPREPLY+=("$(printf '%q' "$candidate")")
    done < <(cordelctl complete -- "${words[@]}" 2>/dev/null)
    if [ ${#COMPREPLY[@]} -eq 0 ]; then
        compopt -o default 2>/dev/null
    fi
}

complete -F _cordelctl cordelctl
)SCRIPT";
}
