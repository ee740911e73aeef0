// export, import: the list of a project's files as JSON, to carry it to another document or computer.

#include "verbs.h"

#include "decoration.h"
#include "detail_record.h"
#include "doctor/document_view.h"
#include "document_choice.h"
#include "field_text.h"
#include "file_ids.h"
#include "file_list.h"
#include "lookup.h"
#include "number_text.h"
#include "output.h"
#include "platform/platform.h"
#include "row_edit.h"
#include "session.h"

#include <fstream>
#include <iostream>
#include <set>

namespace {

constexpr const char* kShape = R"({"files": [{"LocalPath": "...", "Type": "5", "ID": "0", ...}]}, as export writes it)";

struct Options {
    std::string file;
};

Json FilesOf(const DocumentNode& root) {
    Json files = Json::array();
    for (const Row& row : RowsOf(root, "Files")) {
        Json file = Json::object();
        for (const DocumentAttribute& attribute : row.node->attributes) {
            file.emplace(std::string(BaseName(attribute.name)), attribute.value);
        }
        files.push_back(std::move(file));
    }
    return files;
}

ExitCode Export(const Globals& globals, const Options& options) {
    const Json list{{"files", FilesOf(ReadChosen(CurrentChoice(globals, false)))}};
    if (options.file.empty() || options.file == "-") {
        PrintJson(list);
        return ExitCode::Done;
    }
    std::ofstream stream(platform::PathOf(options.file), std::ios::binary);
    stream << list.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    if (!stream.flush()) {
        throw CFailure(ExitCode::NoOutput, options.file + " could not be written");
    }
    const std::size_t count = list["files"].size();
    Say(globals, std::to_string(count) + (count == 1 ? " file" : " files") + " exported to " + options.file);
    return ExitCode::Done;
}

Json ReadList(const std::string& name) {
    Json list;
    try {
        if (name == "-") {
            list = Json::parse(std::cin);
        } else {
            std::ifstream stream(platform::PathOf(name), std::ios::binary);
            if (!stream) {
                throw CFailure(ExitCode::Refused, "the list " + name + " cannot be opened");
            }
            list = Json::parse(stream);
        }
    } catch (const Json::exception& error) {
        throw CFailure(ExitCode::Refused, "the list is no JSON: " + std::string(error.what()), kShape);
    }
    if (!list.is_object() || !list.contains("files") || !list["files"].is_array()) {
        throw CFailure(ExitCode::Refused, "the list does not have the right shape", kShape);
    }
    return list["files"];
}

/// Files with one ID in a group would clash.
std::string GroupOf(const std::string& type, const std::string& profileType) {
    return type == "1" || type == "5" ? "fonts" : type == "6" ? "profiles " + profileType : type;
}

class CImporter {
public:
    CImporter() : m_nLastFileID(LastFileID()) {
        for (const ListedFile& file : ReadAllFiles()) {
            m_taken.emplace(GroupOf(file.type, FileValue(file.fileID, "ProfileType")), file.id);
        }
    }

    /// Adds one file and returns what was done. Throws when the file is refused.
    Json Import(const Json& file) {
        const AttributeValues value = [&file](const char* attribute) {
            const Json found = file.is_object() ? file.value(attribute, Json()) : Json();
            return platform::FromUtf8(found.is_string() ? found.get<std::string>()
                                      : found.is_null() ? std::string()
                                                        : found.dump());
        };
        const std::string type = value("Type");
        const std::string localPath = value("LocalPath");
        RequireKnown(type, localPath);
        const auto detail = DetailRecordOf(type, value);
        const std::string group = GroupOf(type, value("ProfileType"));
        FileItem item{};
        FillFields(item, value);
        const std::string id = IDFor(type, value("ProfileType"), group, value("ID"));
        const std::string fileID = FileIDFor(value("FileID"));
        FillExactly(item.ID, id, "the ID");
        FillExactly(item.FileID, fileID, "the FileID");
        item.detail = detail.empty() ? nullptr : detail.data();
        WritePrjFile(&item);
        if (!RowExists("Files", "FileID", fileID)) {
            throw CFailure(ExitCode::Missing, "it was not recorded: the document has no container Files",
                           "add the empty container; the installed documents show where");
        }
        m_taken.emplace(group, id);
        const bool ticked = value("checked") == "1";
        if (ticked) {
            OverwriteInRow("Files", "FileID", fileID, "checked", "1");
        }
        std::error_code none;
        return {{"LocalPath", JsonText(localPath)},
                {"imported", true},
                {"FileID", JsonText(fileID)},
                {"ID", JsonText(id)},
                {"formerID", JsonText(value("ID"))},
                {"ticked", ticked},
                {"present", std::filesystem::is_regular_file(platform::PathOf(localPath), none)}};
    }

private:
    static void RequireKnown(const std::string& type, const std::string& localPath) {
        if (localPath.empty()) {
            throw CFailure(ExitCode::Refused, "it has no LocalPath", kShape);
        }
        if (type != "1" && type != "2" && type != "5" && type != "6" && type != "8") {
            throw CFailure(ExitCode::Refused, "its Type is \"" + type + "\"", "give 1, 2, 5, 6 or 8");
        }
        if (IsPathConflict(ToAnsi(localPath)) != 0) {
            throw CFailure(ExitCode::Refused, "it is listed already",
                           "paths are compared without regard to upper and lower case");
        }
    }

