// files add: gathers files of this computer into the project.

#include "verbs/files_add.h"

#include "catalogue/project_files.h"
#include "decoration.h"
#include "facts/file_bytes.h"
#include "failure.h"
#include "records/change_time.h"
#include "records/field_text.h"
#include "records/file_contents.h"
#include "records/file_facts.h"
#include "records/file_numbers.h"
#include "records/file_verification.h"
#include "records/kept_digests.h"
#include "records/listed_paths.h"
#include "verbs/intake.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <stdexcept>

namespace {

/// A file that was named or found.
struct Candidate {
    std::string name;
    bool found; // in a folder: what is no font and no profile is passed over there
};

/// The files that are named, and those in the folders that are named, in order.
std::vector<Candidate> CandidatesOf(const Context& context) {
    std::vector<Candidate> candidates;
    for (const std::string& name : context.Texts("FILE")) {
        std::error_code error;
        if (!context.Has("--recursive") || !std::filesystem::is_directory(host::PathOf(name), error)) {
            candidates.push_back({name, false});
            continue;
        }
        std::vector<std::string> inside;
        const auto options = std::filesystem::directory_options::skip_permission_denied;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(host::PathOf(name), options, error)) {
            if (entry.is_regular_file(error)) {
                inside.push_back(host::TextOf(entry.path()));
            }
        }
        std::sort(inside.begin(), inside.end());
        std::transform(inside.begin(), inside.end(), std::back_inserter(candidates), [](const std::string& file) {
            return Candidate{file, true};
        });
    }
    return candidates;
}

class CFileAdder {
public:
    CFileAdder(const Context& context, CDocument& document)
        : m_context(context), m_document(document), m_numbers(document), m_paths(document),
          m_strVolume(context.Has("--volume") ? context.Text("--volume")
                                              : document.FirstValue("Project", "Volume").value_or("")) {
        if (context.Has("--volume") && m_strVolume.empty()) {
            throw CFailure(ExitCode::Usage, "the value behind --volume is empty");
        }
        for (const Row& row : document.RowsOrNone("Files")) {
            m_contents.Add(RecordedContent(row));
        }
    }

    bool IsListed(const std::string& path) const { return m_paths.Has(path); }

    /// Adds one file and returns what was recorded, and what was found in it. Throws when the file is refused.
    Value Add(const std::string& name, std::vector<std::string>& notes, FileFindings& findings) {
        const auto path = RealPath(name);
        const std::string localPath = host::TextOf(path);
        if (m_paths.Has(localPath)) {
            throw CFailure(ExitCode::Refused, "it is listed already",
                           "paths are compared without regard to upper and lower case; to pass over what is listed: "
                           "--skip-listed");
        }
        const std::string type = RequireType(path);
        FileContent content{"", path, std::filesystem::file_size(path), {}};
        findings = CheckContent(content, type);
        RefuseErrors(findings);
        const FileDetails details = ReadFileDetails(path, type, ProfileType(),
                                                    m_context.Has("--force") ? Unreadable::Taken : Unreadable::Refused);
        FileItem item{};
        FillExactly(item.LocalPath, localPath, "its path");
        const std::string component = m_context.Has("--component") ? m_context.Text("--component") : details.component;
        const std::string folder = m_context.Has("--folder") ? m_context.Text("--folder") : details.folder;
        FillExactly(item.Component, component, "the component");
        FillExactly(item.Volume, m_strVolume, "the volume");
        FillExactly(item.Path, folder + "/" + host::TextOf(path.filename()), "its path on the printer");
        CopyText(item.Type, details.type);
        CopyText(item.Size, std::to_string(content.size));
        CopyText(item.CreateDate, ChangeTime(path));
        const std::string id = m_numbers.TakeID(details.type, details.profileType);
        const std::string fileID = m_numbers.TakeFileID();
        CopyText(item.ID, id);
        CopyText(item.FileID, fileID);
        item.detail = details.record.empty() ? nullptr : details.record.data();
        RequireDone(AddProjectFile(m_document.Object(), item), "the file");
        m_document.NoteChange();
        m_paths.Add(localPath);
        content.fileID = fileID;
        m_contents.Add(std::move(content));
        m_localPaths.push_back(localPath);
        notes.insert(notes.end(), details.notes.begin(), details.notes.end());
        return Value::Record{
            {"file", name},         {"added", true},          {"FileID", fileID},      {"ID", id},
            {"Type", details.type}, {"title", details.title}, {"Volume", m_strVolume}, {"LocalPath", localPath}};
    }

