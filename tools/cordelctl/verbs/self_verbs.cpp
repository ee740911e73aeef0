// manual, completion: what the tool says of itself.

#include "help.h"
#include "text/nearest.h"
#include "verbs/completion.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

namespace {

Result Lines(const std::string& text) {
    Result result;
    result.shape = Result::Shape::Plain;
    result.data = text.substr(0, text.find_last_not_of('\n') + 1);
    return result;
}

Result Manual(Context& context) {
    return Lines(context.Has("--markdown") ? Reference(AllVerbs()) : ManualPage(AllVerbs()));
}

Result Completion(Context& context) { return Lines(CompletionScript(context.Text("SHELL"))); }

Result Complete(Context& context) {
    Result result;
    result.shape = Result::Shape::Lines;
    result.data = Value::List();
    for (const std::string& word : Candidates(context.Texts("WORD"), AllVerbs())) {
        result.data.Append(word);
    }
    return result;
}

} // namespace

std::vector<Verb> SelfVerbs() {
    Verb manual{"manual",
                "Print the manual page",
                Effect::None,
                &Manual,
                {{Option::Kind::Flag, "--markdown", "", "The reference of all verbs as Markdown"}},
                {},
                "cordelctl manual | man -l -"};
    Verb complete{"complete",
                  "Print what may stand in place of the last of these words",
                  Effect::None,
                  &Complete,
                  {{Option::Kind::Operands, "WORD", "", "The words behind cordelctl"}}};
    complete.hidden = true;
    return {manual,
            {"completion",
             "Print the script that completes command lines of this program",
             Effect::None,
             &Completion,
             {{Option::Kind::Operand, "SHELL", "", "bash or zsh", true, Offer::Choices, "bash zsh"}},
             {},
             "source <(cordelctl completion bash)"},
            complete};
}
