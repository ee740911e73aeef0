// files verify, files renew: whether the listed files are still what they were, and whether they will work on a
// printer.

#include "decoration.h"
#include "digests/digest.h"
#include "digests/digest_list.h"
#include "facts/file_bytes.h"
#include "failure.h"
#include "records/change_time.h"
#include "records/file_verification.h"
#include "system/system.h"
#include "transaction/history.h"
#include "verbs/chosen_files.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <filesystem>
#include <map>
#include <stdexcept>

namespace {

/// Where the digests of a document's files are kept: beside it, never in it.
std::filesystem::path DigestFile(const DocumentPlace& place) {
    auto file = CHistory::LockFile(place);
    return file.replace_extension(".digests");
}

DigestList KeptDigests(const DocumentPlace& place) {
    std::error_code error;
    const auto file = DigestFile(place);
    return std::filesystem::exists(file, error) ? ReadDigestList(host::ReadBytes(file)) : DigestList();
}

/// One listed file, and what is found in it.
class CVerifier {
public:
    CVerifier(const Context& context, DigestList kept) : m_context(context), m_kept(std::move(kept)) {}

    void Verify(const Row& row) {
        const std::string localPath = row.Value("LocalPath");
        const auto path = host::PathOf(localPath);
        std::error_code error;
        if (!std::filesystem::is_regular_file(path, error)) {
            Add(row, {Cause::FileMissing, localPath});
            return;
        }
        std::string bytes;
        try {
            bytes = ReadFileBytes(path);
        } catch (const std::runtime_error& reason) {
            Add(row, {Cause::FileUnreadable, localPath + ": " + reason.what()});
            return;
        }
        const std::string digest = Sha256Of(bytes);
        CheckChange(row, path, bytes.size(), digest);
        const auto content =
            VerifyContent(bytes, row.Value("Type"), row.Value("ProfileType"), m_context.Text("--covers"));
        for (const FileFinding& finding : content.findings) {
            Add(row, finding);
        }
        CheckOthers(row, digest, content.postScriptName);
        m_digests[localPath] = digest;
    }

    Value::List Findings() && { return std::move(m_findings); }
    std::size_t Errors() const noexcept { return m_nErrors; }
    const DigestList& Digests() const noexcept { return m_digests; }

private:
    void CheckChange(const Row& row, const std::filesystem::path& path, std::size_t size, const std::string& digest) {
        const std::string localPath = row.Value("LocalPath");
        const auto kept = m_kept.find(localPath);
        const std::string recordedSize = row.Value("Size");
        const std::string recordedTime = row.Value("CreateDate");
        if (!recordedSize.empty() && recordedSize != std::to_string(size)) {
            Add(row, {Cause::FileChanged,
                      "it has " + std::to_string(size) + " bytes, and " + recordedSize + " are recorded"});
        } else if (kept != m_kept.end() && kept->second != digest) {
            Add(row, {Cause::FileChanged, "its content is another than when it was last looked at"});
        } else if (kept == m_kept.end() && !recordedTime.empty() && recordedTime != ChangeTime(path)) {
            Add(row, {Cause::FileChanged,
                      "it was changed at " + ChangeTime(path) + ", and " + recordedTime + " is recorded"});
        }
    }

    /// Against the files that came before.
    void CheckOthers(const Row& row, const std::string& digest, const std::string& postScriptName) {
        const std::string fileID = row.Value("FileID");
        const auto [content, isNew] = m_contents.emplace(digest, fileID);
        if (!isNew) {
            Add(row, {Cause::SameContent, "file " + content->second + " is the same"});
        } else if (!postScriptName.empty()) {
            const auto [name, isNewName] = m_names.emplace(postScriptName, fileID);
            if (!isNewName) {
                Add(row,
                    {Cause::SamePostScriptName, "file " + name->second + " is a font " + postScriptName + ", too"});
            }
        }
    }

    void Add(const Row& row, const FileFinding& finding) {
        const CauseText& text = TextOf(finding.cause);
        const bool isError = text.severity == Severity::Error;
        m_nErrors += isError ? 1 : 0;
        m_findings.push_back(Value::Record{{"FileID", row.Value("FileID")},
                                           {"LocalPath", row.Value("LocalPath")},
                                           {"severity", isError ? "error" : "warning"},
                                           {"code", text.code},
                                           {"what", finding.what},
                                           {"meaning", text.meaning},
                                           {"advice", text.advice}});
    }

    const Context& m_context;
    DigestList m_kept;
    DigestList m_digests;
    Value::List m_findings;
    std::size_t m_nErrors = 0;
    std::map<std::string, std::string> m_contents; // FileIDs by digest
    std::map<std::string, std::string> m_names;    // and by PostScript name
};

/// All files when none is named.
std::vector<Row> FilesToVerify(Context& context, CDocument& document) {
    return context.Has("FILE") || context.Has("--where") || context.Has("--all") ? ChosenFiles(context, document)
                                                                                 : document.Rows("Files");
}

void KeepDigests(const DocumentPlace& place, const DigestList& digests) {
    DigestList all = KeptDigests(place);
    for (const auto& [path, digest] : digests) {
        all[path] = digest;
    }
    try {
        host::WriteWhole(DigestFile(place), DigestListText(all), place.Loaded());
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "the digests cannot be kept: " + error.code().message());
    }
}

Result Verify(Context& context) {
    const std::vector<Row> rows = FilesToVerify(context, context.Document());
    const DocumentPlace place = context.Place();
    CVerifier verifier(context, place.IsKept() ? KeptDigests(place) : DigestList());
    CProgress progress(rows.size(), "verifying");
    for (std::size_t i = 0; i < rows.size(); ++i) {
        StopIfInterrupted();
        progress.Show(i);
        verifier.Verify(rows[i]);
    }
    if (context.Has("--keep-digests")) {
        if (!place.IsKept()) {
            throw CFailure(ExitCode::NotKept, "there is no copy of your own beside which digests could be kept",
                           "make one: cordelctl init");
        }
        KeepDigests(place, verifier.Digests());
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

/// Records sizes and dates as they are now.
Result Renew(Context& context) {
    CDocument& document = context.Document();
    Result result;
    result.data = Value::List();
    std::size_t renewed = 0;
    for (Row& row : ChosenFiles(context, document)) {
        const auto path = host::PathOf(row.Value("LocalPath"));
        std::error_code error;
        const auto size = std::filesystem::file_size(path, error);
        if (error) {
            throw CFailure(ExitCode::Refused, row.Value("LocalPath") + ": " + error.message());
        }
        const std::string time = ChangeTime(path);
        if (row.Value("Size") == std::to_string(size) && row.Value("CreateDate") == time) {
            continue;
        }
        document.SetValue("Files", row, "Size", std::to_string(size));
        document.SetValue("Files", row, "CreateDate", time);
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
             "Record size and date of files that were changed",
             Effect::Changes,
             &Renew,
             {files, where, {Option::Kind::Flag, "--all", "", "All files"}},
             {},
             "cordelctl files renew --all"}};
}
