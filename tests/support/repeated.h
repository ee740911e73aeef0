// Long texts.

#pragma once

#include <cstddef>
#include <string>

/// The text so many times.
inline std::string Repeated(const std::string& text, std::size_t times) {
    std::string repeated;
    repeated.reserve(text.size() * times);
    for (std::size_t time = 0; time < times; ++time) {
        repeated += text;
    }
    return repeated;
}
