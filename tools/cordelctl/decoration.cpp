// What makes output pleasant for a person.

#include "decoration.h"

#include "system/system.h"
#include "system/terminal.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

namespace {

constexpr std::size_t kBarWidth = 20;
constexpr std::chrono::seconds kPatience{1}; // before a work is worth a progress line

bool UsesColours() {
    static const bool uses = [] { return host::Variable("NO_COLOR").empty() && host::IsOutputTerminal(); }();
    return uses;
}

const char* CodeOf(Colour colour) {
    switch (colour) {
    case Colour::Red:
        return "\x1b[31m";
    case Colour::Yellow:
        return "\x1b[33m";
    case Colour::Blue:
        return "\x1b[34m";
    case Colour::Green:
        return "\x1b[32m";
    case Colour::Faint:
        return "\x1b[2m";
    }
    return "";
}

std::string Bar(double share) {
    const auto filled = static_cast<std::size_t>(std::lround(share * static_cast<double>(kBarWidth)));
    return "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '-') + "]";
}

} // namespace

std::string Coloured(const std::string& text, Colour colour) {
    return UsesColours() ? CodeOf(colour) + text + "\x1b[0m" : text;
}

std::string UsageBar(double used, double total) {
    if (total <= 0) {
        return {};
    }
    const double share = std::clamp(used / total, 0.0, 1.0);
    char percent[16];
    std::snprintf(percent, sizeof percent, " %3.0f %%", share * 100);
    return Bar(share) + percent;
}

CProgress::CProgress(std::size_t total, std::string what)
    : m_nTotal(total), m_strWhat(std::move(what)), m_bWanted(host::IsErrorTerminal()),
      m_begin(std::chrono::steady_clock::now()) {}

CProgress::~CProgress() { Clear(); }

void CProgress::Clear() {
    if (m_nPercent >= 0) {
        host::WriteError("\r\x1b[K");
        m_nPercent = -1;
    }
}

void CProgress::Show(std::size_t done) {
    if (!m_bWanted || std::chrono::steady_clock::now() - m_begin < kPatience) {
        return;
    }
    const int percent = static_cast<int>(done * 100 / std::max<std::size_t>(m_nTotal, 1));
    if (percent != m_nPercent) {
        m_nPercent = percent;
        host::WriteError("\r" + m_strWhat + " " + Bar(static_cast<double>(percent) / 100) + " " + std::to_string(done) +
                         " of " + std::to_string(m_nTotal));
    }
}
