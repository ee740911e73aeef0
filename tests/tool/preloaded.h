// Libraries that a run of cordelctl loads before its own.

#pragma once

#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <system_error>

/// As long as this lives, a library has a name without blanks, as the loader needs it: those divide names for it.
class CPreloadable {
public:
    explicit CPreloadable(const char* library) {
        m_strFolder = (std::filesystem::temp_directory_path() / "cordelbox-XXXXXX").string();
        if (::mkdtemp(m_strFolder.data()) == nullptr) {
            throw std::filesystem::filesystem_error("mkdtemp", m_strFolder, {errno, std::generic_category()});
        }
        std::filesystem::create_symlink(library, Path());
    }
    ~CPreloadable() { std::filesystem::remove_all(m_strFolder); }
    CPreloadable(const CPreloadable&) = delete;
    CPreloadable& operator=(const CPreloadable&) = delete;

    /// For the environment of a run. The sanitizer would insist on coming first.
    std::string Environment() const { return "LD_PRELOAD=" + Path() + " ASAN_OPTIONS=verify_asan_link_order=0"; }
    std::string Path() const { return m_strFolder + "/library.so"; }

private:
    std::string m_strFolder;
};

/// As long as this lives, every run loads the library.
class CPreloaded {
public:
    explicit CPreloaded(const char* library) : m_library(library) {
        ::setenv("LD_PRELOAD", m_library.Path().c_str(), 1);
        ::setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 1);
    }
    ~CPreloaded() {
        ::unsetenv("LD_PRELOAD");
        ::unsetenv("ASAN_OPTIONS");
    }
    CPreloaded(const CPreloaded&) = delete;
    CPreloaded& operator=(const CPreloaded&) = delete;

private:
    const CPreloadable m_library;
};
