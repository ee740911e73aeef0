// files add: gathers files of this computer into the project.

#include "verbs.h"

#include "decoration.h"
#include "field_text.h"
#include "file_facts.h"
#include "file_ids.h"
#include "file_list.h"
#include "lookup.h"
#include "output.h"
#include "platform/platform.h"
#include "session.h"

#include <chrono>
#include <cstdio>
#include <iostream>
#include <map>

namespace {

struct Options {
    std::vector<std::string> files;
    std::string type;
    std::string profile;
    std::string volume;
    std::string component;
    std::string folder;
};

const std::map<std::string, std::string> kProfileTypes{{"rgb", "0"}, {"printer", "2"}, {"linked", "3"}};

/// When the file was last changed, in UTC.
std::string ChangeTime(const std::filesystem::path& path) {
    namespace chrono = std::chrono;
    const auto time = chrono::file_clock::to_sys(std::filesystem::last_write_time(path));
    const auto day = chrono::floor<chrono::days>(time);
    const chrono::year_month_day date(day);
    const chrono::hh_mm_ss clock(chrono::floor<chrono::seconds>(time - day));
    char text[64];
    std::snprintf(text, sizeof text, "%04d-%02u-%02u %02d:%02d:%02d", static_cast<int>(date.year()),
                  static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day()),
                  static_cast<int>(clock.hours().count()), static_cast<int>(clock.minutes().count()),
                  static_cast<int>(clock.seconds().count()));
    return text;
}

class CFileAdder {
public:
    explicit CFileAdder(const Options& options)
        : m_options(options),
          m_strVolume(!options.volume.empty() ? options.volume : FindValue("Project", "Volume").value_or("")),
          m_nLastFileID(LastFileID()) {}

    /// Adds one file and returns its row. Throws when the file is refused.
    Json Add(const std::string& name) {
        const auto path = RealPath(name);
        const std::string localPath = platform::TextOf(path);
        RequireFit(localPath, kFieldLength, "its path");
        if (IsPathConflict(ToAnsi(localPath)) != 0) {
            throw CFailure(ExitCode::Refused, "it is listed already",
                           "paths are compared without regard to upper and lower case");
        }
        const FileDetails details = ReadFileDetails(path, m_options.type, ProfileType());
        const int fileID = NextFileID(m_nLastFileID);
        const int32_t id = NextFreeID(details.type, details.profileType);
        Write(path, details, fileID, id);
        m_nLastFileID = fileID;
        return {{"file", JsonText(name)},
                {"added", true},
                {"FileID", std::to_string(fileID)},
                {"ID", std::to_string(id)},
                {"Type", details.type},
                {"title", JsonText(details.title)},
                {"Volume", JsonText(m_strVolume)},
                {"LocalPath", JsonText(localPath)}};
    }

private:
    std::string ProfileType() const {
        return m_options.profile.empty() ? std::string() : kProfileTypes.at(m_options.profile);
    }

    static std::filesystem::path RealPath(const std::string& name) {
        std::error_code error;
        auto path = std::filesystem::canonical(platform::PathOf(name), error);
        if (error) {
            throw CFailure(ExitCode::Refused, "it cannot be found: " + error.message());
        }
        if (!std::filesystem::is_regular_file(path)) {
            throw CFailure(ExitCode::Refused,
                           std::filesystem::is_directory(path) ? "it is a folder" : "it is no regular file",
                           "name the files themselves: cordelctl files add FOLDER/*");
        }
        return path;
    }

    void Write(const std::filesystem::path& path, const FileDetails& details, int fileID, int32_t id) const {
        const std::string component = m_options.component.empty() ? details.component : m_options.component;
        const std::string folder = m_options.folder.empty() ? details.folder : m_options.folder;
        const std::string number = std::to_string(fileID);
        FileItem item{};
        CopyText(item.FileID, number);
        CopyText(item.ID, std::to_string(id));
        CopyText(item.Type, details.type);
        CopyText(item.LocalPath, platform::TextOf(path));
        CopyText(item.Size, std::to_string(std::filesystem::file_size(path)));
        CopyText(item.CreateDate, ChangeTime(path));
        FillExactly(item.Component, component, "the component");
        FillExactly(item.Volume, m_strVolume, "the volume");
        FillExactly(item.Path, folder + "/" + platform::TextOf(path.filename()), "its path on the printer");
        item.detail = details.record.empty() ? nullptr : details.record.data();
        WritePrjFile(&item);
        if (!RowExists("Files", "FileID", number)) {
            throw CFailure(ExitCode::Missing, "it was not recorded: the document has no container Files",
                           "add the empty container; the installed documents show where");
        }
    }

    const Options& m_options;
    std::string m_strVolume;
    int m_nLastFileID;
};

void SayAdded(const Globals& globals, const Json& row) {
    const auto text = [&row](const char* key) { return platform::FromUtf8(row[key].get<std::string>()); };
    Say(globals,
        "added " + text("FileID") + ": \"" + text("title") + "\" with ID " + text("ID") + ", " + text("LocalPath"));
}

void SayRefused(const std::string& name, const CFailure& failure) {
    Note(name + " was not added: " + failure.what());
    if (!failure.Advice().empty()) {
        std::cerr << "  " << failure.Advice() << '\n';
    }
}

ExitCode Add(const Globals& globals, const Options& options) {
    const CSession session(globals);
    CFileAdder adder(options);
    std::vector<Json> rows;
    std::size_t added = 0;
    CProgress progress(options.files.size(), "adding");
    for (const auto& name : options.files) {
        try {
            rows.push_back(adder.Add(name));
            ++added;
            if (!progress.IsShown()) {
                SayAdded(globals, rows.back());
            }
        } catch (const CFailure& failure) {
            if (failure.Code() != ExitCode::Refused) {
                throw;
            }
            progress.Clear();
            SayRefused(name, failure);
            rows.push_back({{"file", JsonText(name)}, {"added", false}, {"reason", JsonText(failure.what())}});
        }
        progress.Show(rows.size());
    }
    if (globals.json) {
        PrintJson(rows);
    }
    const std::size_t refused = options.files.size() - added;
    Say(globals, std::to_string(added) + (added == 1 ? " file" : " files") + " added" +
                     (refused == 0 ? "" : ", " + std::to_string(refused) + " refused"));
    if (added != 0) {
        session.RequireKept();
    }
    return refused == 0 ? ExitCode::Done : ExitCode::Refused;
}

} // namespace

void AddFilesAddVerb(CLI::App& files, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const add = files.add_subcommand("add", "Add TrueType fonts and colour profiles, each with what it says of "
                                                  "itself and with the next free ID");
    add->add_option("FILE", options->files, "The files")->required();
    add->add_option("--type", options->type,
                    "What the files are: 1 bitmap font, 2 macro, 5 TrueType font, 6 colour "
                    "profile, 8 form overlay; without, their content tells")
        ->check(CLI::IsMember({"1", "2", "5", "6", "8"}));
    add->add_option("--profile", options->profile,
                    "Which slots colour profiles take: rgb, printer or linked; without, "
                    "their content tells")
        ->check(CLI::IsMember(kProfileTypes));
    add->add_option("--volume", options->volume, "Volume of the printer; without, the project's");
    add->add_option("--folder", options->folder, "Folder on that volume; without, one for each type");
    add->add_option("--component", options->component, "Component that the files belong to");
    add->callback([&host, options] { host.exit = Add(host.globals, *options); });
}
