// Loaded into cordelctl before its libraries: another program, which puts the file $OVERTAKING in the place of the file
// $OVERTAKEN while new contents are flushed to the disk. Or, with $INTERRUPTED_SAVE, somebody who interrupts it then.
// Or a failure of the system, which ends it at the flush of number $ENDED_AT_FLUSH. Or, with $NOTHING_REMOVED, a folder
// that keeps its files.

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>

extern "C" __attribute__((visibility("default"))) int fsync(int file) {
    const char* const overtaken = std::getenv("OVERTAKEN");
    const char* const overtaking = std::getenv("OVERTAKING");
    if (overtaken != nullptr && overtaking != nullptr) {
        std::rename(overtaking, overtaken); // where it is there
    }
    if (std::getenv("INTERRUPTED_SAVE") != nullptr) {
        std::raise(SIGINT);
    }
    static int flushes = 0;
    const char* const end = std::getenv("ENDED_AT_FLUSH");
    if (end != nullptr && ++flushes == std::atoi(end)) {
        std::raise(SIGKILL);
    }
    return static_cast<int>(::syscall(SYS_fsync, file));
}

extern "C" __attribute__((visibility("default"))) int remove(const char* path) noexcept {
    if (std::getenv("NOTHING_REMOVED") != nullptr) {
        errno = EPERM;
        return -1;
    }
    const int status = ::unlink(path);
    return status == 0 || errno != EISDIR ? status : ::rmdir(path);
}
