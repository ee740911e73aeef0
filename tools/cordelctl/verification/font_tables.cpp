#include "font_tables.h"

#include "table_reader.h"

#include <algorithm>
#include <iterator>

namespace {

constexpr std::size_t kDirectoryHead = 12;
constexpr std::size_t kDirectoryEntry = 16;
constexpr std::size_t kMostMembers = 1000;

bool IsFont(std::string_view version) {
    return version == std::string_view("\0\1\0\0", 4) || version == "true" || version == "OTTO";
}

bool IsTag(std::string_view tag) {
    return std::all_of(tag.begin(), tag.end(), [](char letter) { return letter >= 0x20 && letter < 0x7F; });
}

/// How many tables the head's own search numbers say there are, at most and at least.
bool FitsSearchNumbers(std::string_view head, std::uint32_t count) {
    const std::uint32_t range = Word16At(head, 6);
    if (range == 0) {
        return true; // some makers leave them out
    }
    const std::uint32_t largestPower = range / kDirectoryEntry;
    return count >= largestPower && count < 2 * largestPower;
}

struct Span {
    std::size_t start;
    std::size_t end;
    std::string tag;
};

/// The tables of all fonts in the order in which they lie; tables that fonts share stand there once.
std::vector<Span> SpansOf(const std::vector<CFontTables>& fonts) {
    std::vector<Span> spans;
    for (const CFontTables& font : fonts) {
        for (const FontTable& table : font.All()) {
            if (table.length != 0) {
                spans.push_back({table.offset, table.offset + table.length, table.tag});
            }
        }
    }
    std::sort(spans.begin(), spans.end(),
              [](const Span& a, const Span& b) { return a.start != b.start ? a.start < b.start : a.end < b.end; });
    spans.erase(std::unique(spans.begin(), spans.end(),
                            [](const Span& a, const Span& b) {
                                return a.start == b.start && a.end == b.end && a.tag == b.tag;
                            }),
                spans.end());
    return spans;
}

/// Whether each table follows the one before, with no more between them than rounds up to a multiple of four.
bool FollowOneAnother(const std::vector<Span>& spans) {
    constexpr std::size_t kMostBetween = 3;
    for (std::size_t i = 1; i < spans.size(); ++i) {
        if (spans[i].start < spans[i - 1].end || spans[i].start - spans[i - 1].end > kMostBetween) {
            return false;
        }
    }
    return true;
}

void CheckPlaces(const std::vector<CFontTables>& fonts, std::size_t fileSize, FileFindings& findings) {
    const auto spans = SpansOf(fonts);
    const auto outside =
        std::count_if(spans.begin(), spans.end(), [&](const Span& span) { return span.end > fileSize; });
    if (outside > 0 && FollowOneAnother(spans)) {
        findings.push_back({Cause::Truncated, "it has " + std::to_string(fileSize) + " of " +
                                                  std::to_string(spans.back().end) + " bytes"});
        return;
    }
    for (std::size_t i = 0; i < spans.size(); ++i) {
        if (spans[i].end > fileSize) {
            findings.push_back({Cause::TableOutside,
                                "table " + Quoted(spans[i].tag) + " lies at bytes " + std::to_string(spans[i].start) +
                                    " to " + std::to_string(spans[i].end) + " of " + std::to_string(fileSize)});
        } else if (i > 0 && spans[i].start < spans[i - 1].end && spans[i - 1].end <= fileSize) {
            findings.push_back({Cause::TableOverlap,
                                "tables " + Quoted(spans[i - 1].tag) + " and " + Quoted(spans[i].tag) + " overlap"});
        }
    }
}

} // namespace

CFontTables::CFontTables(std::string_view file, std::size_t start, unsigned int member, FileFindings& findings)
    : m_strFile(file), m_nMember(member) {
    Read(start, findings);
}

void CFontTables::Read(std::size_t start, FileFindings& findings) {
    if (!Holds(m_strFile, start, kDirectoryHead)) {
        findings.push_back({Cause::Truncated, "it ends before its list of tables"});
        return;
    }
    const std::string_view head = m_strFile.substr(start, kDirectoryHead);
    if (!IsFont(head.substr(0, 4))) {
        findings.push_back({Cause::DirectoryDamaged, "font " + std::to_string(m_nMember + 1) + " of it is none"});
        return;
    }
    m_bCompact = head.substr(0, 4) == "OTTO";
    const std::uint32_t count = Word16At(head, 4);
    if (count == 0 || !FitsSearchNumbers(head, count)) {
        findings.push_back({Cause::DirectoryDamaged, "its list of tables says that it has " + std::to_string(count)});
        return;
    }
    for (std::size_t i = 0, place = start + kDirectoryHead; i < count; ++i, place += kDirectoryEntry) {
        if (!Holds(m_strFile, place, kDirectoryEntry)) {
            findings.push_back({Cause::Truncated, "it ends within its list of tables"});
            m_tables.clear();
            return;
        }
        const std::string_view entry = m_strFile.substr(place, kDirectoryEntry);
        const std::string tag(entry.substr(0, 4));
        if (!IsTag(tag) || Lists(tag)) {
            findings.push_back(
                {Cause::DirectoryDamaged, "entry " + std::to_string(i + 1) + " of its list of tables " +
                                              (IsTag(tag) ? "names " + Quoted(tag) + " again" : "has no name")});
            m_tables.clear();
            return;
        }
        m_tables.push_back({tag, Word32At(entry, 4), Word32At(entry, 8), Word32At(entry, 12)});
    }
}

