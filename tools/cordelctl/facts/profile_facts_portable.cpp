// Reads ICC profiles from their tags, where Little CMS is not to be had. What it tells is what Little CMS tells.

#include "file_bytes.h"
#include "profile_facts.h"

#include "platform/utf8.h"

#include <algorithm>
#include <array>
#include <map>
#include <stdexcept>

namespace {

constexpr std::size_t kHeaderSize = 128;
constexpr std::uint32_t kMostTags = 100;

using Tags = std::map<std::string, std::string_view>;

/// Whether it is a profile as far as its header tells.
bool IsProfile(std::string_view bytes) {
    constexpr std::array<std::string_view, 7> kClasses = {"scnr", "mntr", "prtr", "link", "abst", "spac", "nmcl"};
    constexpr std::uint32_t kLastVersion = 0x5000000;
    const std::string_view deviceClass = Part(bytes, 12, 4);
    const bool known =
        BigEndian32(deviceClass, 0) == 0 || std::find(kClasses.begin(), kClasses.end(), deviceClass) != kClasses.end();
    return known && BigEndian32(bytes, 8) <= kLastVersion && Part(bytes, 36, 4) == "acsp";
}

/// Tags that do not lie within the profile are left out.
Tags ReadTags(std::string_view bytes) {
    if (!IsProfile(bytes)) {
        throw std::out_of_range("no profile");
    }
    const std::string_view profile = bytes.substr(0, BigEndian32(bytes, 0));
    const std::uint32_t count = BigEndian32(bytes, kHeaderSize);
    if (count > kMostTags) {
        throw std::out_of_range("too many tags");
    }
    Tags tags;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string_view entry = Part(bytes, kHeaderSize + 4 + i * 12, 12);
        const std::size_t offset = BigEndian32(entry, 4);
        const std::size_t length = BigEndian32(entry, 8);
        if (offset + length <= profile.size() &&
            !tags.emplace(entry.substr(0, 4), profile.substr(offset, length)).second) {
            throw std::out_of_range("a tag occurs twice");
        }
    }
    return tags;
}

/// 8-bit text up to its end or its first zero byte.
std::string FromBytes(std::string_view bytes) {
    std::u16string text;
    for (const char byte : bytes.substr(0, bytes.find('\0'))) {
        text += static_cast<char16_t>(static_cast<unsigned char>(byte));
    }
    return Utf16ToUtf8(text);
}

/// Of the languages of a text American English, other English, or else the first.
std::string FromLanguages(std::string_view tag) {
    const std::uint32_t count = BigEndian32(tag, 8);
    constexpr std::size_t kRecordSize = 12;
    if (BigEndian32(tag, 12) != kRecordSize) {
        return "";
    }
    std::string_view best;
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::string_view record = Part(tag, 16 + i * kRecordSize, kRecordSize);
        if (record.substr(0, 4) == "enUS") {
            best = record;
            break;
        }
        if (best.empty() || (record.substr(0, 2) == "en" && best.substr(0, 2) != "en")) {
            best = record;
        }
    }
    if (best.empty()) {
        return "";
    }
    const std::string_view bytes = Part(tag, BigEndian32(best, 8), BigEndian32(best, 4));
    std::u16string text;
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        const auto unit = static_cast<char16_t>(BigEndian16(bytes, i));
        if (unit == 0) {
            break;
        }
        text += unit;
    }
    return Utf16ToUtf8(text);
}

std::string TextOf(const Tags& tags, const char* name) {
    const auto found = tags.find(name);
    if (found == tags.end()) {
        return "";
    }
    const std::string_view tag = found->second;
    try {
        const std::string_view type = Part(tag, 0, 4);
        return type == "mluc"   ? FromLanguages(tag)
               : type == "desc" ? FromBytes(Part(tag, 12, BigEndian32(tag, 8)))
               : type == "text" ? FromBytes(Part(tag, 8, tag.size() - 8))
                                : "";
    } catch (const std::out_of_range&) {
        return "";
    }
}

/// Four letters, without the blanks that fill them up.
std::string Letters(std::string_view letters) {
    return std::string(letters.substr(0, letters.find_last_not_of(' ') + 1));
}

} // namespace

ProfileFacts ReadProfileFacts(const std::filesystem::path& path) {
    const std::string bytes = ReadFileBytes(path);
    try {
        const Tags tags = ReadTags(bytes);
        return {TextOf(tags, "desc"), Letters(Part(bytes, 16, 4)), Letters(Part(bytes, 12, 4)),
                TextOf(tags, "cprt"), TextOf(tags, "dmnd"),        TextOf(tags, "dmdd")};
    } catch (const std::out_of_range&) {
        throw std::runtime_error("it is damaged, or is no ICC profile");
    }
}
