#include "platform/random.h"

#include "cordelbox.h"

#include <bcrypt.h>

namespace platform {

std::uint64_t RandomNumber() noexcept {
    std::uint64_t number = 0;
    auto* const bytes = reinterpret_cast<UCHAR*>(&number);
    if (::BCryptGenRandom(nullptr, bytes, sizeof number, BCRYPT_USE_SYSTEM_PREFERRED_RNG) < 0) {
        LARGE_INTEGER now;
        ::QueryPerformanceCounter(&now);
        number =
            static_cast<std::uint64_t>(now.QuadPart) * 0x9E3779B97F4A7C15u ^ reinterpret_cast<std::uintptr_t>(&number);
    }
    return number;
}

} // namespace platform
