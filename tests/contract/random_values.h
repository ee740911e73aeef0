// Values as a host may hand them in: bytes of any kind, and texts that mean something to XML or to a code page.

#pragma once

#include "cordelbox.h"

#include <cstddef>
#include <random>
#include <string>

/// A value as a host hands it in.
inline AnsiString Text(const std::string& text) { return AnsiString(text.data(), text.size()); }

class CRandomValues {
public:
    explicit CRandomValues(unsigned seed) : m_random(seed) {}

    /// At most `size` bytes, none of them zero.
    std::string Any(std::size_t size);

    /// The same, of a kind that a document can hold.
    std::string Storable(std::size_t size);

    /// One of many fields of a record, of which few should make the whole record unfit for a document.
    std::string Field(std::size_t size) { return m_random() % 10 == 0 ? Any(size) : Storable(size); }

private:
    std::string ManyBytes(std::size_t size);
    std::string FewParts();

    std::mt19937 m_random;
};
