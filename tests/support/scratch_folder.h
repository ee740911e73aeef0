// Where tests that save very often put their files: in memory, where the system has such a place, since each save waits
// for the disk. A test that is about a file system has its folder named in $CORDELBOX_TEST_FOLDER.

#pragma once

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

/// An empty folder that everybody can look into, and that goes with the object.
class CScratchFolder {
public:
    CScratchFolder() : CScratchFolder(Place()) {}
    ~CScratchFolder() {
        if (::getpid() == m_nCreator) { // not a child that has it too
            std::error_code none;
            std::filesystem::remove_all(m_path, none);
        }
    }
    CScratchFolder(const CScratchFolder&) = delete;
    CScratchFolder& operator=(const CScratchFolder&) = delete;
    const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    explicit CScratchFolder(const std::filesystem::path& place) {
        std::string path = (place / "cordelbox tests-XXXXXX").string();
        if (::mkdtemp(path.data()) == nullptr) {
            throw std::runtime_error("no folder " + path);
        }
        m_path = path;
        using std::filesystem::perms;
        std::filesystem::permissions(m_path, perms::owner_all | perms::group_read | perms::group_exec |
                                                 perms::others_read | perms::others_exec);
    }

    static std::filesystem::path Place() {
        static constexpr const char* kVariable = "CORDELBOX_TEST_FOLDER";
        const char* const named = std::getenv(kVariable);
        if (named == nullptr) { // one for all, those of death tests too, which leave theirs behind
            const std::filesystem::path memory = "/dev/shm";
            static const CScratchFolder all(
                ::access(memory.c_str(), W_OK) == 0 ? memory : std::filesystem::temp_directory_path());
            ::setenv(kVariable, all.Path().c_str(), 1);
            return all.Path();
        }
        return named;
    }

    std::filesystem::path m_path;
    pid_t m_nCreator = ::getpid();
};
