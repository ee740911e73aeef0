// Starts cordelctl as POSIX starts a program.

#include "scratch_folder.h"
#include "tool_test.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <string_view>

std::filesystem::path ToolTest::NewFolder() {
    std::filesystem::create_directories(RUN_PATH);
    std::string pattern = std::string(RUN_PATH) + "/XXXXXX";
    return ::mkdtemp(pattern.data()) != nullptr ? pattern : "";
}

std::filesystem::path ToolTest::ToolPath() const { return InstallFolder() / "cordelctl"; }

std::filesystem::path ToolTest::UserFolder() const {
    static const CScratchFolder folder;
    return folder.Path() / m_folder.filename();
}

int ToolTest::RunProgram(const std::vector<std::string>& arguments, const std::filesystem::path& input,
                         const std::filesystem::path& output, const std::filesystem::path& errors) const {
    const std::string program = ToolPath();
    std::vector<char*> parameters{const_cast<char*>(program.c_str())};
    for (const auto& argument : arguments) {
        parameters.push_back(const_cast<char*>(argument.c_str()));
    }
    parameters.push_back(nullptr);

    const std::string name = "XDG_CONFIG_HOME=";
    std::string userFolder = name + UserFolder().string();
    std::vector<char*> environment{userFolder.data()};
    for (char** variable = environ; *variable != nullptr; ++variable) {
        if (!std::string_view(*variable).starts_with(name)) {
            environment.push_back(*variable);
        }
    }
    environment.push_back(nullptr);

    posix_spawn_file_actions_t streams;
    ::posix_spawn_file_actions_init(&streams);
    constexpr int written = O_WRONLY | O_CREAT | O_TRUNC;
    ::posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, input.c_str(), O_RDONLY, 0);
    ::posix_spawn_file_actions_addopen(&streams, STDOUT_FILENO, output.c_str(), written, 0600);
    ::posix_spawn_file_actions_addopen(&streams, STDERR_FILENO, errors.c_str(), written, 0600);
    pid_t child = 0;
    const int failure =
        ::posix_spawn(&child, program.c_str(), &streams, nullptr, parameters.data(), environment.data());
    ::posix_spawn_file_actions_destroy(&streams);
    if (failure != 0) {
        return 127;
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
