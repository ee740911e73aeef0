// Digests of bytes, in hexadecimal.

#pragma once

#include <filesystem>
#include <string>
#include <string_view>

/// SHA-256: whether a file is still what it was.
std::string Sha256Of(std::string_view bytes);

/// The same of a whole file, of whatever size. Throws std::runtime_error with the reason when it cannot be read.
std::string Sha256OfFile(const std::filesystem::path& path);

/// MD5: what colour profiles carry as their ID.
std::string Md5Of(std::string_view bytes);
