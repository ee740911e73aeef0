// The bytes of a file whose format has its numbers in big-endian order. Whatever lies outside reads as an error.

#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>

/// The whole file. Throws std::runtime_error with the reason when it cannot be read, or is larger than a font or
/// profile can be.
std::string ReadFileBytes(const std::filesystem::path& path);

/// A part of the bytes. Throws std::out_of_range when it does not lie within them.
std::string_view Part(std::string_view bytes, std::size_t offset, std::size_t length);

std::uint32_t BigEndian16(std::string_view bytes, std::size_t offset);
std::uint32_t BigEndian32(std::string_view bytes, std::size_t offset);
