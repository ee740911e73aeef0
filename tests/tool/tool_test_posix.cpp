// Starts cordelctl as POSIX starts a program.

#include "scratch_folder.h"
#include "tool_test.h"

#include <cstdlib>
#include <fcntl.h>
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

} // namespace

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

    const pid_t child = ::fork();
    if (child == 0) {
        ::setenv("XDG_CONFIG_HOME", UserFolder().c_str(), 1);
        Redirect(input, O_RDONLY, STDIN_FILENO);
        Redirect(output, O_WRONLY | O_CREAT | O_TRUNC, STDOUT_FILENO);
        Redirect(errors, O_WRONLY | O_CREAT | O_TRUNC, STDERR_FILENO);
        ::execv(program.c_str(), parameters.data());
        ::_exit(127);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}
