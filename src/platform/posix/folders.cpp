#include "platform/folders.h"

#include "failed_call.h"
#include "file_opening.h"
#include "links.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>

namespace platform {

const char kPathSeparator = '/';

namespace {

enum class KeptAnswer { None, Begun, Whole };

AnsiString FindHostFolder() {
    char path[kPathSize];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0 || static_cast<std::size_t>(length) >= sizeof path) {
        return {};
    }
    const std::string_view file(path, static_cast<std::size_t>(length));
    const std::size_t separator = file.rfind(kPathSeparator);
    return AnsiString(path, separator == 0 ? 1 : separator);
}

} // namespace

AnsiString HostFolder() {
    // Asked once: the folder may be renamed while the host runs, and its documents are known by their paths. Who asks
    // while another thread keeps the first answer has one of its own.
    static char s_folder[kPathSize];
    static std::atomic<KeptAnswer> s_kept = KeptAnswer::None;
    if (s_kept == KeptAnswer::Whole) {
        return AnsiString(s_folder);
    }
    AnsiString folder = FindHostFolder();
    KeptAnswer before = KeptAnswer::None;
    if (!folder.empty() && s_kept.compare_exchange_strong(before, KeptAnswer::Begun)) {
        std::memcpy(s_folder, folder.c_str(), folder.size());
        s_kept = KeptAnswer::Whole;
    }
    return folder;
}

AnsiString ApplicationDataFolder() {
    const char* const configured = std::getenv("XDG_CONFIG_HOME");
    if (configured != nullptr && configured[0] == kPathSeparator) {
        return AnsiString(configured);
    }
    const char* const home = std::getenv("HOME");
    if (home == nullptr || home[0] != kPathSeparator) { // a relative one would be another folder at each save
        return {};
    }
    const std::string folder = std::string(home) + "/.config";
    return AnsiString(folder.data(), folder.size());
}

void ToNativeSeparators(char* path) noexcept {
    for (; *path != '\0'; ++path) {
        if (*path == '\\') {
            *path = kPathSeparator;
        }
    }
}

bool IsPresentAndWritable(const char* path, CReason* reason) {
    std::string place(path);
    // O_NONBLOCK: neither a FIFO in the file's place nor a lease on it holds the caller up.
    const CFile file = OpenBehindLinks(CFileOpener(), place, O_RDWR | O_NONBLOCK | O_NOCTTY, reason);
    if (!file.IsOpen()) {
        return false;
    }
    struct stat status = {};
    if (fstat(file.Descriptor(), &status) != 0) {
        return Failed("fstat", reason);
    }
    if (!S_ISREG(status.st_mode)) {
        GiveReason(reason, CReason::Of(ReasonKind::NotRegular));
        return false;
    }
    if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        GiveReason(reason, CReason::Of(ReasonKind::NotPermitted)); // a privileged process is let into a read-only file
        return false;
    }
    // A shared lock: two tests at the same moment do not disturb each other.
    if (flock(file.Descriptor(), LOCK_SH | LOCK_NB) != 0) {
        return Failed("flock", reason);
    }
    flock(file.Descriptor(), LOCK_UN); // a process that was forked at this moment has the file too, and would keep it
    return true;
}

FileStamp StampOf(const char* path, CReason* reason) noexcept {
    struct stat status = {};
    if (stat(path, &status) != 0) {
        GiveReason(reason, CReason::OfCall("stat", static_cast<std::uint32_t>(errno)));
        return {};
    }
    const auto nanoseconds = [](const timespec& time) {
        return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000u + static_cast<std::uint64_t>(time.tv_nsec);
    };
    return {status.st_dev, status.st_ino, static_cast<std::uint64_t>(status.st_size), nanoseconds(status.st_mtim),
            nanoseconds(status.st_ctim)};
}

} // namespace platform
