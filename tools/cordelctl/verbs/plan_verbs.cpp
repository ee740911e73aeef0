// plan: what sending the ticked files to a printer would do.

#include "failure.h"
#include "planning/send_plan.h"
#include "text/nearest.h"
#include "text/number_text.h"
#include "verbs/reply_input.h"
#include "verbs/rows.h"
#include "verbs/send_space.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <set>
#include <stdexcept>

namespace {

/// The files of the project: those of the current document, or of the main one when a printer's lists none.
std::vector<ProjectFile> FilesOf(Context& context) {
    CDocument* document = &context.Document();
    if (!context.Options().printers.empty() && document->RowsOrNone("Files").empty()) {
        document = &context.Session().Open(MainDocument(), Access::Read);
    }
    RequireSound(*document, "Files");
    std::vector<ProjectFile> files;
    for (const Row& row : document->Rows("Files")) {
        ProjectFile file{row.Value("FileID"),        row.Value("Type"), row.Value("ProfileType"), row.Value("ID"),
                         row.Value("Volume"),        row.Value("Path"), row.Value("LocalPath"),   0,
                         row.Value("checked") == "1"};
        if (file.ticked) {
            file.size = RequireSize(row.Value("Size"), "the size of " + file.localPath);
        }
        files.push_back(std::move(file));
    }
    return files;
}

/// What the printer holds, as it told.
struct Listing {
    std::vector<PrinterFile> files;
    std::vector<ReplyVolume> volumes;
    std::vector<std::string> notes;
};

Listing ReadListing(const std::string& file) {
    const PrinterReply reply = ReadReply(file, "the listing");
    Listing listing{{}, reply.volumes.value_or(std::vector<ReplyVolume>()), UnlistedNotes(reply)};
    for (const ReplyEntry& entry : reply.entries) {
        if (!entry.isFolder) {
            listing.files.push_back({entry.volume, entry.path, entry.size});
        }
    }
    return listing;
}

std::vector<ReportedVolume> VolumesFor(CDocument& printer, const std::vector<ProjectFile>& files,
                                       const Listing& listing) {
    RequireSound(printer, "Storage");
    std::set<std::string> names;
    for (const ProjectFile& file : files) {
        if (file.ticked) {
            names.insert(file.volume);
        }
    }
    for (const PrinterFile& file : listing.files) {
        if (names.insert(file.volume).second && printer.RowsWhere("Storage", {{"Volume", file.volume}}).empty()) {
            throw CFailure(ExitCode::Missing,
                           "the listing has files of volume " + file.volume + ", which is not recorded in " +
                               printer.Title(),
                           "record what the printer reports: cordelctl storage report FILE");
        }
    }
    std::vector<ReportedVolume> volumes;
    for (const std::string& name : names) {
        volumes.push_back({name, FreeSpaceOf(printer, name)});
    }
    return volumes;
}

/// The figures that count are the recorded ones, as `space` has them. Notes where the printer told others since.
void CompareFigures(const std::vector<ReportedVolume>& recorded, const std::vector<ReplyVolume>& told,
                    const std::string& file, std::vector<std::string>& notes) {
    for (const ReportedVolume& volume : recorded) {
        const auto now = std::find_if(told.begin(), told.end(),
                                      [&](const ReplyVolume& other) { return other.volume == volume.volume; });
        if (now != told.end() && !now->freeSpace.empty() && now->freeSpace != std::to_string(volume.freeSpace)) {
            notes.push_back("of volume " + volume.volume + " " + std::to_string(volume.freeSpace) +
                            " free bytes are recorded, and the listing tells of " + now->freeSpace +
                            "; to record them: cordelctl storage report " + file);
        }
    }
}

const char* NameOf(Standing standing) {
    return standing == Standing::New ? "send" : standing == Standing::Replaces ? "replace" : "there";
}

Value DataOf(const VolumePlan& plan) {
    Value::List steps;
    for (const PlanStep& step : plan.steps) {
        steps.push_back(Value::Record{{"step", NameOf(step.standing)},
                                      {"FileID", step.file.fileID},
                                      {"ID", step.file.id},
                                      {"Path", step.file.path},
                                      {"LocalPath", step.file.localPath},
                                      {"Size", step.file.size},
                                      {"sizeThere", step.sizeThere},
                                      {"fits", step.fits},
                                      {"freeAfter", step.freeAfter}});
    }
    Value::List others;
    for (const PrinterFile& file : plan.inNoProject) {
        others.push_back(Value::Record{{"Path", file.path}, {"Size", file.size}});
    }
    return Value::Record{{"Volume", plan.volume},
                         {"FilesSize", plan.filesSize},
                         {"FreeSpace", plan.freeSpace},
                         {"FreeSpaceAfterSend", plan.freeSpaceAfterSend},
                         {"bytesToSend", plan.bytesToSend},
                         {"bytesReplaced", plan.bytesReplaced},
                         {"bytesMissing", plan.bytesMissing},
                         {"steps", std::move(steps)},
                         {"inNoProject", std::move(others)}};
}

std::string TextOf(const PlanClash& clash) {
    switch (clash.kind) {
    case PlanClash::Kind::SentTogether:
        return "files " + Joined(clash.fileIDs, ", ") + " (" + clash.group + ") all have the ID " + clash.id;
    case PlanClash::Kind::WithPrinter:
        return "files " + Joined(clash.fileIDs, ", ") + " (" + clash.group + ") have the ID " + clash.id +
               ", and the last of them is on the printer";
    case PlanClash::Kind::OnePath:
        break;
    }
    return "files " + Joined(clash.fileIDs, ", ") + " all go to " + clash.group + clash.id;
}

Value DataOf(const PlanClash& clash) {
    Value::List fileIDs(clash.fileIDs.begin(), clash.fileIDs.end());
    const bool path = clash.kind == PlanClash::Kind::OnePath;
    return Value::Record{{"kind", path                                          ? "path"
                                  : clash.kind == PlanClash::Kind::SentTogether ? "sent together"
                                                                                : "with printer"},
                         {path ? "Volume" : "group", clash.group},
                         {path ? "Path" : "ID", clash.id},
                         {"FileIDs", std::move(fileIDs)}};
}

std::string Bytes(std::int64_t count) { return ReadableSize(std::to_string(count)); }

void Say(const VolumePlan& plan, std::vector<std::string>& said) {
    said.push_back(plan.volume + "  " + Bytes(plan.freeSpace) + " free, " + Bytes(plan.bytesToSend) + " to send" +
                   (plan.bytesReplaced == 0 ? "" : ", " + Bytes(plan.bytesReplaced) + " replaced") +
                   (plan.bytesMissing == 0 ? "" : ", " + std::to_string(plan.bytesMissing) + " bytes missing"));
    for (const PlanStep& step : plan.steps) {
        said.push_back("  " + std::string(step.fits ? NameOf(step.standing) : "does not fit:") + " " + step.file.path +
                       " (" + Bytes(step.file.size) +
                       (step.standing == Standing::Replaces ? ", " + Bytes(step.sizeThere) + " there" : "") + ")");
    }
    for (const PrinterFile& file : plan.inNoProject) {
        said.push_back("  in no project: " + file.path + " (" + Bytes(file.size) + ")");
    }
}

/// One step a line: what, volume, path on it, local path, size; with tabs between.
Value::List ScriptOf(const SendPlan& plan) {
    Value::List lines;
    for (const VolumePlan& volume : plan.volumes) {
        for (const PlanStep& step : volume.steps) {
            if (step.fits && step.standing != Standing::IsThere) {
                lines.emplace_back(std::string(NameOf(step.standing)) + "\t" + volume.volume + "\t" + step.file.path +
                                   "\t" + step.file.localPath + "\t" + std::to_string(step.file.size));
            }
        }
    }
    return lines;
}

Result Plan(Context& context) {
    const std::vector<ProjectFile> files = FilesOf(context);
    Result result;
    Listing listing;
    if (context.Has("--listing")) {
        listing = ReadListing(context.Text("--listing"));
        result.notes = listing.notes;
    }
    CDocument& printer = context.Has("--for") ? context.Printer(context.Text("--for")) : context.Document();
    const auto volumes = VolumesFor(printer, files, listing);
    CompareFigures(volumes, listing.volumes, context.Text("--listing"), result.notes);
    SendPlan plan;
    try {
        plan = MakePlan(files, volumes, listing.files);
    } catch (const std::overflow_error& error) {
        throw CFailure(ExitCode::Refused, error.what());
    }
    if (context.Has("--steps")) {
        result.shape = Result::Shape::Lines;
        result.data = ScriptOf(plan);
    } else {
        Value::List data;
        for (const VolumePlan& volume : plan.volumes) {
            data.push_back(DataOf(volume));
            Say(volume, result.said);
        }
        Value::List clashes;
        for (const PlanClash& clash : plan.clashes) {
            clashes.push_back(DataOf(clash));
        }
        result.data =
            Value::Record{{"volumes", std::move(data)}, {"clashes", std::move(clashes)}, {"fits", plan.Fits()}};
        if (plan.volumes.empty()) {
            result.said.emplace_back("no file is ticked, so nothing would be sent");
        }
    }
    for (const PlanClash& clash : plan.clashes) {
        result.notes.push_back(TextOf(clash));
    }
    if (!plan.Fits()) {
        result.notes.emplace_back("the ticked files do not fit");
    }
    result.status = plan.Fits() && plan.clashes.empty() ? ExitCode::Done : ExitCode::No;
    return result;
}

} // namespace

std::vector<Verb> PlanVerbs() {
    return {{"plan",
             "Show what sending the ticked files would do on each volume, and in which order they fit",
             Effect::Reads,
             &Plan,
             {{Option::Kind::Text, "--for", "NAME", "Printer whose volumes count; without, those of the same document",
               false, Offer::Printers},
              {Option::Kind::Text, "--listing", "FILE",
               "The printer's reply to storage inquiry, with what its folders hold; - for standard input", false,
               Offer::Files},
              {Option::Kind::Flag, "--steps", "",
               "Only the steps, one a line: send or replace, volume, path, local path and size, with tabs between"}},
             "With --printer, and when that printer's document lists no files, those of the main document\n"
             "are planned for. The exit status is 1 when something does not fit or clashes.",
             "cordelctl plan --for Atrium\ncordelctl plan --for Atrium --listing reply.txt --steps"}};
}
