// A file in memory, for what reads a file by its path.

#pragma once

#include "fuzz_failure.h"

#include <sys/mman.h>
#include <unistd.h>

#include <string>
#include <string_view>

class CMemoryFile {
public:
    CMemoryFile()
        : m_nFile(::memfd_create("input", MFD_CLOEXEC)), m_strPath("/proc/self/fd/" + std::to_string(m_nFile)) {
        Require(m_nFile >= 0, "there is a file in memory");
    }
    ~CMemoryFile() { ::close(m_nFile); }
    CMemoryFile(const CMemoryFile&) = delete;
    CMemoryFile& operator=(const CMemoryFile&) = delete;

    /// The path of the file, which now has these bytes.
    const std::string& With(std::string_view bytes) {
        Require(::ftruncate(m_nFile, 0) == 0 &&
                    ::pwrite(m_nFile, bytes.data(), bytes.size(), 0) == static_cast<ssize_t>(bytes.size()),
                "the file takes what it is to hold");
        return m_strPath;
    }

private:
    const int m_nFile;
    const std::string m_strPath;
};
