// Digests by the system's own cryptography.

#include "digest_state.h"

#include <windows.h>

#include <bcrypt.h>

#include <stdexcept>

struct CDigest::State {
    BCRYPT_ALG_HANDLE algorithm = nullptr;
    BCRYPT_HASH_HANDLE hash = nullptr;
    std::size_t length = 0;

    ~State() {
        if (hash != nullptr) {
            BCryptDestroyHash(hash);
        }
        if (algorithm != nullptr) {
            BCryptCloseAlgorithmProvider(algorithm, 0);
        }
    }
};

namespace {

void Require(NTSTATUS status) {
    if (status < 0) {
        throw std::runtime_error("the system cannot make a digest");
    }
}

} // namespace

CDigest::CDigest(DigestKind kind) : m_state(std::make_unique<State>()) {
    const bool sha = kind == DigestKind::Sha256;
    m_state->length = sha ? 32 : 16;
    Require(BCryptOpenAlgorithmProvider(&m_state->algorithm, sha ? BCRYPT_SHA256_ALGORITHM : BCRYPT_MD5_ALGORITHM,
                                        nullptr, 0));
    Require(BCryptCreateHash(m_state->algorithm, &m_state->hash, nullptr, 0, nullptr, 0, 0));
}

CDigest::~CDigest() = default;

void CDigest::Add(std::string_view bytes) {
    constexpr std::size_t kMost = std::size_t{1} << 30; // the length is one of 32 bits
    while (!bytes.empty()) {
        const std::string_view piece = bytes.substr(0, kMost);
        Require(BCryptHashData(m_state->hash, reinterpret_cast<PUCHAR>(const_cast<char*>(piece.data())),
                               static_cast<ULONG>(piece.size()), 0));
        bytes.remove_prefix(piece.size());
    }
}

std::string CDigest::Finish() {
    std::string digest(m_state->length, '\0');
    Require(
        BCryptFinishHash(m_state->hash, reinterpret_cast<PUCHAR>(digest.data()), static_cast<ULONG>(digest.size()), 0));
    return digest;
}
