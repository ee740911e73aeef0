// Loaded into cordelctl before its libraries: a clock by which everything takes long. Each look at it is 300 ms later.
// The time of day is $CLOCK_BEHIND seconds behind, for one that somebody has set back.
// With $INTERRUPTED_WORK somebody interrupts the command as soon as it takes note of that, before it loads a document.

#include <sys/syscall.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <ctime>

extern "C" __attribute__((visibility("default"))) int clock_gettime(clockid_t clock, struct timespec* time) noexcept {
    static long looks = 0;
    const int status = static_cast<int>(::syscall(SYS_clock_gettime, clock, time));
    if (status == 0 && clock == CLOCK_MONOTONIC) {
        const long milliseconds = ++looks * 300;
        struct sigaction taken = {};
        if (std::getenv("INTERRUPTED_WORK") != nullptr && ::sigaction(SIGINT, nullptr, &taken) == 0 &&
            taken.sa_handler != SIG_DFL) {
            std::raise(SIGINT);
        }
        time->tv_sec += milliseconds / 1000;
        time->tv_nsec += milliseconds % 1000 * 1'000'000;
        if (time->tv_nsec >= 1'000'000'000) {
            ++time->tv_sec;
            time->tv_nsec -= 1'000'000'000;
        }
    }
    const char* const behind = std::getenv("CLOCK_BEHIND");
    if (status == 0 && clock == CLOCK_REALTIME && behind != nullptr) {
        time->tv_sec -= std::atol(behind);
    }
    return status;
}
