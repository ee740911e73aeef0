#include "platform/text_hash.h"

#include "platform/random.h"

namespace {

HashKey DrawKey() noexcept {
    const std::uint64_t first = platform::RandomNumber();
    return {first, platform::RandomNumber()};
}

} // namespace

const HashKey kProcessKey = DrawKey();
