// The lines of a file that findings are about.

#include "doctor/source_lines.h"

#include "platform/utf8.h"

#include <algorithm>

namespace {

/// Characters that an excerpt has at most before the place, and from the place on: more than a line of a terminal
/// shows.
constexpr std::size_t kBefore = 40;
constexpr std::size_t kBehind = 100;

/// Characters between two that are remembered.
constexpr std::size_t kStride = 1024;

/// Where so many characters from a place in the text are over.
std::size_t Advance(std::string_view text, std::size_t offset, std::size_t nCharacters) {
    char32_t codePoint = 0;
    for (; nCharacters > 0 && offset < text.size(); --nCharacters) {
        DecodeUtf8(text, offset, codePoint);
    }
    return offset;
}

} // namespace

CSourceLines::CSourceLines(std::string_view bytes) {
    for (std::size_t begin = 0; begin <= bytes.size();) {
        const std::size_t end = std::min(bytes.find('\n', begin), bytes.size());
        const std::string_view line = bytes.substr(begin, end - begin);
        m_lines.push_back(line.substr(0, line.find('\r')));
        begin = end + 1;
    }
}

SourceExcerpt CSourceLines::At(const SourcePlace& place) {
    if (place.line < 1 || place.column < 1 || static_cast<std::size_t>(place.line) > m_lines.size()) {
        return {};
    }
    const auto line = static_cast<std::size_t>(place.line) - 1;
    const auto column = static_cast<std::size_t>(place.column) - 1;
    const std::string_view text = m_lines[line];
    const std::size_t nBefore = std::min(column, kBefore);
    const std::size_t begin = OffsetOf(line, column - nBefore);
    const std::size_t offset = Advance(text, begin, nBefore);
    return {std::string(text.substr(begin, offset - begin)),
            std::string(text.substr(offset, Advance(text, offset, kBehind) - offset))};
}

/// Where a character of the line begins, counted from 0.
std::size_t CSourceLines::OffsetOf(std::size_t line, std::size_t column) {
    const std::string_view text = m_lines[line];
    if (column < kStride || text.size() < kStride) {
        return Advance(text, 0, column);
    }
    std::vector<std::size_t>& strides = m_strides[line];
    if (strides.empty()) {
        for (std::size_t offset = 0; offset < text.size(); offset = Advance(text, offset, kStride)) {
            strides.push_back(offset);
        }
    }
    const std::size_t nStride = std::min(column / kStride, strides.size() - 1);
    return Advance(text, strides[nStride], column - nStride * kStride);
}
