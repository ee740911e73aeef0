// Starts cordelctl as a user does.

#include "tool_test.h"

#include "json_schema.h"

#include <algorithm>
#include <fstream>
#include <iterator>

namespace {

const nlohmann::json& OutputSchema() {
    static const nlohmann::json schema =
        nlohmann::json::parse(ReadBytes(std::string(DOCS_PATH) + "/cordelctl.schema.json"));
    return schema;
}

/// The verb of a command line; empty when there is none.
std::string VerbOf(const std::vector<std::string>& arguments) {
    std::string verb;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (arguments[i] == "--printer" || arguments[i] == "--language" || arguments[i] == "--wait") {
            ++i;
        } else if (!arguments[i].starts_with("-")) {
            const std::string longer = verb.empty() ? arguments[i] : verb + " " + arguments[i];
            const auto& verbs = OutputSchema()["properties"];
            const bool begins = std::any_of(verbs.items().begin(), verbs.items().end(), [&](const auto& entry) {
                return entry.key() == longer || entry.key().starts_with(longer + " ");
            });
            if (!begins) {
                return verb;
            }
            verb = longer;
        }
    }
    return verb;
}

/// Whatever a run prints as data is what the schema of its verb says.
void CheckData(const std::vector<std::string>& arguments, const std::string& output) {
    const auto end = std::find(arguments.begin(), arguments.end(), "--");
    const bool asked = std::find(arguments.begin(), end, "--json") != end;
    const std::string verb = VerbOf(arguments);
    if (!asked || verb == "watch") {
        return;
    }
    const auto data = nlohmann::json::parse(output, nullptr, false);
    ASSERT_FALSE(data.is_discarded()) << ::testing::PrintToString(arguments) << output;
    const auto& root = OutputSchema();
    const auto& schema = root["properties"].contains(verb) ? root["properties"][verb] : root["$defs"]["error"];
    EXPECT_EQ(Misfit(data, schema, root), "") << ::testing::PrintToString(arguments);
}

} // namespace

std::string ValueOf(const Record& record, const std::string& name) {
    for (const auto& [key, value] : record) {
        if (key == name) {
            return value;
        }
    }
    ADD_FAILURE() << "no attribute " << name;
    return {};
}

void ToolTest::SetUp() {
    m_folder = NewFolder();
    std::filesystem::create_directories(InstallFolder());
    std::filesystem::create_hard_link(TOOL_PATH, ToolPath());
    std::filesystem::copy(std::filesystem::path(SAMPLES_PATH) / "Cordelbox", InstallFolder() / "Cordelbox",
                          std::filesystem::copy_options::recursive);
    std::filesystem::remove_all(UserFolder() / "Marvane");
}

void ToolTest::TearDown() {
    std::error_code none; // a system that still holds a file of a process that ended
    std::filesystem::remove_all(UserFolder() / "Marvane", none);
    std::filesystem::remove_all(m_folder, none);
}

ToolRun ToolTest::Run(const std::vector<std::string>& arguments, const std::string& input) const {
    WriteBytes(m_folder / "input", input);
    ToolRun run;
    run.status = RunProgram(arguments, m_folder / "input", m_folder / "output", m_folder / "errors");
    run.output = ReadBytes(m_folder / "output");
    run.errors = ReadBytes(m_folder / "errors");
    CheckData(arguments, run.output);
    return run;
}

std::string ToolTest::Output(const std::vector<std::string>& arguments) const {
    const ToolRun run = Run(arguments);
    EXPECT_EQ(run.status, kDone) << ::testing::PrintToString(arguments);
    EXPECT_EQ(run.errors, "") << ::testing::PrintToString(arguments);
    return run.output;
}

std::filesystem::path ToolTest::InstalledPath(const std::string& name) const {
    return InstallFolder() / "Cordelbox" / "xml" / name;
}

std::filesystem::path ToolTest::UserPath(const std::string& name) const {
    return UserFolder() / "Marvane" / "Hollivet" / "Cordelbox" / "xml" / name;
}

std::string ToolTest::UserFile(const std::string& name, const std::string& content) const {
    const auto path = m_folder / "files" / name;
    WriteBytes(path, content);
    return path.string();
}

std::vector<std::string> ToolTest::CopiesOf(const std::string& path, int count) const {
    const std::string bytes = ReadBytes(path);
    std::vector<std::string> copies;
    for (int i = 1; i <= count; ++i) {
        copies.push_back(UserFile("copy-" + std::to_string(i), bytes));
    }
    return copies;
}

std::vector<Record> ToolTest::Saved(const std::string& container, const std::string& document) const {
    return RecordsBelow(ReadSavedDocument(ReadBytes(UserPath(document))), container);
}
