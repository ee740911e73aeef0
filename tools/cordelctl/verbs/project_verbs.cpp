// export, import: the list of a project's files as JSON, to carry it to another document or computer.

#include "catalogue/project_files.h"
#include "decoration.h"
#include "failure.h"
#include "json.h"
#include "records/detail_record.h"
#include "records/field_text.h"
#include "records/file_numbers.h"
#include "records/listed_paths.h"
#include "verbs/intake.h"
#include "verbs/json_input.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <filesystem>

namespace {

constexpr const char* kShape = R"({"files": [{"LocalPath": "...", "Type": "5", "ID": "0", ...}]}, as export writes it)";

Result Export(Context& context) {
    CDocument& document = context.Document();
    RequireSound(document, "Files");
    Value files = Value::List();
    for (const Row& row : document.Rows("Files")) {
        files.Append(DataOf(row));
    }
    const std::size_t count = files.Items().size();
    const Value list = Value::Record{{"files", std::move(files)}};
    Result result;
    const std::string name = context.Text("FILE");
    if (name.empty() || name == "-") {
        result.shape = Result::Shape::Plain;
        result.data = list;
        return result;
    }
    try {
        host::WriteWhole(host::PathOf(name), FormatJson(list) + "\n");
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NoOutput, name + " could not be written: " + error.code().message());
    }
    result.data = Value::Record{{"file", name}, {"files", count}};
    result.said.push_back(Counted(count, "file") + " exported to " + name);
    return result;
}

class CImporter {
public:
    explicit CImporter(CDocument& document) : m_document(document), m_numbers(document), m_paths(document) {}

    bool IsListed(const Value& file) const { return m_paths.Has(file["LocalPath"].Text()); }

    /// Adds one file and returns what was done. Throws when the file is refused.
    Value Import(const Value& file) {
        const AttributeValues value = [&file](const char* attribute) { return file[attribute].Text(); };
        const std::string type = value("Type");
        const std::string localPath = value("LocalPath");
        RequireKnown(type, localPath);
        const auto detail = DetailRecordOf(type, value);
        FileItem item{};
        FillExactly(item.Component, value("Component"), "the component");
        FillExactly(item.Type, type, "the Type");
        FillExactly(item.Volume, value("Volume"), "the volume");
        FillExactly(item.Path, value("Path"), "its path on the printer");
        FillExactly(item.LocalPath, localPath, "its path");
        FillExactly(item.Size, value("Size"), "its size");
        FillExactly(item.CreateDate, value("CreateDate"), "its date");
        std::string id = value("ID"); // the ID that it had, unless that is taken or no number
        if (id.size() > 5 || !m_numbers.TakeID(type, value("ProfileType"), id)) {
            id = m_numbers.TakeID(type, value("ProfileType"));
        }
        std::string fileID = value("FileID");
        if (!IsPlainNumber(fileID) || fileID.size() > 9 || !m_numbers.TakeFileID(fileID)) {
            fileID = m_numbers.TakeFileID();
        }
        CopyText(item.ID, id);
        CopyText(item.FileID, fileID);
        item.detail = detail.empty() ? nullptr : detail.data();
        RequireDone(AddProjectFile(m_document.Object(), item), "the file");
        m_document.NoteChange();
        m_paths.Add(localPath);
        const bool ticked = value("checked") == "1";
        if (ticked) {
            m_ticked.push_back(fileID);
        }
        std::error_code none;
        return Value::Record{{"LocalPath", localPath},
                             {"imported", true},
                             {"FileID", fileID},
                             {"ID", id},
                             {"formerID", value("ID")},
                             {"ticked", ticked},
                             {"present", std::filesystem::is_regular_file(host::PathOf(localPath), none)}};
    }

    /// Ticks the files that were ticked: a file is written without a tick.
    void TickAll() {
        std::sort(m_ticked.begin(), m_ticked.end());
        for (Row& row : m_document.Rows("Files")) {
            if (std::binary_search(m_ticked.begin(), m_ticked.end(), row.Value("FileID"))) {
                m_document.SetValue("Files", row, "checked", "1");
            }
        }
    }

private:
    void RequireKnown(const std::string& type, const std::string& localPath) const {
        if (localPath.empty()) {
            throw CFailure(ExitCode::Refused, "it has no LocalPath", kShape);
        }
        if (type != "1" && type != "2" && type != "5" && type != "6" && type != "8") {
            throw CFailure(ExitCode::Refused, "its Type is \"" + type + "\"", "give 1, 2, 5, 6 or 8");
        }
        if (m_paths.Has(localPath)) {
            throw CFailure(ExitCode::Refused, "it is listed already",
                           "paths are compared without regard to upper and lower case");
        }
    }

    CDocument& m_document;
    CFreeNumbers m_numbers;
    CListedPaths m_paths;
    std::vector<std::string> m_ticked;
};

std::string Described(const Value& row) {
    return "imported " + row["FileID"].Text() + ": " + row["LocalPath"].Text() + " with ID " + row["ID"].Text() +
           (row["ID"] != row["formerID"] ? ", as " + row["formerID"].Text() + " is taken or no number" : "") +
           (row["present"].IsTrue() ? "" : "; it is not on this computer");
}

Result Import(Context& context) {
    const Value list = ReadJsonInput(context.Text("FILE"), "the list", kShape);
    if (!list["files"].IsList()) {
        throw CFailure(ExitCode::Refused, "the list does not have the right shape", kShape);
    }
    const Value::List& files = list["files"].Items();
    CDocument& document = context.Document();
    RequireSound(document, "Files");
    CImporter importer(document);
    CIntake intake(context, "LocalPath", "imported");
    CProgress progress(files.size(), "importing");
    for (std::size_t i = 0; i < files.size(); ++i) {
        StopIfInterrupted();
        progress.Show(i);
        if (context.Has("--skip-listed") && importer.IsListed(files[i])) {
            intake.PassedOver();
            continue;
        }
        try {
            const Value row = importer.Import(files[i]);
            intake.Took(row, {Described(row)});
        } catch (const CFailure& failure) {
            if (failure.Code() != ExitCode::Refused) {
                throw;
            }
            const std::string path = files[i]["LocalPath"].Text();
            intake.Refused(path.empty() ? "file " + std::to_string(i + 1) : path, failure.what());
        }
    }
    importer.TickAll();
    return intake.Finish();
}

} // namespace

std::vector<Verb> ProjectVerbs() {
    return {
        {"export",
         "Write the list of the project's files as JSON",
         Effect::Reads,
         &Export,
         {{Option::Kind::Operand, "FILE", "", "The file to write; without, standard output", false, Offer::Files}},
         {},
         "cordelctl export spring.json"},
        {"import",
         "Add the files of an exported list; what is listed already is refused, and an ID that is taken gives way "
         "to the next free one",
         Effect::Changes,
         &Import,
         {{Option::Kind::Operand, "FILE", "", "The list; - for standard input", true, Offer::Files},
          KeepGoingOption(),
          {Option::Kind::Flag, "--skip-listed", "", "Pass over files that are listed already, without a word"}},
         {},
         "cordelctl export | cordelctl import - --printer Workshop"},
    };
}
