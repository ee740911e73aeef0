// Sizes as the documents hold them (decimal text) and as people read them.

#include "text/number_text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>

std::optional<int64_t> ParseSize(const std::string& text) {
    int64_t number = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    if (text.empty() || error != std::errc() || stop != end || number < 0) {
        return std::nullopt;
    }
    return number;
}

std::optional<int64_t> ParseSizeWithUnit(const std::string& text) {
    const std::size_t digits = text.find_first_not_of("0123456789");
    const auto whole = ParseSize(text.substr(0, digits));
    if (!whole || digits == std::string::npos) {
        return whole;
    }
    std::size_t position = digits;
    double fraction = 0;
    if (text[position] == '.') {
        const std::size_t end = std::min(text.find_first_not_of("0123456789", position + 1), text.size());
        const auto part = ParseSize(text.substr(position + 1, end - position - 1));
        if (!part || end - position > 10) {
            return std::nullopt;
        }
        fraction = static_cast<double>(*part) / std::pow(10.0, static_cast<double>(end - position - 1));
        position = end;
    }
    position = std::min(text.find_first_not_of(' ', position), text.size());
    constexpr std::string_view kUnits = "KMGTP";
    const std::size_t unit =
        position < text.size() ? kUnits.find(static_cast<char>(text[position] & ~0x20)) : kUnits.npos;
    const std::string rest = unit != kUnits.npos ? text.substr(position + 1) : "";
    if (unit == kUnits.npos || (!rest.empty() && rest != "B" && rest != "b" && rest != "iB")) {
        return std::nullopt;
    }
    const int64_t factor = int64_t{1} << (10 * (unit + 1));
    if (*whole > std::numeric_limits<int64_t>::max() / factor - 1) {
        return std::nullopt;
    }
    return *whole * factor + static_cast<int64_t>(fraction * static_cast<double>(factor));
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

int WholePercent(int64_t part, int64_t whole) noexcept {
    return static_cast<int>(std::lround(static_cast<long double>(part) * 100 / static_cast<long double>(whole)));
}
