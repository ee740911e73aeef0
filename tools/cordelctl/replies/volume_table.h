// The table of volumes in a reply: a line of headings and a line for each volume.

#pragma once

#include <array>
#include <string>
#include <string_view>

/// One volume, field by field as a printer's storage report has them. What the printer does not know (`?`) is empty.
struct ReplyVolume {
    std::string volume;
    std::string totalSpace; // in bytes
    std::string freeSpace;
    std::string location;
    std::string label;
    std::string status;
};

/// Knows the columns from their headings. Devices part them with tabs, or with blanks, to the left or to the right or
/// in no order at all, and a tab alone may stand for an empty field.
class CVolumeTable {
public:
    static bool IsHeading(std::string_view line);

    /// `heading` is a line of headings.
    explicit CVolumeTable(std::string_view heading);

    /// Throws std::runtime_error with the reason when the line cannot be told apart into fields in one way only.
    ReplyVolume Row(std::string_view line) const;

private:
    struct Span {
        std::size_t start;
        std::size_t end;
    };
    static constexpr std::size_t kColumns = 6;
    using Fields = std::array<std::u32string, kColumns>;

    bool ByTabs(std::u32string_view line, Fields& fields) const;
    bool ByHeadings(std::u32string_view line, Fields& fields) const;
    bool ByColumnStarts(std::u32string_view line, Fields& fields) const;

    std::array<Span, kColumns> m_headings{}; // places of the headings, tabs made blanks
    bool m_bTabbed = false;                  // one tab between each two headings
};