    static void FillFields(FileItem& item, const AttributeValues& value) {
        FillExactly(item.Component, value("Component"), "the component");
        FillExactly(item.Type, value("Type"), "the Type");
        FillExactly(item.Volume, value("Volume"), "the volume");
        FillExactly(item.Path, value("Path"), "its path on the printer");
        FillExactly(item.LocalPath, value("LocalPath"), "its path");
        FillExactly(item.Size, value("Size"), "its size");
        FillExactly(item.CreateDate, value("CreateDate"), "its date");
    }

    /// The ID that it had, unless that is taken or no number: then the next free one.
    std::string IDFor(const std::string& type, const std::string& profileType, const std::string& group,
                      const std::string& former) const {
        const bool free = IsPlainNumber(former) && m_taken.count({group, former}) == 0;
        return free ? former : std::to_string(NextFreeID(type, profileType));
    }

    /// The FileID that it had, unless another file has it or it is no number.
    std::string FileIDFor(const std::string& former) {
        const auto number = IsPlainNumber(former) ? ParseSize(former) : std::nullopt;
        const bool fits = number && *number >= 1 && *number <= m_nLastFileID + 1;
        if (fits && !RowExists("Files", "FileID", former)) {
            m_nLastFileID = std::max(m_nLastFileID, static_cast<int>(*number));
            return former;
        }
        m_nLastFileID = NextFileID(m_nLastFileID);
        return std::to_string(m_nLastFileID);
    }

    std::set<std::pair<std::string, std::string>> m_taken; // group and ID
    int m_nLastFileID;
};

std::string Described(const Json& row) {
    const auto text = [&row](const char* key) { return platform::FromUtf8(row[key].get<std::string>()); };
    return "imported " + text("FileID") + ": " + text("LocalPath") + " with ID " + text("ID") +
           (row["ID"] != row["formerID"] ? ", as " + text("formerID") + " is taken or no number" : "") +
           (row["present"].get<bool>() ? "" : "; it is not on this computer");
}

ExitCode Import(const Globals& globals, const Options& options) {
    const Json files = ReadList(options.file);
    const CSession session(globals);
    CImporter importer;
    CProgress progress(files.size(), "importing");
    std::vector<Json> rows;
    std::size_t imported = 0;
    for (const Json& file : files) {
        try {
            rows.push_back(importer.Import(file));
            ++imported;
            if (!progress.IsShown()) {
                Say(globals, Described(rows.back()));
            }
        } catch (const CFailure& failure) {
            if (failure.Code() != ExitCode::Refused) {
                throw;
            }
            const std::string name = file.is_object() && file.contains("LocalPath") && file["LocalPath"].is_string()
                                         ? platform::FromUtf8(file["LocalPath"].get<std::string>())
                                         : "file " + std::to_string(rows.size() + 1);
            progress.Clear();
            Note(name + " was not imported: " + failure.what());
            rows.push_back({{"LocalPath", JsonText(name)}, {"imported", false}, {"reason", JsonText(failure.what())}});
        }
        progress.Show(rows.size());
    }
    if (globals.json) {
        PrintJson(rows);
    }
    const std::size_t refused = files.size() - imported;
    Say(globals, std::to_string(imported) + (imported == 1 ? " file" : " files") + " imported" +
                     (refused == 0 ? "" : ", " + std::to_string(refused) + " refused"));
    if (imported != 0) {
        session.RequireKept();
    }
    return refused == 0 ? ExitCode::Done : ExitCode::Refused;
}

} // namespace

void AddProjectVerbs(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const exporting = app.add_subcommand("export", "Write the list of the project's files as JSON");
    exporting->add_option("FILE", options->file, "The file to write; without, standard output");
    exporting->callback([&host, options] { host.exit = Export(host.globals, *options); });

    auto* const importing =
        app.add_subcommand("import", "Add the files of an exported list; what is listed already is refused, and an ID "
                                     "that is taken gives way to the next free one");
    importing->add_option("FILE", options->file, "The list; - for standard input")->required();
    importing->callback([&host, options] { host.exit = Import(host.globals, *options); });
}
