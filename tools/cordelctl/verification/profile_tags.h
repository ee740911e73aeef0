// The header of a colour profile and the tags in it.

#pragma once

#include "file_finding.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct ProfileTag {
    std::string name;
    std::size_t offset;
    std::size_t length;
};

/// Refers to the bytes of the file.
class CProfileTags {
public:
    /// Adds what is wrong with the header and the list of tags. Without the list there are no tags.
    CProfileTags(std::string_view file, FileFindings& findings);

    bool IsReadable() const noexcept { return !m_tags.empty(); }
    std::string_view File() const noexcept { return m_strFile; }
    unsigned int MajorVersion() const noexcept;
    std::string_view Class() const noexcept;
    std::string_view ColourSpace() const noexcept;
    std::string_view ConnectionSpace() const noexcept;

    const std::vector<ProfileTag>& All() const noexcept { return m_tags; }
    bool Lists(std::string_view name) const noexcept;
    /// The bytes of the tag; nothing when it is not listed, or does not lie within the file.
    std::string_view Find(std::string_view name) const noexcept;

private:
    void ReadList(FileFindings& findings);
    void CheckPlaces(FileFindings& findings) const;
    void CheckHeader(FileFindings& findings) const;

    std::string_view m_strFile;
    std::vector<ProfileTag> m_tags;
};

/// How many channels a colour space has; 0 for one that is not known.
unsigned int ChannelsOf(std::string_view colourSpace) noexcept;
