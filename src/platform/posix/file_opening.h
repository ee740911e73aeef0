// Opening files. No descriptor of the library's is ever 0, 1 or 2: a host may have closed its standard streams, and
// what it writes to one of them afterwards must not land in a document.

#pragma once

#include <sys/types.h>

#include <array>

namespace platform {

/// An open file, or none.
class CFile {
public:
    explicit CFile(int descriptor = -1) noexcept : m_nDescriptor(descriptor) {}
    ~CFile();
    CFile(CFile&& other) noexcept;
    CFile& operator=(CFile&& other) noexcept;

    bool IsOpen() const noexcept { return m_nDescriptor >= 0; }
    int Descriptor() const noexcept { return m_nDescriptor; }

private:
    int m_nDescriptor;
};

/// Opens files, and keeps the descriptors of closed standard streams out of their reach while it lives. No file that it
/// opens passes to a program that the process starts. Where opening fails, the file is not open and errno says why.
class CFileOpener {
public:
    CFileOpener() noexcept;
    ~CFileOpener();
    CFileOpener(const CFileOpener&) = delete;
    CFileOpener& operator=(const CFileOpener&) = delete;

    CFile Open(const char* path, int flags) const noexcept;

    /// A name that is not followed when it is a link. A new file gets the mode.
    CFile OpenIn(const CFile& folder, const char* name, int flags, mode_t mode = 0) const noexcept;

private:
    std::array<CFile, 3> m_placeholders; // for standard streams that are closed
};

} // namespace platform
