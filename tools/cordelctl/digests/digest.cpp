#include "digest.h"

#include "digest_state.h"

#include <fstream>
#include <stdexcept>
#include <vector>

namespace {

std::string Hexadecimal(std::string_view bytes) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const char byte : bytes) {
        text += kDigits[static_cast<unsigned char>(byte) >> 4];
        text += kDigits[static_cast<unsigned char>(byte) & 0xF];
    }
    return text;
}

std::string DigestOf(DigestKind kind, std::string_view bytes) {
    CDigest digest(kind);
    digest.Add(bytes);
    return Hexadecimal(digest.Finish());
}

} // namespace

std::string Sha256Of(std::string_view bytes) { return DigestOf(DigestKind::Sha256, bytes); }

std::string Md5Of(std::string_view bytes) { return DigestOf(DigestKind::Md5, bytes); }

std::string Sha256OfFile(const std::filesystem::path& path) {
    constexpr std::size_t kPiece = std::size_t{1} << 20;
    std::ifstream stream(path, std::ios::binary);
    if (!stream) {
        throw std::runtime_error("it cannot be opened");
    }
    CDigest digest(DigestKind::Sha256);
    std::vector<char> piece(kPiece);
    while (stream) {
        stream.read(piece.data(), static_cast<std::streamsize>(piece.size()));
        digest.Add({piece.data(), static_cast<std::size_t>(stream.gcount())});
    }
    if (!stream.eof()) {
        throw std::runtime_error("it cannot be read");
    }
    return Hexadecimal(digest.Finish());
}
