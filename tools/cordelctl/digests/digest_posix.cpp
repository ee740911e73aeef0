// Digests by libmd, which every Debian system has.

#include "digest_state.h"

#include <md5.h>
#include <sha2.h>

#include <array>
#include <cstdint>
#include <variant>

struct CDigest::State {
    std::variant<SHA2_CTX, MD5_CTX> context;
};

CDigest::CDigest(DigestKind kind) : m_state(std::make_unique<State>()) {
    if (kind == DigestKind::Sha256) {
        SHA256Init(&m_state->context.emplace<SHA2_CTX>());
    } else {
        MD5Init(&m_state->context.emplace<MD5_CTX>());
    }
}

CDigest::~CDigest() = default;

void CDigest::Add(std::string_view bytes) {
    const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.data());
    if (auto* const sha = std::get_if<SHA2_CTX>(&m_state->context)) {
        SHA256Update(sha, data, bytes.size());
    } else {
        MD5Update(&std::get<MD5_CTX>(m_state->context), data, bytes.size());
    }
}

std::string CDigest::Finish() {
    std::array<std::uint8_t, SHA256_DIGEST_LENGTH> digest{};
    std::size_t length = SHA256_DIGEST_LENGTH;
    if (auto* const sha = std::get_if<SHA2_CTX>(&m_state->context)) {
        SHA256Final(digest.data(), sha);
    } else {
        MD5Final(digest.data(), &std::get<MD5_CTX>(m_state->context));
        length = MD5_DIGEST_LENGTH;
    }
    return {reinterpret_cast<const char*>(digest.data()), length};
}
