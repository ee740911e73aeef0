#include "platform/random.h"

#include <sys/random.h>

#include <ctime>

namespace platform {

std::uint64_t RandomNumber() noexcept {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof number)) {
        timespec now = {};
        clock_gettime(CLOCK_REALTIME, &now);
        number = static_cast<std::uint64_t>(now.tv_nsec) * 0x9E3779B97F4A7C15u ^ reinterpret_cast<std::uintptr_t>(&now);
    }
    return number;
}

} // namespace platform
