// What the digests of this target are made with.

#pragma once

#include <memory>
#include <string>
#include <string_view>

enum class DigestKind { Sha256, Md5 };

class CDigest {
public:
    explicit CDigest(DigestKind kind);
    ~CDigest();
    CDigest(const CDigest&) = delete;
    CDigest& operator=(const CDigest&) = delete;

    void Add(std::string_view bytes);
    /// The digest's bytes; nothing can be added afterwards.
    std::string Finish();

private:
    struct State;
    std::unique_ptr<State> m_state;
};
