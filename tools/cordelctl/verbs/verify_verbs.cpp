// files verify, files renew: whether the listed files are still what they were, and whether they will work on a
// printer.

#include "decoration.h"
#include "digests/digest.h"
#include "facts/file_bytes.h"
#include "failure.h"
#include "records/change_time.h"
#include "records/file_contents.h"
#include "records/file_verification.h"
#include "records/kept_digests.h"
#include "system/system.h"
#include "verbs/chosen_files.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <filesystem>
#include <set>
#include <stdexcept>

namespace {

/// Looks through one listed file after another.
class CVerifier {
public:
    CVerifier(const Context& context, DigestList kept, CFileContents others)
        : m_context(context), m_kept(std::move(kept)), m_others(std::move(others)) {}

    void Verify(const Row& row) {
        const std::string localPath = row.Value("LocalPath");
        const auto path = host::PathOf(localPath);
        std::error_code error;
        if (!std::filesystem::is_regular_file(path, error)) {
            Add(row, {Cause::FileMissing, localPath});
            return;
        }
        ContentVerification content;
        FileContent file{row.Value("FileID"), path, 0, {}};
        std::string digest;
        FileFindings repeated;
        try {
            const std::string type = row.Value("Type");
            if (HasForm(type)) {
                content =
                    VerifyContent(ReadFileBytes(path), type, row.Value("ProfileType"), m_context.Text("--covers"));
            }
            // That of a font takes half as long as all else, and is worked out only where it is needed.
            if (!HasForm(type) || m_kept.count(localPath) != 0 || m_context.Has("--keep-digests")) {
                digest = Sha256OfFile(path);
                m_digests[localPath] = digest;
            }
            file.size = std::filesystem::file_size(path);
            file.postScriptNames = std::move(content.postScriptNames);
            repeated = m_others.Compare(file);
        } catch (const std::runtime_error& reason) {
            Add(row, {Cause::FileUnreadable, localPath + ": " + reason.what()});
            return;
        }
        CheckChange(row, file, digest);
        for (const FileFindings& findings : {content.findings, repeated}) {
            for (const FileFinding& finding : findings) {
                Add(row, finding);
            }
        }
        m_others.Add(std::move(file));
    }

    Value::List Findings() && { return std::move(m_findings); }
    std::size_t Errors() const noexcept { return m_nErrors; }

    /// Those that are to be kept.
    const DigestList& Digests() const noexcept { return m_digests; }

private:
    void CheckChange(const Row& row, const FileContent& file, const std::string& digest) {
        const auto kept = m_kept.find(row.Value("LocalPath"));
        const std::string recordedSize = row.Value("Size");
        const std::string recordedTime = row.Value("CreateDate");
        const std::string size = std::to_string(file.size);
        if (!recordedSize.empty() && recordedSize != size) {
            Add(row, {Cause::FileChanged, "it has " + size + " bytes, and " + recordedSize + " are recorded"});
        } else if (kept != m_kept.end() && kept->second != digest) {
            Add(row, {Cause::FileChanged, "its content is another than when it was last looked at"});
        } else if (kept == m_kept.end() && !recordedTime.empty() && recordedTime != ChangeTime(file.path)) {
            Add(row, {Cause::FileChanged,
                      "it was changed at " + ChangeTime(file.path) + ", and " + recordedTime + " is recorded"});
        }
    }

    void Add(const Row& row, const FileFinding& finding) {
        m_nErrors += TextOf(finding.cause).severity == Severity::Error ? 1 : 0;
        Value::Record record{{"FileID", row.Value("FileID")}, {"LocalPath", row.Value("LocalPath")}};
        for (Value::Member& member : DataOf(finding)) {
            record.push_back(std::move(member));
        }
        m_findings.emplace_back(std::move(record));
    }

