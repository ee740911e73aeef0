#include "platform/process.h"

#include <cstdio>
#include <cstdlib>

namespace platform {

void StopProcess(const char* line) noexcept {
    std::fprintf(stderr, "cordelbox: %s\n", line);
    std::abort();
}

} // namespace platform
