// The host of the library under measurement. Its documents are installed beside the program, and its per-user root is
// a folder there too.

#pragma once

#include "cordelbox.h"

#include <filesystem>
#include <string>
#include <string_view>

class CHost {
public:
    CHost();
    ~CHost();
    CHost(const CHost&) = delete;
    CHost& operator=(const CHost&) = delete;

    /// Writes the printer document `name` beside the program, and returns its path.
    std::filesystem::path Install(const std::string& name, std::string_view contents);

    /// Writes its per-user copy, without which no change reaches the disk.
    std::filesystem::path CopyForUser(const std::string& name, std::string_view contents);

    /// Makes the printer document current, opening it first if need be. Ends the program when it cannot be opened.
    void MakeCurrent(const std::string& name);

    /// Closes it, when it was opened once.
    void Close(const std::string& name);

private:
    PoolOwner m_owner{};
    sem_t m_semaphore;
};