    /// Files that were added.
    const std::vector<std::string>& LocalPaths() const noexcept { return m_localPaths; }

    static std::filesystem::path RealPath(const std::string& name) {
        std::error_code error;
        auto path = std::filesystem::canonical(host::PathOf(name), error);
        if (error) {
            throw CFailure(ExitCode::Refused, "it cannot be found: " + error.message());
        }
        if (!std::filesystem::is_regular_file(path)) {
            throw CFailure(ExitCode::Refused,
                           std::filesystem::is_directory(path) ? "it is a folder" : "it is no regular file",
                           "to add all fonts and profiles of a folder: cordelctl files add --recursive FOLDER");
        }
        return path;
    }

private:
    std::string RequireType(const std::filesystem::path& path) const {
        std::string type = m_context.Has("--type") ? m_context.Text("--type") : FileTypeOf(path);
        if (type.empty()) {
            throw CFailure(ExitCode::Refused, "it is neither a TrueType font nor a colour profile nor a soft font",
                           "say what it is: --type 1 (bitmap font), 2 (macro) or 8 (form overlay)");
        }
        return type;
    }

    /// Looks through the file, and whether others hold the same.
    FileFindings CheckContent(FileContent& file, const std::string& type) {
        try {
            FileFindings findings;
            if (HasForm(type)) {
                // Slots that were chosen are not questioned: --profile is there to choose others than the profile is
                // made for.
                auto content = VerifyContent(ReadFileBytes(file.path), type, "", m_context.Text("--covers"));
                file.postScriptNames = std::move(content.postScriptNames);
                findings = std::move(content.findings);
            }
            const FileFindings repeated = m_contents.Compare(file);
            findings.insert(findings.end(), repeated.begin(), repeated.end());
            return findings;
        } catch (const std::filesystem::filesystem_error&) {
            throw;
        } catch (const std::runtime_error& error) {
            throw CFailure(ExitCode::Refused, error.what());
        }
    }

    /// Throws for an error, unless the file is to be taken all the same.
    void RefuseErrors(const FileFindings& findings) const {
        for (const FileFinding& finding : findings) {
            if (TextOf(finding.cause).severity == Severity::Error && !m_context.Has("--force")) {
                throw CFailure(ExitCode::Refused, SpokenFinding(finding),
                               std::string(TextOf(finding.cause).advice) + "; to add it all the same: --force");
            }
        }
    }

    std::string ProfileType() const {
        static const std::map<std::string, std::string> types{
            {"", ""}, {"rgb", "0"}, {"printer", "2"}, {"linked", "3"}};
        return types.at(m_context.Text("--profile"));
    }

    const Context& m_context;
    CDocument& m_document;
    CFreeNumbers m_numbers;
    CListedPaths m_paths;
    CFileContents m_contents;
    std::vector<std::string> m_localPaths;
    std::string m_strVolume;
};

/// What of a folder is neither a font nor a profile.
bool IsOfNoKind(const Context& context, const std::filesystem::path& path) {
    return !context.Has("--type") && FileTypeOf(path).empty();
}

void AddFindings(Value& row, const FileFindings& findings) {
    Value::List list;
    for (const FileFinding& finding : findings) {
        list.emplace_back(DataOf(finding));
    }
    if (!list.empty()) {
        row.Add("findings", std::move(list));
    }
}

