#include "profile_tags.h"

#include "digests/digest.h"
#include "table_reader.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace {

constexpr std::size_t kHeaderSize = 128;
constexpr std::size_t kTagEntry = 12;
constexpr std::size_t kList = kHeaderSize + 4;
constexpr std::uint32_t kMostTags = 100;
constexpr std::size_t kSignature = 36;

constexpr std::array<std::string_view, 7> kClasses{"scnr", "mntr", "prtr", "link", "spac", "abst", "nmcl"};

struct Space {
    std::string_view name;
    unsigned int channels;
};
constexpr Space kSpaces[] = {{"XYZ ", 3},  {"Lab ", 3},  {"Luv ", 3},  {"YCbr", 3},  {"Yxy ", 3},
                             {"RGB ", 3},  {"GRAY", 1},  {"HSV ", 3},  {"HLS ", 3},  {"CMYK", 4},
                             {"CMY ", 3},  {"2CLR", 2},  {"3CLR", 3},  {"4CLR", 4},  {"5CLR", 5},
                             {"6CLR", 6},  {"7CLR", 7},  {"8CLR", 8},  {"9CLR", 9},  {"ACLR", 10},
                             {"BCLR", 11}, {"CCLR", 12}, {"DCLR", 13}, {"ECLR", 14}, {"FCLR", 15}};

} // namespace

unsigned int ChannelsOf(std::string_view colourSpace) noexcept {
    const auto* const found = std::find_if(std::begin(kSpaces), std::end(kSpaces),
                                           [&](const Space& space) { return space.name == colourSpace; });
    return found != std::end(kSpaces) ? found->channels : 0;
}

CProfileTags::CProfileTags(std::string_view file, FileFindings& findings) : m_strFile(file) {
    if (!Holds(file, kSignature, 4) || file.substr(kSignature, 4) != "acsp") {
        findings.push_back({Cause::NotAProfile, "it lacks the mark of a colour profile"});
        return;
    }
    if (!Holds(file, 0, kList)) {
        findings.push_back({Cause::Truncated, "it ends within its header"});
        return;
    }
    ReadList(findings);
    if (IsReadable()) {
        CheckPlaces(findings);
        CheckHeader(findings);
    }
}

unsigned int CProfileTags::MajorVersion() const noexcept { return ByteAt(m_strFile, 8); }
std::string_view CProfileTags::Class() const noexcept { return m_strFile.substr(12, 4); }
std::string_view CProfileTags::ColourSpace() const noexcept { return m_strFile.substr(16, 4); }
std::string_view CProfileTags::ConnectionSpace() const noexcept { return m_strFile.substr(20, 4); }

bool CProfileTags::Lists(std::string_view name) const noexcept {
    return std::any_of(m_tags.begin(), m_tags.end(), [&](const ProfileTag& tag) { return tag.name == name; });
}

std::string_view CProfileTags::Find(std::string_view name) const noexcept {
    for (const ProfileTag& tag : m_tags) {
        if (tag.name == name && Holds(m_strFile, tag.offset, tag.length)) {
            return m_strFile.substr(tag.offset, tag.length);
        }
    }
    return {};
}

void CProfileTags::ReadList(FileFindings& findings) {
    const std::uint32_t count = Word32At(m_strFile, kHeaderSize);
    if (count == 0 || count > kMostTags) {
        findings.push_back({Cause::TagTableDamaged, "its list of tags says that it has " + std::to_string(count)});
        return;
    }
    if (!Holds(m_strFile, kList, count * kTagEntry)) {
        findings.push_back({Cause::Truncated, "it ends within its list of tags"});
        return;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const std::string_view entry = m_strFile.substr(kList + i * kTagEntry, kTagEntry);
        const std::string name(entry.substr(0, 4));
        const std::size_t offset = Word32At(entry, 4);
        if (!std::all_of(name.begin(), name.end(), [](char letter) { return letter >= 0x20 && letter < 0x7F; })) {
            findings.push_back(
                {Cause::TagTableDamaged, "entry " + std::to_string(i + 1) + " of its list of tags has no name"});
            m_tags.clear();
            return;
        }
        if (Lists(name)) {
            findings.push_back({Cause::TagTwice, "tag " + Quoted(name)});
        }
        m_tags.push_back({name, offset, Word32At(entry, 8)});
    }
}

