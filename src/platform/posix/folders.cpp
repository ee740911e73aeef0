#include "platform/folders.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>

namespace platform {

const char kPathSeparator = '/';

AnsiString HostFolder() {
    char path[kPathSize];
    const ssize_t length = readlink("/proc/self/exe", path, sizeof path);
    if (length <= 0 || static_cast<std::size_t>(length) >= sizeof path) {
        return {};
    }
    const std::string_view file(path, static_cast<std::size_t>(length));
    const std::size_t separator = file.rfind(kPathSeparator);
    return AnsiString(path, separator == 0 ? 1 : separator);
}

AnsiString ApplicationDataFolder() {
    const char* const configured = std::getenv("XDG_CONFIG_HOME");
    if (configured != nullptr && configured[0] == kPathSeparator) {
        return AnsiString(configured);
    }
    const char* const home = std::getenv("HOME");
    if (home == nullptr || home[0] == '\0') {
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

bool IsPresentAndWritable(const char* path, CReason* reason) noexcept {
    // O_NONBLOCK: a FIFO in the file's place must not hold the caller up.
    const int file = open(path, O_RDWR | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (file < 0) {
        GiveReason(reason, CReason::OfCall("open", static_cast<std::uint32_t>(errno)));
        return false;
    }
    struct stat status = {};
    CReason found;
    // A shared lock: two tests at the same moment do not disturb each other, and closing the file gives it back.
    if (fstat(file, &status) != 0) {
        found = CReason::OfCall("fstat", static_cast<std::uint32_t>(errno));
    } else if (!S_ISREG(status.st_mode)) {
        found = CReason::Of(ReasonKind::NotRegular);
    } else if ((status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        found = CReason::Of(ReasonKind::NotPermitted); // a privileged process is let into a read-only file
    } else if (flock(file, LOCK_SH | LOCK_NB) != 0) {
        found = CReason::OfCall("flock", static_cast<std::uint32_t>(errno));
    }
    close(file);
    const bool bPresent = !found;
    GiveReason(reason, std::move(found));
    return bPresent;
}

} // namespace platform
