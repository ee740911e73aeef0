// The lines of a file that findings are about.

#pragma once

#include "document/document_tree.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

/// A piece of a line, at a place in it: of a long line only what stands near the place.
struct SourceExcerpt {
    std::string before;
    std::string behind; // from the place on

    bool Empty() const noexcept { return before.empty() && behind.empty(); }
};

/// Finds pieces of a text, whose bytes must stay. A place costs the same in lines of any length.
class CSourceLines {
public:
    explicit CSourceLines(std::string_view bytes);

    /// An empty one for a place that is not known, or not in the file.
    SourceExcerpt At(const SourcePlace& place);

private:
    std::size_t OffsetOf(std::size_t line, std::size_t column);

    std::vector<std::string_view> m_lines;
    std::map<std::size_t, std::vector<std::size_t>> m_strides; // of long lines: where every so many characters begin
};
