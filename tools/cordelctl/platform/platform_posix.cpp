// The system as POSIX has it, and the two functions through which the library shows a message.

#include "platform.h"

#include "utf8.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <semaphore.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform {

std::filesystem::path ExecutableFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::filesystem::path PerUserRoot() {
    const char* const configuration = std::getenv("XDG_CONFIG_HOME");
    if (configuration != nullptr && configuration[0] == '/') {
        return configuration;
    }
    const char* const home = std::getenv("HOME");
    return home != nullptr && home[0] != '\0' ? std::filesystem::path(home) / ".config" : std::filesystem::path();
}

std::string TextOf(const std::filesystem::path& path) { return path.native(); }
std::filesystem::path PathOf(std::string_view text) { return text; }
std::string FromUtf8(std::string_view utf8) { return std::string(utf8); }
std::string ToUtf8(std::string_view text) { return std::string(text); }

bool IsWellFormed(std::string_view text) noexcept {
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < text.size();) {
        if (!DecodeUtf8(text, position, codePoint)) {
            return false;
        }
    }
    return true;
}

std::size_t CutLength(std::string_view text, std::size_t limit) noexcept {
    if (text.size() <= limit) {
        return text.size();
    }
    std::size_t length = limit;
    while (length > 0 && (static_cast<unsigned char>(text[length]) & 0xC0) == 0x80) {
        --length;
    }
    return length;
}

FileState StateOf(const std::filesystem::path& path) {
    std::error_code error;
    const auto status = std::filesystem::status(path, error);
    if (!std::filesystem::exists(status)) {
        return FileState::Absent;
    }
    if (!std::filesystem::is_regular_file(status)) {
        return FileState::NotAFile;
    }
    const int file = ::open(path.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
    if (file < 0) {
        return FileState::NotWritable;
    }
    const bool free = ::flock(file, LOCK_SH | LOCK_NB) == 0;
    ::close(file);
    return free ? FileState::Writable : FileState::InUse;
}

FileStamp StampOf(const std::filesystem::path& path) {
    struct stat facts;
    if (::stat(path.c_str(), &facts) != 0) {
        return {};
    }
    return {static_cast<std::uint64_t>(facts.st_dev), static_cast<std::uint64_t>(facts.st_ino),
            static_cast<std::uint64_t>(facts.st_mtim.tv_sec), static_cast<std::uint64_t>(facts.st_mtim.tv_nsec)};
}

void Replace(const std::filesystem::path& source, const std::filesystem::path& target) {
    std::filesystem::rename(source, target);
}

SemaphoreHandle NewSemaphore() {
    auto* const semaphore = new sem_t;
    if (::sem_init(semaphore, 0, 1) != 0) {
        delete semaphore;
        return nullptr;
    }
    return semaphore;
}

void DeleteSemaphore(SemaphoreHandle semaphore) noexcept {
    ::sem_destroy(semaphore);
    delete semaphore;
}

} // namespace platform

// A terminal has no windows: a message is printed.
__attribute__((visibility("default"))) int MessageBoxA(WindowHandle, const char* text, const char* caption,
                                                       unsigned int) {
    std::fprintf(stderr, "%s: %s\n", caption, text);
    return 1;
}

__attribute__((visibility("default"))) int EnableWindow(WindowHandle, int) { return 0; }
