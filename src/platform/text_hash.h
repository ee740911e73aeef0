// Hash of texts that a document's author may have chosen to collide.
//
// SipHash (Aumasson and Bernstein) with one round a block and three at the end, under a key that each process draws
// from the system: without the key nobody can make texts that meet in a table.

#pragma once

#include "dom_types.h"

#include <bit>
#include <cstdint>
#include <cstring>
#include <string_view>

struct HashKey {
    std::uint64_t first;
    std::uint64_t second;
};

/// The key of this process.
extern const HashKey kProcessKey;

template <int blockRounds, int lastRounds>
std::uint64_t SipHash(const HashKey& key, const void* bytes, std::size_t size) noexcept {
    std::uint64_t a = key.first ^ 0x736F6D6570736575u;
    std::uint64_t b = key.second ^ 0x646F72616E646F6Du;
    std::uint64_t c = key.first ^ 0x6C7967656E657261u;
    std::uint64_t d = key.second ^ 0x7465646279746573u;
    const auto mix = [&](int rounds) {
        for (int round = 0; round < rounds; ++round) {
            a += b;
            c += d;
            b = std::rotl(b, 13) ^ a;
            d = std::rotl(d, 16) ^ c;
            a = std::rotl(a, 32) + d;
            c += b;
            d = std::rotl(d, 21) ^ a;
            b = std::rotl(b, 17) ^ c;
            c = std::rotl(c, 32);
        }
    };
    const auto take = [&](std::uint64_t block) {
        d ^= block;
        mix(blockRounds);
        a ^= block;
    };
    const auto* position = static_cast<const unsigned char*>(bytes);
    std::uint64_t block = 0;
    for (std::size_t left = size / sizeof block; left > 0; --left, position += sizeof block) {
        std::memcpy(&block, position, sizeof block); // both targets store the low byte first
        take(block);
    }
    block = static_cast<std::uint64_t>(size) << 56;
    for (std::size_t index = 0; index < size % sizeof block; ++index) {
        block |= static_cast<std::uint64_t>(position[index]) << (8 * index);
    }
    take(block);
    c ^= 0xFF;
    mix(lastRounds);
    return a ^ b ^ c ^ d;
}

template <class Char>
std::uint64_t HashText(std::basic_string_view<Char> text) noexcept {
    return SipHash<1, 3>(kProcessKey, text.data(), text.size() * sizeof(Char));
}

/// For the containers of the standard library.
template <class Char>
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::basic_string_view<Char> text) const noexcept { return HashText(text); }
};
