// Owner of the handle of an open file.

#pragma once

#include "cordelbox.h"

class CFileHandle {
public:
    explicit CFileHandle(HANDLE handle) noexcept : m_hFile(handle) {}
    CFileHandle(const CFileHandle&) = delete;
    CFileHandle& operator=(const CFileHandle&) = delete;
    ~CFileHandle() {
        if (*this) {
            ::CloseHandle(m_hFile);
        }
    }

    explicit operator bool() const noexcept { return m_hFile != INVALID_HANDLE_VALUE; }
    HANDLE Get() const noexcept { return m_hFile; }

private:
    const HANDLE m_hFile;
};
