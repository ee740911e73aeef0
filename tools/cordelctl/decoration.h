// What makes output pleasant for a person: colour on a terminal, bars, and progress.

#pragma once

#include <chrono>
#include <cstddef>
#include <string>

enum class Colour { Red, Yellow, Blue, Green, Faint };

/// The text in colour, when standard output is a terminal and NO_COLOR is not set.
std::string Coloured(const std::string& text, Colour colour);

/// "[######----]  60 %"; a share of nothing is an empty text.
std::string UsageBar(double used, double total);

/// A line on standard error that tells how far a long work is, once it takes longer than a second; nothing unless that
/// is a terminal.
class CProgress {
public:
    CProgress(std::size_t total, std::string what);
    ~CProgress();
    CProgress(const CProgress&) = delete;
    CProgress& operator=(const CProgress&) = delete;

    void Show(std::size_t done);

    /// Takes the line away, for another on standard error.
    void Clear();

private:
    std::size_t m_nTotal;
    std::string m_strWhat;
    bool m_bWanted;
    std::chrono::steady_clock::time_point m_begin;
    int m_nPercent = -1; // as shown last; -1 when no line is to be seen
};
