#include "system_calls.h"

#include "real_function.h"

#include <dirent.h>
#include <fcntl.h>
#include <iconv.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <ctime>
#include <utility>

namespace {

std::string PathOf(int file) {
    char link[64];
    char path[4096];
    std::snprintf(link, sizeof link, "/proc/self/fd/%d", file);
    static const auto real = Real<ssize_t (*)(const char*, char*, std::size_t)>("readlink");
    const ssize_t length = real(link, path, sizeof path);
    return length > 0 ? std::string(path, static_cast<std::size_t>(length)) : std::string();
}

/// The fate of the next call. Kills the process where the judge says so.
Fate Note(SystemCall call) {
    const Fate fate = CSystemCallWatch::FateOf(std::move(call));
    if (fate.bKill) {
        ::kill(::getpid(), SIGKILL);
    }
    return fate;
}

Fate NoteFile(const char* name, int file) {
    return CSystemCallWatch::IsOn() ? Note({name, PathOf(file), {}, {}}) : Fate();
}

Fate NoteName(const char* call, int folder, const char* name, bool bCreates = false) {
    return CSystemCallWatch::IsOn() ? Note({call, PathOf(folder) + "/" + name, {}, {}, bCreates}) : Fate();
}

Fate NoteAttribute(const char* call, int file, const char* name, std::string value = {}) {
    return CSystemCallWatch::IsOn() ? Note({call, PathOf(file), name, std::move(value)}) : Fate();
}

/// The answer, or its length where there is no room for it.
ssize_t Answered(const std::string& answer, char* buffer, std::size_t size) {
    return static_cast<ssize_t>(size == 0 ? answer.size() : answer.copy(buffer, size));
}

/// True when the call is to fail; errno is then set.
bool Fails(const Fate& fate) {
    if (fate.error != 0) {
        errno = fate.error;
    }
    return fate.error != 0;
}

} // namespace

// The functions themselves. Visible to the C library's other users in this program, who do not mind.