void CProfileTags::CheckPlaces(FileFindings& findings) const {
    const std::size_t size = Word32At(m_strFile, 0);
    const std::size_t listEnd = kList + m_tags.size() * kTagEntry;
    std::size_t end = listEnd;
    bool astray = false;
    for (const ProfileTag& tag : m_tags) {
        // Beyond what the header says, and not only beyond what there is of it.
        if (tag.offset < listEnd || tag.offset + tag.length > std::max(size, m_strFile.size())) {
            findings.push_back({Cause::TagOutside, "tag " + Quoted(tag.name) + " lies at bytes " +
                                                       std::to_string(tag.offset) + " to " +
                                                       std::to_string(tag.offset + tag.length) + " of " +
                                                       std::to_string(m_strFile.size())});
            astray = true;
        } else {
            end = std::max(end, tag.offset + tag.length);
        }
    }
    if (end > m_strFile.size()) {
        findings.push_back({Cause::Truncated,
                            "it has " + std::to_string(m_strFile.size()) + " of " + std::to_string(size) + " bytes"});
    } else if (size > m_strFile.size() || (size < end && !astray)) {
        // Padding at the end may be missing, but no more.
        constexpr std::size_t kPadding = 3;
        if (size < end || size - m_strFile.size() > kPadding) {
            findings.push_back({Cause::ProfileHeader, "its header says that it has " + std::to_string(size) +
                                                          " bytes, not " + std::to_string(m_strFile.size())});
        }
    } else if (size < m_strFile.size()) {
        findings.push_back(
            {Cause::ProfileLength, "it has " + std::to_string(m_strFile.size() - size) + " bytes behind its end"});
    }
}

void CProfileTags::CheckHeader(FileFindings& findings) const {
    const auto malformed = [&](const std::string& what) { findings.push_back({Cause::ProfileHeader, what}); };
    if (MajorVersion() != 2 && MajorVersion() != 4) {
        findings.push_back({Cause::ProfileVersion, "it is of version " + std::to_string(MajorVersion())});
    }
    const bool isKnown = std::find(kClasses.begin(), kClasses.end(), Class()) != kClasses.end();
    if (!isKnown) {
        malformed("its class " + Quoted(Class()) + " is not known");
    }
    if (ChannelsOf(ColourSpace()) == 0) {
        malformed("its colour space " + Quoted(ColourSpace()) + " is not known");
    }
    const std::string_view connection = ConnectionSpace();
    if (Class() == "link" ? ChannelsOf(connection) == 0 : connection != "XYZ " && connection != "Lab ") {
        malformed("its connection space " + Quoted(connection) + " is none");
    }
    constexpr std::uint32_t kLastIntent = 3;
    if ((Word32At(m_strFile, 64) & 0xFFFF) > kLastIntent) {
        malformed("its rendering intent is not known");
    }
    // The illuminant of the connection space is D50, whatever the device's own white.
    constexpr std::array<double, 3> kD50{0.9642, 1.0, 0.8249};
    constexpr double kTolerance = 0.005;
    for (std::size_t i = 0; i < kD50.size(); ++i) {
        if (std::abs(FixedAt(m_strFile, 68 + i * 4) - kD50[i]) > kTolerance) {
            findings.push_back({Cause::Illuminant, "the illuminant in its header is not D50"});
            break;
        }
    }
    // Its own digest, with the three fields of the header left out that may change.
    const std::string_view kept = m_strFile.substr(84, 16);
    if (MajorVersion() == 4 && kept.find_first_not_of('\0') != std::string_view::npos &&
        Word32At(m_strFile, 0) == m_strFile.size()) {
        std::string bytes(m_strFile);
        bytes.replace(44, 4, 4, '\0');
        bytes.replace(64, 4, 4, '\0');
        bytes.replace(84, 16, 16, '\0');
        std::string hexadecimal;
        for (const char byte : kept) {
            constexpr std::string_view kDigits = "0123456789abcdef";
            hexadecimal += kDigits[static_cast<unsigned char>(byte) >> 4];
            hexadecimal += kDigits[static_cast<unsigned char>(byte) & 0xF];
        }
        if (Md5Of(bytes) != hexadecimal) {
            findings.push_back({Cause::ProfileDigest, "its ID is not that of its content"});
        }
    }
}
