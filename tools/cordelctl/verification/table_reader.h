// Numbers of a table at places that are known to lie within it. (facts/file_bytes.h is for places that may not.)

#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

inline std::uint32_t ByteAt(std::string_view bytes, std::size_t offset) noexcept {
    return static_cast<unsigned char>(bytes[offset]);
}

// Written so that compilers make one load of it.
inline std::uint32_t Word16At(std::string_view bytes, std::size_t offset) noexcept {
    const auto* const at = reinterpret_cast<const unsigned char*>(bytes.data() + offset);
    return static_cast<std::uint32_t>(at[0]) << 8 | at[1];
}

inline std::uint32_t Word32At(std::string_view bytes, std::size_t offset) noexcept {
    const auto* const at = reinterpret_cast<const unsigned char*>(bytes.data() + offset);
    return static_cast<std::uint32_t>(at[0]) << 24 | static_cast<std::uint32_t>(at[1]) << 16 |
           static_cast<std::uint32_t>(at[2]) << 8 | at[3];
}

inline double FixedAt(std::string_view bytes, std::size_t offset) noexcept {
    return static_cast<std::int32_t>(Word32At(bytes, offset)) / 65536.0;
}

/// The letters of a table's name or of a signature, for a finding.
inline std::string Quoted(std::string_view letters) {
    std::string text = "\"";
    for (const char letter : letters) {
        text += letter >= 0x20 && letter < 0x7F ? letter : '?';
    }
    return text + "\"";
}

/// Whether so many bytes lie there.
inline bool Holds(std::string_view bytes, std::size_t offset, std::size_t length) noexcept {
    return offset <= bytes.size() && length <= bytes.size() - offset;
}
