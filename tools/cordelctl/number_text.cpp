// Sizes as the documents hold them (decimal text) and as people read them.

#include "number_text.h"

#include <array>
#include <charconv>
#include <cstdio>

std::optional<int64_t> ParseSize(const std::string& text) {
    int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || error != std::errc() || stop != end || number < 0) {
        return std::nullopt;
    }
    return number;
}

std::string ReadableSize(const std::string& bytes) {
    const auto number = ParseSize(bytes);
    if (!number) {
        return bytes;
    }
    if (*number < 1024) {
        return bytes + " bytes";
    }
    constexpr std::array kUnits{"KiB", "MiB", "GiB", "TiB", "PiB", "EiB"};
    double size = static_cast<double>(*number) / 1024;
    std::size_t unit = 0;
    while (size >= 1024 && unit + 1 < kUnits.size()) {
        size /= 1024;
        ++unit;
    }
    char text[32];
    std::snprintf(text, sizeof text, "%.1f %s", size, kUnits[unit]);
    return text;
}
