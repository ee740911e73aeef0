// A reply that is not understood.

#pragma once

#include <stdexcept>
#include <string>

class CReplyError : public std::runtime_error {
public:
    /// Lines count from 1.
    CReplyError(unsigned int line, const std::string& reason) : std::runtime_error(reason), m_nLine(line) {}
    unsigned int Line() const noexcept { return m_nLine; }

private:
    unsigned int m_nLine;
};
