// string, filter: the user-visible texts.

#include "failure.h"
#include "text/nearest.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

namespace {

Result PrintString(Context& context) {
    const std::string element = context.Text("ELEMENT");
    const std::string attribute = context.Text("ATTRIBUTE");
    const Filter filter = FilterOf(context.Texts("--where"));
    CDocument& texts = context.Strings();
    if (texts.HasContainer(element)) {
        for (const Row& row : texts.RowsWhere(element, filter)) {
            if (const std::string* const text = row.Find(attribute)) {
                Result result;
                result.shape = Result::Shape::Plain;
                result.data = *text;
                return result;
            }
        }
    }
    throw CFailure(ExitCode::Missing,
                   texts.Title() + " has no text " + element + " " + attribute +
                       (filter.empty() ? "" : " with " + Joined(context.Texts("--where"), ", ")),
                   "see what there is: cordelctl tree --texts");
}

Result PrintFilter(Context& context) {
    const std::string element = context.Text("ELEMENT");
    CDocument& texts = context.Strings();
    Result result;
    result.shape = Result::Shape::Lines;
    result.data = Value::List();
    for (const Row& row : texts.RowsOrNone(element)) {
        for (const auto& [name, text] : row.values) {
            result.data.Append(text);
        }
    }
    if (result.data.Items().empty()) {
        throw CFailure(ExitCode::Missing, texts.Title() + " has no list " + element);
    }
    return result;
}

} // namespace

std::vector<Verb> TextVerbs() {
    const Option element{Option::Kind::Operand, "ELEMENT", "", "Container of the strings document", true,
                         Offer::Containers};
    return {
        {"string",
         "Print a user-visible text",
         Effect::Reads,
         &PrintString,
         {element,
          {Option::Kind::Operand, "ATTRIBUTE", "", "Name of the attribute", true, Offer::Attributes},
          WhereOption("The item to use; several must all match")},
         {},
         "cordelctl string ProjectFilter Value --where ID=2 --language German"},
        {"filter",
         "Print a filter list: each text, followed by its pattern",
         Effect::Reads,
         &PrintFilter,
         {element},
         {},
         "cordelctl filter FontFilter"},
    };
}
