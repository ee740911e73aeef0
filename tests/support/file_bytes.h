// All that is in a file, for the tests.

#pragma once

#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <utility>

/// The bytes of a file; none where it cannot be read.
inline std::string ReadBytes(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream bytes;
    bytes << file.rdbuf(); // in pieces, not byte by byte
    return std::move(bytes).str();
}

/// Makes the folders above it where they are missing.
inline void WriteBytes(const std::filesystem::path& path, const std::string& bytes) {
    std::filesystem::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}
