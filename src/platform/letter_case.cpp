#include "platform/letter_case.h"

#include "platform/letter_case_table.h"

#include <algorithm>
#include <iterator>

namespace platform {

char32_t LowerCase(char32_t codePoint) noexcept {
    if (codePoint < 0x80) {
        return codePoint >= U'A' && codePoint <= U'Z' ? codePoint + (U'a' - U'A') : codePoint;
    }
    const LetterRange* const range =
        std::lower_bound(std::begin(kLetterRanges), std::end(kLetterRanges), codePoint,
                         [](const LetterRange& candidate, char32_t wanted) { return candidate.last < wanted; });
    const bool bLetter =
        range != std::end(kLetterRanges) && codePoint >= range->first && (codePoint - range->first) % range->step == 0;
    return bLetter ? static_cast<char32_t>(static_cast<std::int32_t>(codePoint) + range->distance) : codePoint;
}

} // namespace platform