extern "C" {

int open(const char* path, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    static const auto real = Real<int (*)(const char*, int, ...)>("open");
    return Fails(Note({"open", path, {}, {}, (flags & O_CREAT) != 0})) ? -1 : real(path, flags, mode);
}

/// What `open` is under _FORTIFY_SOURCE where the flags are no constant.
int __open_2(const char* path, int flags) { return open(path, flags); }

int openat(int folder, const char* name, int flags, ...) {
    mode_t mode = 0;
    if ((flags & O_CREAT) != 0) {
        va_list arguments;
        va_start(arguments, flags);
        mode = va_arg(arguments, mode_t);
        va_end(arguments);
    }
    static const auto real = Real<int (*)(int, const char*, int, ...)>("openat");
    return Fails(NoteName("openat", folder, name, (flags & O_CREAT) != 0)) ? -1 : real(folder, name, flags, mode);
}

int close(int file) {
    static const auto real = Real<int (*)(int)>("close");
    const Fate fate = NoteFile("close", file);
    const int result = real(file); // a close that fails has closed the file all the same
    return Fails(fate) ? -1 : result;
}

int fstat(int file, struct stat* status) noexcept {
    static const auto real = Real<int (*)(int, struct stat*)>("fstat");
    return Fails(NoteFile("fstat", file)) ? -1 : real(file, status);
}

int fstatat(int folder, const char* name, struct stat* status, int flags) noexcept {
    static const auto real = Real<int (*)(int, const char*, struct stat*, int)>("fstatat");
    return Fails(NoteName("fstatat", folder, name)) ? -1 : real(folder, name, status, flags);
}

ssize_t readlink(const char* path, char* buffer, std::size_t size) noexcept {
    static const auto real = Real<ssize_t (*)(const char*, char*, std::size_t)>("readlink");
    const Fate fate = Note({"readlink", path, {}, {}});
    if (!fate.answer.empty()) {
        return static_cast<ssize_t>(fate.answer.copy(buffer, size));
    }
    return Fails(fate) ? -1 : real(path, buffer, size);
}

ssize_t readlinkat(int file, const char* name, char* buffer, std::size_t size) noexcept {
    static const auto real = Real<ssize_t (*)(int, const char*, char*, std::size_t)>("readlinkat");
    return Fails(NoteFile("readlinkat", file)) ? -1 : real(file, name, buffer, size);
}

int statx(int file, const char* name, int flags, unsigned mask, struct statx* status) noexcept {
    static const auto real = Real<int (*)(int, const char*, int, unsigned, struct statx*)>("statx");
    return Fails(NoteFile("statx", file)) ? -1 : real(file, name, flags, mask, status);
}

int flock(int file, int operation) noexcept {
    static const auto real = Real<int (*)(int, int)>("flock");
    return Fails(NoteFile("flock", file)) ? -1 : real(file, operation);
}

int fcntl(int file, int command, ...) {
    va_list arguments;
    va_start(arguments, command);
    void* const argument = va_arg(arguments, void*);
    va_end(arguments);
    static const auto real = Real<int (*)(int, int, ...)>("fcntl");
    return Fails(NoteFile("fcntl", file)) ? -1 : real(file, command, argument);
}

int fchown(int file, uid_t user, gid_t group) noexcept {
    static const auto real = Real<int (*)(int, uid_t, gid_t)>("fchown");
    return Fails(NoteFile("fchown", file)) ? -1 : real(file, user, group);
}

int fchmod(int file, mode_t mode) noexcept {
    static const auto real = Real<int (*)(int, mode_t)>("fchmod");
    return Fails(NoteFile("fchmod", file)) ? -1 : real(file, mode);
}

int ftruncate(int file, off_t length) noexcept {
    static const auto real = Real<int (*)(int, off_t)>("ftruncate");
    return Fails(NoteFile("ftruncate", file)) ? -1 : real(file, length);
}

int posix_fallocate(int file, off_t offset, off_t length) {
    static const auto real = Real<int (*)(int, off_t, off_t)>("posix_fallocate");
    const Fate fate = NoteFile("posix_fallocate", file);
    return fate.error != 0 ? fate.error : real(file, offset, length);
}

ssize_t pread(int file, void* bytes, std::size_t count, off_t offset) {
    static const auto real = Real<ssize_t (*)(int, void*, std::size_t, off_t)>("pread");
    const Fate fate = NoteFile("pread", file);
    return Fails(fate) ? -1 : real(file, bytes, std::min(count, fate.nAtMost), offset);
}

iconv_t iconv_open(const char* to, const char* from) {
    static const auto real = Real<iconv_t (*)(const char*, const char*)>("iconv_open");
    return Fails(Note({"iconv_open", from, {}, {}})) ? reinterpret_cast<iconv_t>(-1) : real(to, from);
}

std::size_t iconv(iconv_t converter, char** input, std::size_t* inputLeft, char** output, std::size_t* outputLeft) {
    static const auto real = Real<std::size_t (*)(iconv_t, char**, std::size_t*, char**, std::size_t*)>("iconv");
    return Fails(Note({"iconv", {}, {}, {}})) ? static_cast<std::size_t>(-1)
                                              : real(converter, input, inputLeft, output, outputLeft);
}

ssize_t write(int file, const void* bytes, std::size_t count) {
    static const auto real = Real<ssize_t (*)(int, const void*, std::size_t)>("write");
    if (!CSystemCallWatch::IsOn()) {
        return real(file, bytes, count);
    }
    const Fate fate = Note({"write", PathOf(file), {}, {}, false, {static_cast<const char*>(bytes), count}});
    return Fails(fate) ? -1 : real(file, bytes, std::min(count, fate.nAtMost));
}

int fsync(int file) {
    static const auto real = Real<int (*)(int)>("fsync");
    return Fails(NoteFile("fsync", file)) ? -1 : real(file);
}

int sync_file_range(int file, off64_t offset, off64_t length, unsigned flags) {
    static const auto real = Real<int (*)(int, off64_t, off64_t, unsigned)>("sync_file_range");
    return Fails(NoteFile("sync_file_range", file)) ? -1 : real(file, offset, length, flags);
}

int renameat(int fromFolder, const char* from, int toFolder, const char* to) noexcept {
    static const auto real = Real<int (*)(int, const char*, int, const char*)>("renameat");
    const Fate fate = CSystemCallWatch::IsOn()
                          ? Note({"renameat", PathOf(fromFolder) + "/" + from, PathOf(toFolder) + "/" + to, {}})
                          : Fate();
    return Fails(fate) ? -1 : real(fromFolder, from, toFolder, to);
}

int unlinkat(int folder, const char* name, int flags) noexcept {
    static const auto real = Real<int (*)(int, const char*, int)>("unlinkat");
    return Fails(NoteName("unlinkat", folder, name)) ? -1 : real(folder, name, flags);
}

ssize_t getdents64(int folder, void* entries, std::size_t size) noexcept {
    static const auto real = Real<ssize_t (*)(int, void*, std::size_t)>("getdents64");
    const Fate fate = NoteFile("getdents64", folder);
    if (!fate.answer.empty()) {
        return Answered(fate.answer, static_cast<char*>(entries), size);
    }
    return Fails(fate) ? -1 : real(folder, entries, size);
}

ssize_t getrandom(void* bytes, std::size_t count, unsigned flags) {
    static const auto real = Real<ssize_t (*)(void*, std::size_t, unsigned)>("getrandom");
    const Fate fate = Note({"getrandom", {}, {}, {}});
    if (!fate.answer.empty()) {
        return static_cast<ssize_t>(fate.answer.copy(static_cast<char*>(bytes), count));
    }
    return Fails(fate) ? -1 : real(bytes, count, flags);
}

ssize_t flistxattr(int file, char* names, std::size_t size) noexcept {
    static const auto real = Real<ssize_t (*)(int, char*, std::size_t)>("flistxattr");
    const Fate fate = NoteFile("flistxattr", file);
    if (!fate.answer.empty()) {
        return Answered(fate.answer, names, size);
    }
    return Fails(fate) ? -1 : real(file, names, size);
}

ssize_t fgetxattr(int file, const char* name, void* value, std::size_t size) noexcept {
    static const auto real = Real<ssize_t (*)(int, const char*, void*, std::size_t)>("fgetxattr");
    const Fate fate = NoteAttribute("fgetxattr", file, name);
    if (!fate.answer.empty()) {
        return Answered(fate.answer, static_cast<char*>(value), size);
    }
    return Fails(fate) ? -1 : real(file, name, value, size);
}

int fsetxattr(int file, const char* name, const void* value, std::size_t size, int flags) noexcept {
    static const auto real = Real<int (*)(int, const char*, const void*, std::size_t, int)>("fsetxattr");
    const Fate fate = NoteAttribute("fsetxattr", file, name, {static_cast<const char*>(value), size});
    return Fails(fate) ? -1 : real(file, name, value, size, flags);
}

int fremovexattr(int file, const char* name) noexcept {
    static const auto real = Real<int (*)(int, const char*)>("fremovexattr");
    return Fails(NoteAttribute("fremovexattr", file, name)) ? -1 : real(file, name);
}

int nanosleep(const timespec* duration, timespec* left) {
    static const auto real = Real<int (*)(const timespec*, timespec*)>("nanosleep");
    const auto nanoseconds = duration->tv_sec * 1'000'000'000 + duration->tv_nsec;
    return Fails(Note({"nanosleep", {}, {}, std::to_string(nanoseconds)})) ? -1 : real(duration, left);
}

} // extern "C"
