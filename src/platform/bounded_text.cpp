#include "platform/bounded_text.h"

#include "platform/process.h"

#include <cstdio>
#include <limits>

namespace platform {

void StopForField(const char* field, std::size_t length, std::size_t size) noexcept {
    char line[160];
    std::snprintf(line, sizeof line, "%s: a text of %zu bytes does not fit a field of %zu bytes with its end", field,
                  length, size);
    StopProcess(line);
}

AnsiString FormatForField(long long number, const char* field, std::size_t size) {
    char text[24];
    const auto length = static_cast<std::size_t>(std::snprintf(text, sizeof text, "%lld", number));
    if (length >= size) {
        StopForField(field, length, size);
    }
    return AnsiString(text, length);
}

int32_t LenientInteger(std::string_view text) noexcept {
    std::size_t position = text.find_first_not_of(" \t\n\v\f\r");
    if (position == std::string_view::npos) {
        return 0;
    }
    const bool bNegative = text[position] == '-';
    if (bNegative || text[position] == '+') {
        ++position;
    }
    constexpr int64_t kBeyond = int64_t{1} << 32;
    int64_t magnitude = 0;
    for (; position < text.size() && text[position] >= '0' && text[position] <= '9'; ++position) {
        if (magnitude < kBeyond) {
            magnitude = magnitude * 10 + (text[position] - '0');
        }
    }
    const int64_t number = bNegative ? -magnitude : magnitude;
    if (number < std::numeric_limits<int32_t>::min()) {
        return std::numeric_limits<int32_t>::min();
    }
    if (number > std::numeric_limits<int32_t>::max()) {
        return std::numeric_limits<int32_t>::max();
    }
    return static_cast<int32_t>(number);
}

} // namespace platform