bool CFontTables::Lists(std::string_view tag) const noexcept {
    return std::any_of(m_tables.begin(), m_tables.end(), [&](const FontTable& table) { return table.tag == tag; });
}

std::string_view CFontTables::Find(std::string_view tag) const noexcept {
    for (const FontTable& table : m_tables) {
        if (table.tag == tag && Holds(m_strFile, table.offset, table.length)) {
            return m_strFile.substr(table.offset, table.length);
        }
    }
    return {};
}

std::vector<CFontTables> ReadFonts(std::string_view file, FileFindings& findings) {
    std::vector<CFontTables> fonts;
    const bool isCollection = file.substr(0, 4) == "ttcf";
    if (!isCollection && !IsFont(file.substr(0, 4))) {
        findings.push_back({Cause::NotAFont, "it does not begin as a font does"});
        return fonts;
    }
    if (!Holds(file, 0, kDirectoryHead)) {
        findings.push_back({Cause::Truncated, "it has " + std::to_string(file.size()) + " bytes"});
        return fonts;
    }
    if (!isCollection) {
        fonts.emplace_back(file, 0, 0, findings);
    } else {
        const std::uint32_t count = Word32At(file, 8);
        if (count == 0 || count > kMostMembers) {
            findings.push_back(
                {Cause::DirectoryDamaged, "it is a collection that says to have " + std::to_string(count) + " fonts"});
            return fonts;
        }
        if (!Holds(file, kDirectoryHead, std::size_t{count} * 4)) {
            findings.push_back({Cause::Truncated, "it ends within its list of fonts"});
            return fonts;
        }
        for (unsigned int i = 0; i < count; ++i) {
            fonts.emplace_back(file, Word32At(file, kDirectoryHead + std::size_t{i} * 4), i, findings);
        }
    }
    CheckPlaces(fonts, file.size(), findings);
    return fonts;
}

std::uint32_t TableSum(std::string_view bytes) noexcept {
    std::uint32_t sum = 0;
    const std::size_t whole = bytes.size() / 4 * 4;
    for (std::size_t i = 0; i < whole; i += 4) {
        sum += Word32At(bytes, i);
    }
    for (std::size_t i = whole; i < bytes.size(); ++i) {
        sum += ByteAt(bytes, i) << (24 - 8 * (i - whole));
    }
    return sum;
}

void CheckSums(const CFontTables& font, bool isCollection, FileFindings& findings) {
    constexpr std::uint32_t kWholeSum = 0xB1B0AFBA;
    constexpr std::size_t kAdjustment = 8; // place within the table "head"; left out of its own sum
    bool differs = false;
    bool complete = true;
    std::uint32_t whole = 0;
    for (const FontTable& table : font.All()) {
        const std::string_view bytes = font.Find(table.tag);
        if (bytes.size() != table.length) {
            complete = false;
            continue;
        }
        const bool hasAdjustment = table.tag == "head" && Holds(bytes, kAdjustment, 4);
        const std::uint32_t sum = TableSum(bytes) - (hasAdjustment ? Word32At(bytes, kAdjustment) : 0);
        whole += sum;
        // Makers of collections change the table without doing its sum anew.
        if (sum != table.checksum && !(isCollection && table.tag == "head")) {
            findings.push_back({Cause::TableChecksum, "table " + Quoted(table.tag)});
            differs = true;
        }
    }
    const std::string_view head = font.Find("head");
    if (isCollection || differs || !complete || HasError(findings) || !Holds(head, kAdjustment, 4)) {
        return;
    }
    const std::size_t directory = kDirectoryHead + font.All().size() * kDirectoryEntry;
    whole += TableSum(font.File().substr(0, directory));
    if (Word32At(head, kAdjustment) != kWholeSum - whole) {
        findings.push_back({Cause::FontChecksum, "the sum of the whole font"});
    }
}
