// Where tests that save very often put their files: in memory, where the system has such a place.

#pragma once

#include <unistd.h>

#include <filesystem>
#include <string>

/// An empty folder that goes with the object.
class CScratchFolder {
public:
    CScratchFolder() {
        const std::filesystem::path memory = "/dev/shm";
        const bool bMemory = ::access(memory.c_str(), W_OK) == 0;
        m_path =
            (bMemory ? memory : std::filesystem::temp_directory_path()) / ("cordelbox-" + std::to_string(::getpid()));
        std::filesystem::remove_all(m_path);
        std::filesystem::create_directories(m_path);
    }
    ~CScratchFolder() { std::filesystem::remove_all(m_path); }
    CScratchFolder(const CScratchFolder&) = delete;
    CScratchFolder& operator=(const CScratchFolder&) = delete;
    const std::filesystem::path& Path() const noexcept { return m_path; }

private:
    std::filesystem::path m_path;
};
