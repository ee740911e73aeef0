// Random documents and random sequences of operations, made so that most operations find something: few names, few
// values, filters taken from rows that the document has.

#pragma once

#include "reference_engine.h"

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <vector>

/// Where choices come from: a generator of random numbers, or the bytes that a fuzzer supplies.
class CChoices {
public:
    explicit CChoices(std::uint64_t seed) : m_random(seed) {}
    CChoices(const std::uint8_t* bytes, std::size_t size) : m_pBytes(bytes), m_nLeft(size) {}

    /// A number below `count`, which is at least 1 and at most 65536.
    std::size_t Below(std::size_t count);
    bool OneIn(std::size_t count) { return Below(count) == 0; }
    template <class List>
    const auto& Of(const List& list) {
        return list[Below(std::size(list))];
    }
    /// False when the bytes are used up; all further choices are then the first.
    bool HasMore() const { return m_pBytes == nullptr || m_nLeft > 0; }

private:
    std::mt19937_64 m_random;
    const std::uint8_t* m_pBytes = nullptr;
    std::size_t m_nLeft = 0;
};

struct Step {
    Operation operation = Operation::ReadAttribute;
    bool bReuse = false; // goes on with the pairs and the count that the step before left in the query
    RefQuery query;
};

struct Case {
    RefNode document;
    std::vector<Step> steps;
};

/// A document of a few containers within each other with a few rows, or, one time in thirty, one with very many
/// containers or rows.
Case RandomCase(CChoices& choices);

/// The case in words.
std::string Describe(const Case& failed);
