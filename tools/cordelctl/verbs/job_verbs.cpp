// job: print jobs that are stored on a printer.

#include "failure.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

namespace {

const ContainerSchema& Jobs() { return Schema("Jobs"); }

Result AddJob(Context& context) {
    const auto value = [&](const char* option, const char* fallback) {
        return context.Has(option) ? context.Text(option) : std::string(fallback);
    };
    const std::vector<Pair> given{{"Name", context.Text("NAME")},      {"ID", context.Text("ID")},
                                  {"Type", value("--type", "Stored")}, {"Copies", value("--copies", "1")},
                                  {"Stored", value("--stored", "")},   {"checked", "0"}};
    std::vector<Pair> values;
    for (const auto& [name, text] : given) {
        values.emplace_back(name, StoredValue(*FindAttributeSchema(Jobs(), name), text));
    }
    const std::string id = context.Text("ID");
    if (id.empty() || context.Text("NAME").empty()) {
        throw CFailure(ExitCode::Usage, "a job needs an ID and a name");
    }
    CDocument& document = context.Document();
    if (!document.RowsWhere("Jobs", {{"ID", id}}).empty()) { // a list would show the first of two for both
        throw CFailure(ExitCode::Refused, "a job with the ID " + id + " is recorded already",
                       "see which: cordelctl job list; to change it: cordelctl job edit " + id);
    }
    document.AppendRow("Jobs", values);
    Result result;
    result.data = Value::Record();
    for (const auto& [name, text] : values) {
        result.data.Add(name, text);
    }
    result.said.push_back("added job " + id + ": " + context.Text("NAME"));
    return result;
}

Result ListJobs(Context& context) {
    CDocument& document = context.Document();
    Result result = TableOf(document.RowsWhere("Jobs", FilterOf(context.Texts("--where"))));
    result.columns = {{"ID", "ID", Format::Number},
                      {"Name", "NAME", Format::Text},
                      {"Type", "TYPE", Format::Text},
                      {"Copies", "COPIES", Format::Number},
                      {"Stored", "STORED", Format::Text}};
    result.names = AttributeNames(Jobs());
    return result;
}

Result EditJobs(Context& context) {
    const std::vector<Pair> values = GivenValues(context.Args(), Jobs());
    if (values.empty()) {
        throw CFailure(ExitCode::Usage, "nothing is to be changed", "see what can be: cordelctl job edit --help");
    }
    CDocument& document = context.Document();
    std::vector<Row> rows = ChosenRows(context, document, Jobs(), "ID");
    EditRows(document, Jobs(), rows, values);
    Result result;
    result.data = TableOf(rows).data;
    result.said.push_back(Counted(rows.size(), "job") + " changed");
    return result;
}

Result RemoveJobs(Context& context) {
    CDocument& document = context.Document();
    const std::vector<Row> rows = ChosenRows(context, document, Jobs(), "ID");
    document.RemoveRows("Jobs", rows);
    Result result;
    result.data = TableOf(rows).data;
    result.said.push_back(Counted(rows.size(), "job") + " removed");
    return result;
}

} // namespace

std::vector<Verb> JobVerbs() {
    const Option where = WhereOption("The jobs with this value; several must all match");
    const Option ids{Option::Kind::Operands, "ID", "", "IDs of jobs", false, Offer::JobKeys};
    const Option all{Option::Kind::Flag, "--all", "", "All jobs"};
    std::vector<Option> edit = EditOptions(Jobs(), {});
    edit.insert(edit.begin(), {ids, where, all});
    return {
        {"job add",
         "Record a job",
         Effect::Changes,
         &AddJob,
         {{Option::Kind::Operand, "ID", "", "Number of the job, at most 9 characters", true},
          {Option::Kind::Operand, "NAME", "", "Name of the job, at most 99 bytes", true},
          {Option::Kind::Text, "--type", "TYPE", "Type of the job; without, Stored"},
          {Option::Kind::Text, "--copies", "NUMBER", "Number of copies; without, 1"},
          {Option::Kind::Text, "--stored", "TEXT", "Where it is stored: a volume, say"}},
         {},
         "cordelctl job add 7 \"Spring menu\" --copies 3 --stored 0: --printer Atrium"},
        {"job list", "List the jobs", Effect::Reads, &ListJobs, {where}, {}, "cordelctl job list --all-printers"},
        {"job edit",
         "Change jobs",
         Effect::Changes,
         &EditJobs,
         std::move(edit),
         {},
         "cordelctl job edit 7 --copies 5 --printer Atrium"},
        {"job remove",
         "Remove jobs",
         Effect::Changes,
         &RemoveJobs,
         {ids, where, all},
         {},
         "cordelctl job remove 7 8 --printer Atrium\ncordelctl job remove --where Type=Proof --printer Atrium"},
    };
}