    const Context& m_context;
    DigestList m_kept;
    DigestList m_digests;
    Value::List m_findings;
    std::size_t m_nErrors = 0;
    CFileContents m_others;
};

/// All files when none is named.
std::vector<Row> FilesToVerify(Context& context, CDocument& document) {
    return context.Has("FILE") || context.Has("--where") || context.Has("--all") ? ChosenFiles(context, document)
                                                                                 : document.Rows("Files");
}

/// The files that are not to be verified, as they are recorded.
CFileContents ContentsOfOthers(CDocument& document, const std::vector<Row>& chosen) {
    std::set<int> positions;
    for (const Row& row : chosen) {
        positions.insert(row.position);
    }
    CFileContents contents;
    for (const Row& row : document.Rows("Files")) {
        if (positions.count(row.position) == 0) {
            contents.Add(RecordedContent(row));
        }
    }
    return contents;
}

Result Verify(Context& context) {
    const std::vector<Row> rows = FilesToVerify(context, context.Document());
    const DocumentPlace place = context.Place();
    CVerifier verifier(context, KeptDigests(place), ContentsOfOthers(context.Document(), rows));
    CProgress progress(rows.size(), "verifying");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        StopIfInterrupted();
        progress.Show(i);
        verifier.Verify(rows[i]);
    }
    if (context.Has("--keep-digests")) {
        KeepDigests(context.Session(), place, verifier.Digests());
    }
    Result result;
    const std::size_t errors = verifier.Errors();
    Value::List findings = std::move(verifier).Findings();
    for (const Value& finding : findings) {
        result.said.push_back(finding["severity"].Text() + " in file " + finding["FileID"].Text() + ", " +
                              finding["LocalPath"].Text() + ": " + finding["code"].Text() + ": " +
                              finding["what"].Text());
        result.said.push_back("  " + finding["meaning"].Text() + "; " + finding["advice"].Text());
    }
    const std::size_t warnings = findings.size() - errors;
    result.said.push_back(Counted(rows.size(), "file") + " verified: " + Counted(errors, "error") + ", " +
                          Counted(warnings, "warning"));
    result.data = std::move(findings);
    result.status = errors == 0 ? ExitCode::Done : ExitCode::No;
    return result;
}

/// Records sizes and dates as they are now, and brings digests that are kept up to date.
Result Renew(Context& context) {
    CDocument& document = context.Document();
    std::vector<Row> rows = ChosenFiles(context, document);
    std::vector<std::string> localPaths;
    for (const Row& row : rows) {
        std::error_code error;
        if (!std::filesystem::is_regular_file(host::PathOf(row.Value("LocalPath")), error)) {
            throw CFailure(ExitCode::Refused,
                           row.Value("LocalPath") + ": " + (error ? error.message() : "it is no regular file"));
        }
        localPaths.push_back(row.Value("LocalPath"));
    }
    const DigestList changed = ChangedDigests(context.Place(), localPaths);
    if (!changed.empty()) {
        KeepDigests(context.Session(), context.Place(), changed);
    }
    Result result;
    result.data = Value::List();
    std::size_t renewed = 0;
    for (Row& row : rows) {
        const auto path = host::PathOf(row.Value("LocalPath"));
        const std::string size = std::to_string(std::filesystem::file_size(path));
        const std::string time = ChangeTime(path);
        const bool recorded = row.Value("Size") == size && row.Value("CreateDate") == time;
        if (recorded && changed.count(row.Value("LocalPath")) == 0) {
            continue;
        }
        if (!recorded) {
            document.SetValue("Files", row, "Size", size);
            document.SetValue("Files", row, "CreateDate", time);
        }
        result.data.Append(DataOf(row));
        ++renewed;
    }
    result.said.push_back(Counted(renewed, "file") + " recorded anew");
    return result;
}

} // namespace

std::vector<Verb> VerifyVerbs() {
    const Option files{Option::Kind::Operands, "FILE", "", "FileIDs or paths of listed files", false, Offer::FileKeys};
    const Option where = WhereOption("The files with this value; several must all match");
    return {{"files verify",
             "Check that the listed files are there, unchanged, and will work on a printer",
             Effect::Reads,
             &Verify,
             {files,
              where,
              {Option::Kind::Flag, "--all", "", "All files, which is what is verified when none is named"},
              {Option::Kind::Text, "--covers", "TEXT", "A text that every font has to have the characters of"},
              {Option::Kind::Flag, "--keep-digests", "",
               "Keep a digest of each file beside the document, so that a change is noticed that leaves its size"}},
             "Tables, sums, outlines, names, rights and characters of fonts are checked, and header, tags, white\n"
             "point and transforms of colour profiles. The exit status is 1 when there is an error.",
             "cordelctl files verify\ncordelctl files verify --where Type=5 --covers 'Grüße 0123'"},
            {"files renew",
             "Record size and date of files that were changed, and their digests where digests are kept",
             Effect::Changes,
             &Renew,
             {files, where, {Option::Kind::Flag, "--all", "", "All files"}},
             {},
             "cordelctl files renew --all"}};
}
