// The directory of a font file: where its tables lie.

#pragma once

#include "file_finding.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct FontTable {
    std::string tag;
    std::uint32_t checksum;
    std::size_t offset;
    std::size_t length;
};

/// One font of a file. Refers to the bytes of the file.
class CFontTables {
public:
    /// The font whose directory begins at `start`; `member` is its number within a collection. Adds what is wrong with
    /// the directory, and then has no tables.
    CFontTables(std::string_view file, std::size_t start, unsigned int member, FileFindings& findings);

    std::string_view File() const noexcept { return m_strFile; }
    unsigned int Member() const noexcept { return m_nMember; }
    bool HasCompactOutlines() const noexcept { return m_bCompact; }
    const std::vector<FontTable>& All() const noexcept { return m_tables; }

    bool Lists(std::string_view tag) const noexcept;
    /// The bytes of the table; nothing when it is not listed, or does not lie within the file.
    std::string_view Find(std::string_view tag) const noexcept;

private:
    void Read(std::size_t start, FileFindings& findings);

    std::string_view m_strFile;
    unsigned int m_nMember;
    bool m_bCompact = false;
    std::vector<FontTable> m_tables;
};

/// The fonts of a file, several when it is a collection. Adds what is wrong with the whole: no font, tables outside the
/// file or over one another.
std::vector<CFontTables> ReadFonts(std::string_view file, FileFindings& findings);

/// What all tables add up to, as the directory has it.
std::uint32_t TableSum(std::string_view bytes) noexcept;

/// Holds the tables against the sums in the directory.
void CheckSums(const CFontTables& font, bool isCollection, FileFindings& findings);
