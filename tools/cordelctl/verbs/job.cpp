// job: print jobs that are stored on a printer.

#include "verbs.h"

#include "field_text.h"
#include "lookup.h"
#include "output.h"
#include "session.h"

namespace {

struct Options {
    std::string id;
    std::string name;
    std::string type = "Stored";
    std::string copies = "1";
    std::string stored;
};

struct FreeJobs {
    void operator()(JobRecord* jobs) const noexcept { DelJobList(jobs); }
};

ExitCode Add(const Globals& globals, const Options& options) {
    JobRecord job{};
    FillExactly(job.id, options.id, "the ID of the job");
    FillExactly(job.name, options.name, "the name of the job");
    FillExactly(job.type, options.type, "the type of the job");
    FillExactly(job.copies, options.copies, "the number of copies");
    FillExactly(job.stored, options.stored, "where the job is stored");
    const CSession session(globals);
    if (RowExists("Jobs", "ID", options.id)) { // a list would show the first of two for both
        throw CFailure(ExitCode::Refused, "a job with the ID " + options.id + " is recorded already",
                       "see which: cordelctl job list");
    }
    WriteJobList(&job);
    if (!RowExists("Jobs", "ID", options.id)) {
        throw CFailure(ExitCode::Missing, "the job was not recorded: the document has no container Jobs",
                       "add the empty container; the installed documents show where");
    }
    Say(globals, "added job " + options.id + ": " + options.name);
    session.RequireKept();
    return ExitCode::Done;
}

ExitCode List(const Globals& globals) {
    const CSession session(globals);
    int32_t count = 0;
    const std::unique_ptr<JobRecord[], FreeJobs> jobs(GetJobs(&count));
    std::vector<Json> rows;
    for (int32_t i = 0; i < count; ++i) {
        const JobRecord& job = jobs[static_cast<std::size_t>(i)];
        rows.push_back({{"ID", JsonText(job.id)},
                        {"Name", JsonText(job.name)},
                        {"Type", JsonText(job.type)},
                        {"Copies", JsonText(job.copies)},
                        {"Stored", JsonText(job.stored)},
                        {"checked", JsonText(job.checked)}});
    }
    PrintRows(globals,
              {{"ID", "ID", Format::Number},
               {"Name", "NAME"},
               {"Type", "TYPE"},
               {"Copies", "COPIES", Format::Number},
               {"Stored", "STORED"}},
              rows);
    return ExitCode::Done;
}

} // namespace

void AddJobVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const job = AddFamily(app, "job", "The print jobs stored on a printer");

    auto* const add = job->add_subcommand("add", "Record a job");
    add->add_option("ID", options->id, "Number of the job, at most 9 characters")->required();
    add->add_option("NAME", options->name, "Name of the job, at most 99 bytes")->required();
    add->add_option("--type", options->type, "Type of the job")->capture_default_str();
    add->add_option("--copies", options->copies, "Number of copies")->capture_default_str()->check(CLI::PositiveNumber);
    add->add_option("--stored", options->stored, "Where it is stored: a volume, say");
    add->callback([&host, options] { host.exit = Add(host.globals, *options); });

    auto* const list = job->add_subcommand("list", "List the jobs");
    list->callback([&host] { host.exit = List(host.globals); });
}