/// Digests that are kept of files that are added again tell of them as they are now.
void RenewDigests(Context& context, const std::vector<std::string>& localPaths) {
    const DigestList changed = ChangedDigests(context.Place(), localPaths);
    if (!changed.empty()) {
        KeepDigests(context.Session(), context.Place(), changed);
    }
}

Result Add(Context& context) {
    const std::vector<Candidate> candidates = CandidatesOf(context);
    CDocument& document = context.Document();
    RequireSound(document, "Files");
    CFileAdder adder(context, document);
    CIntake intake(context, "file", "added");
    CProgress progress(candidates.size(), "adding");
    for (std::size_t i = 0; i < candidates.size(); ++i) {
        StopIfInterrupted();
        progress.Show(i);
        const std::string& name = candidates[i].name;
        FileFindings findings;
        try {
            if ((candidates[i].found && IsOfNoKind(context, host::PathOf(name))) ||
                (context.Has("--skip-listed") && adder.IsListed(host::TextOf(CFileAdder::RealPath(name))))) {
                intake.PassedOver();
                continue;
            }
            std::vector<std::string> notes;
            Value row = adder.Add(name, notes, findings);
            std::vector<std::string> said{"added " + row["FileID"].Text() + ": \"" + row["title"].Text() +
                                          "\" with ID " + row["ID"].Text() + ", " + row["LocalPath"].Text()};
            for (const FileFinding& finding : findings) {
                said.push_back("  " + SpokenFinding(finding) + "; " + TextOf(finding.cause).advice);
            }
            AddFindings(row, findings);
            intake.Took(std::move(row), said, notes);
        } catch (const CFailure& failure) {
            if (failure.Code() != ExitCode::Refused) {
                throw;
            }
            AddFindings(intake.Refused(name, failure.what(), failure.Advice()), findings);
        } catch (const std::filesystem::filesystem_error& error) {
            intake.Refused(name, error.code().message());
        }
    }
    Result result = intake.Finish();
    if (result.status == ExitCode::Done || result.partial) {
        RenewDigests(context, adder.LocalPaths());
    }
    return result;
}

} // namespace

std::vector<Verb> FilesAddVerbs() {
    return {
        {"files add",
         "Add TrueType fonts, soft fonts and colour profiles, each with what it says of itself and with the next free "
         "ID",
         Effect::Changes,
         &Add,
         {{Option::Kind::Operands, "FILE", "", "The files, or with --recursive folders", true, Offer::Files},
          {Option::Kind::Text, "--type", "TYPE",
           "What the files are: 1 bitmap font, 2 macro, 5 TrueType font, 6 colour profile, 8 form overlay; without, "
           "their content tells",
           false, Offer::Choices, "1 2 5 6 8"},
          {Option::Kind::Text, "--profile", "KIND",
           "Which slots colour profiles take: rgb, printer or linked; without, their content tells", false,
           Offer::Choices, "rgb printer linked"},
          {Option::Kind::Text, "--volume", "VOLUME", "Volume of the printer; without, the project's", false,
           Offer::VolumeKeys},
          {Option::Kind::Text, "--folder", "PATH", "Folder on that volume; without, one for each type"},
          {Option::Kind::Text, "--component", "NAME", "Component that the files belong to"},
          {Option::Kind::Flag, "--recursive", "",
           "Add all fonts and profiles of a folder, and of the folders in it; other files are passed over"},
          {Option::Kind::Text, "--covers", "TEXT", "Refuse fonts that lack a character of this text"},
          {Option::Kind::Flag, "--force", "", "Add also what will not work on a printer; what is wrong is said"},
          KeepGoingOption(),
          {Option::Kind::Flag, "--skip-listed", "", "Pass over files that are listed already, without a word"}},
         {},
         "cordelctl files add /usr/share/fonts/truetype/dejavu/*.ttf\n"
         "cordelctl files add --recursive --skip-listed ~/fonts\n"
         "cordelctl files add --type 2 letterhead.mac"}};
}
