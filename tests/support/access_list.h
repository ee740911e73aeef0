// Access control lists as the system stores them in an extended attribute: a version, and entries of tag, permissions
// and number of a user or group, in the order of the tags.

#pragma once

#include <sys/xattr.h>

#include <cstdint>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

inline constexpr const char* kAccessList = "system.posix_acl_access";
inline constexpr const char* kDefaultAccessList = "system.posix_acl_default"; // what a folder hands down to new files

struct AccessEntry {
    enum Tag : std::uint16_t { Owner = 1, User = 2, OwningGroup = 4, Group = 8, Mask = 16, Others = 32 };
    static constexpr std::uint32_t kNobody = 0xFFFFFFFF;

    Tag tag = Others;
    std::uint16_t permissions = 0;
    std::uint32_t id = kNobody;
};

inline std::string AccessListBytes(const std::vector<AccessEntry>& entries) {
    constexpr std::uint32_t kVersion = 2;
    std::string bytes(reinterpret_cast<const char*>(&kVersion), sizeof kVersion);
    for (const AccessEntry& entry : entries) {
        const std::uint16_t tag = entry.tag;
        bytes.append(reinterpret_cast<const char*>(&tag), sizeof tag);
        bytes.append(reinterpret_cast<const char*>(&entry.permissions), sizeof entry.permissions);
        bytes.append(reinterpret_cast<const char*>(&entry.id), sizeof entry.id);
    }
    return bytes;
}

/// The attribute's bytes; "(none)" when the file does not have it.
inline std::string FileAttribute(const std::filesystem::path& file, const char* name) {
    char value[4096];
    const ssize_t size = ::getxattr(file.c_str(), name, value, sizeof value);
    return size < 0 ? "(none)" : std::string(value, static_cast<std::size_t>(size));
}

/// False where the file system does not know the attribute.
inline bool SetFileAttribute(const std::filesystem::path& file, const char* name, const std::string& value) {
    return ::setxattr(file.c_str(), name, value.data(), value.size(), 0) == 0;
}
