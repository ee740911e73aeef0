// Asks the environment which mutant is meant, before anything else of the program runs:
//
//   CORDELBOX_MUTANT           its number
//   CORDELBOX_MUTANTS_REACHED  a file with one byte a mutant: the mutants that are passed set theirs, in this process
//                              and in those that it starts

#include "chosen.h"

#include <cstdlib>

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>
#endif

namespace mutants {

int g_nChosen = 0;
unsigned char* g_pReached = nullptr;

namespace {

#ifdef _WIN32

unsigned char* MapShared(const char* path) noexcept {
    const HANDLE file = CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                                    OPEN_EXISTING, 0, nullptr);
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, 0, nullptr);
    return static_cast<unsigned char*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, 0));
}

#else

/// Not through the C library, whose functions some test programs watch.
unsigned char* MapShared(const char* path) noexcept {
    const auto file = syscall(SYS_openat, AT_FDCWD, path, O_RDWR | O_CLOEXEC);
    const auto size = syscall(SYS_lseek, file, 0, SEEK_END);
    const auto address = syscall(SYS_mmap, nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    syscall(SYS_close, file);
    return address == -1 ? nullptr : reinterpret_cast<unsigned char*>(address);
}

#endif

__attribute__((constructor(101))) void ReadEnvironment() noexcept {
    if (const char* const number = std::getenv("CORDELBOX_MUTANT"); number != nullptr) {
        g_nChosen = std::atoi(number);
    }
    if (const char* const path = std::getenv("CORDELBOX_MUTANTS_REACHED"); path != nullptr) {
        g_pReached = MapShared(path);
    }
}

} // namespace

} // namespace mutants
