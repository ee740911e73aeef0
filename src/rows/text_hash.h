// Hash of the DOM's text.

#pragma once

#include "dom_types.h"

#include <cstdint>
#include <cstring>
#include <string_view>

/// A hash whose every bit depends on the whole text. Texts of documents are short, and mostly alike but for some
/// digits: eight bytes are one step, the last of which may take some again, and nothing is called.
inline std::uint64_t HashText(std::basic_string_view<DomChar> text) noexcept {
    constexpr std::size_t kStep = sizeof(std::uint64_t);
    std::uint64_t hash = 0;
    const auto mix = [&hash](std::uint64_t block) {
        hash = (hash ^ block) * 0x9E3779B97F4A7C15u; // the upper bits of a product are the good ones
        hash ^= hash >> 32;
    };
    const auto* const bytes = reinterpret_cast<const char*>(text.data());
    const std::size_t size = text.size() * sizeof(DomChar);
    std::uint64_t block = 0;
    if (size >= kStep) {
        for (std::size_t position = 0; position + kStep < size; position += kStep) {
            std::memcpy(&block, bytes + position, kStep);
            mix(block);
        }
        std::memcpy(&block, bytes + size - kStep, kStep);
    } else {
        for (std::size_t position = 0; position < size; ++position) {
            block = block << 8 | static_cast<unsigned char>(bytes[position]);
        }
    }
    mix(block);
    mix(size);
    return hash;
}
