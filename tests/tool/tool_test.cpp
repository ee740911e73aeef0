// Starts cordelctl as a user does.

#include "tool_test.h"

#include "json_schema.h"

#include <algorithm>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <iterator>
#include <sys/wait.h>
#include <unistd.h>

namespace {

/// In the child: makes a file one of the standard streams.
void Redirect(const std::filesystem::path& path, int flags, int stream) {
    const int file = ::open(path.c_str(), flags, 0600);
    if (file < 0 || ::dup2(file, stream) < 0) {
        ::_exit(127);
    }
}

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
    const bool json = std::find(arguments.begin(), end, "--json") != end;
    const std::string verb = VerbOf(arguments);
    if (!json || verb == "watch") {
        return;
    }
    const auto data = nlohmann::json::parse(output, nullptr, false);
    ASSERT_FALSE(data.is_discarded()) << ::testing::PrintToString(arguments) << output;
    const auto& root = OutputSchema();
    const auto& schema = root["properties"].contains(verb) ? root["properties"][verb] : root["$defs"]["error"];
    EXPECT_EQ(Misfit(data, schema, root), "") << ::testing::PrintToString(arguments);
}

} // namespace

std::string ReadBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << bytes;
}

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
    std::filesystem::create_directories(RUN_PATH);
    std::string pattern = std::string(RUN_PATH) + "/XXXXXX";
    ASSERT_NE(::mkdtemp(pattern.data()), nullptr);
    m_folder = pattern;
    std::filesystem::create_directories(InstallFolder());
    std::filesystem::create_hard_link(TOOL_PATH, InstallFolder() / "cordelctl");
    std::filesystem::copy(std::filesystem::path(SAMPLES_PATH) / "Cordelbox", InstallFolder() / "Cordelbox",
                          std::filesystem::copy_options::recursive);
}

void ToolTest::TearDown() { std::filesystem::remove_all(m_folder); }

ToolRun ToolTest::Run(const std::vector<std::string>& arguments, const std::string& input) const {
    const auto inputPath = m_folder / "input";
    const auto outputPath = m_folder / "output";
    const auto errorPath = m_folder / "errors";
    WriteBytes(inputPath, input);
    const std::string program = InstallFolder() / "cordelctl";
    std::vector<char*> parameters{const_cast<char*>(program.c_str())};
    for (const auto& argument : arguments) {
        parameters.push_back(const_cast<char*>(argument.c_str()));
    }
    parameters.push_back(nullptr);

    const pid_t child = ::fork();
    if (child == 0) {
        ::setenv("XDG_CONFIG_HOME", UserFolder().c_str(), 1);
        Redirect(inputPath, O_RDONLY, STDIN_FILENO);
        Redirect(outputPath, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
        Redirect(errorPath, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
        ::execv(program.c_str(), parameters.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ToolRun run{WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status), ReadBytes(outputPath),
                ReadBytes(errorPath)};
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
    return path;
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
