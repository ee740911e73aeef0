#include "file_bytes.h"

#include <fstream>
#include <stdexcept>

std::string ReadFileBytes(const std::filesystem::path& path) {
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("it cannot be opened");
    }
    std::string bytes;
    std::error_code none;
    const auto size = std::filesystem::file_size(path, none);
    constexpr std::uintmax_t kLargest = std::uintmax_t{1} << 30;
    if (!none && size > kLargest) {
        throw std::runtime_error("it is larger than any font or profile: more than 1 GiB");
    }
    bytes.resize(none ? 0 : size);
    stream.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    if (bytes.size() != size) {
        throw std::runtime_error("it cannot be read");
    }
    return bytes;
}

std::string_view Part(std::string_view bytes, std::size_t offset, std::size_t length) {
    if (offset > bytes.size() || length > bytes.size() - offset) {
        throw std::out_of_range("the file ends too early");
    }
    return bytes.substr(offset, length);
}

std::uint32_t BigEndian16(std::string_view bytes, std::size_t offset) {
    const std::string_view part = Part(bytes, offset, 2);
    return static_cast<std::uint32_t>(static_cast<unsigned char>(part[0])) << 8 | static_cast<unsigned char>(part[1]);
}

std::uint32_t BigEndian32(std::string_view bytes, std::size_t offset) {
    return BigEndian16(bytes, offset) << 16 | BigEndian16(bytes, offset + 2);
}
