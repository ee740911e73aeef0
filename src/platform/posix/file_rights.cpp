// The new file begins as one of the saving user that nobody else may open. In this order:
//
//   owner and group       while nobody else may open it
//   extended attributes   while nobody but its owner may
//   access control list   in one step with the permissions that belong to it; or none, and one that the folder handed
//                         down is taken off while the permissions of the group, which bound it, are none
//   permissions

#include "file_rights.h"

#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <new>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

namespace platform {

namespace {

constexpr const char* kAccessList = "system.posix_acl_access";

/// A call failed because the system did, as opposed to one that it does not allow or does not know.
struct CallFailed {
    explicit CallFailed(const char* call) noexcept : reason(CReason::OfCall(call, static_cast<std::uint32_t>(errno))) {}
    CReason reason;
};

/// Whether a call was allowed.
bool IsAllowed(const char* call, ssize_t result) {
    if (result < 0 && (errno == EIO || errno == ENOSPC || errno == EDQUOT || errno == ENOMEM || errno == EROFS)) {
        throw CallFailed(call);
    }
    return result >= 0;
}

/// The file, or its file system, does not have an attribute.
bool IsLacking(int error) noexcept { return error == ENODATA || error == ENOTSUP; }

/// None, and errno, when it may not be read.
std::optional<std::string> ReadAttribute(int file, const char* name) {
    std::string value;
    ssize_t size = fgetxattr(file, name, nullptr, 0);
    if (size > 0) {
        value.resize(static_cast<std::size_t>(size));
        size = fgetxattr(file, name, value.data(), value.size());
    }
    if (!IsAllowed("fgetxattr", size)) {
        return std::nullopt;
    }
    value.resize(static_cast<std::size_t>(size));
    return value;
}

bool SetAttribute(int file, const char* name, const std::string& value) {
    return IsAllowed("fsetxattr", fsetxattr(file, name, value.data(), value.size(), 0));
}

/// Whether an attribute has a part in who may open the file, as labels of the system's have.
bool GuardsAccess(std::string_view name) noexcept {
    return !name.starts_with("user.") && !name.starts_with("trusted.");
}

/// The list has a way of its own; checksums of the old contents are not those of the new ones.
bool IsCopied(std::string_view name) noexcept {
    return name != kAccessList && name != "security.ima" && name != "security.evm";
}

/// Copies the extended attributes but for the access control list. False when one is lost that guards the file.
bool CopyAttributes(int original, int replacement) {
    std::string names;
    ssize_t size = flistxattr(original, nullptr, 0);
    if (size > 0) {
        names.resize(static_cast<std::size_t>(size));
        size = flistxattr(original, names.data(), names.size());
    }
    if (!IsAllowed("flistxattr", size)) {
        return IsLacking(errno);
    }
    names.resize(static_cast<std::size_t>(size));
    bool bGuarded = true;
    for (std::size_t at = 0; at < names.size(); at += std::strlen(names.c_str() + at) + 1) {
        const char* const name = names.c_str() + at;
        if (IsCopied(name)) {
            const std::optional<std::string> value = ReadAttribute(original, name);
            const bool bKept = value.has_value() && SetAttribute(replacement, name, *value);
            bGuarded = bGuarded && (bKept || !GuardsAccess(name));
        }
    }
    return bGuarded;
}

/// Whether the new file has the owner and the group of the other one.
struct Ownership {
    bool bOwner = true;
    bool bGroup = true;
};

constexpr auto kSameOwner = static_cast<uid_t>(-1);
constexpr auto kSameGroup = static_cast<gid_t>(-1);

struct stat StatusOf(int file) {
    struct stat status = {};
    if (fstat(file, &status) != 0) {
        throw CallFailed("fstat");
    }
    return status;
}

/// Gives the file to an owner, a group, both or neither.
Ownership SetOwnership(int file, uid_t owner, gid_t group) {
    if (IsAllowed("fchown", fchown(file, owner, group))) {
        return {owner != kSameOwner, group != kSameGroup};
    }
    IsAllowed("fchown", fchown(file, kSameOwner, group));
    const struct stat status = StatusOf(file);
    return {status.st_uid == owner, status.st_gid == group};
}

/// Sets the access control list, or takes off what the folder handed down where there is none. False when it is lost:
/// it speaks of an owner and a group, and means nothing without both.
bool SetAccessList(int file, const FileRights& rights, bool bOwnershipKept) {
    if (rights.accessList.has_value() && bOwnershipKept) {
        return SetAttribute(file, kAccessList, *rights.accessList);
    }
    const bool bRemoved = IsAllowed("fremovexattr", fremovexattr(file, kAccessList)) || IsLacking(errno);
    return rights.bListRead && !rights.accessList.has_value() && bRemoved;
}

FileRights ReadRights(int file) {
    const struct stat status = StatusOf(file);
    FileRights rights{status.st_dev, status.st_ino, status.st_uid, status.st_gid, status.st_mode, {}, true};
    rights.accessList = ReadAttribute(file, kAccessList);
    rights.bListRead = rights.accessList.has_value() || IsLacking(errno);
    return rights;
}

void CopyRights(int original, int replacement, std::optional<FileRights>& known) {
    const FileRights rights = ReadRights(original);
    FileRights most = known.has_value() && !known->AreOfSameFile(rights) ? *known : rights;
    const Ownership kept = SetOwnership(replacement, rights.owner == most.owner ? rights.owner : kSameOwner,
                                        rights.group == most.group ? rights.group : kSameGroup);
    const bool bLabelled = CopyAttributes(original, replacement);
    const bool bSameList = rights.HaveListOf(most);
    const bool bListed = SetAccessList(replacement, rights, bSameList && kept.bOwner && kept.bGroup) && bSameList;
    const mode_t mode = SharedMode(rights.mode & most.mode, kept.bOwner, kept.bGroup);
    if (fchmod(replacement, bLabelled && bListed ? mode : mode & S_IRWXU) != 0) {
        throw CallFailed("fchmod");
    }
    if (known.has_value()) {
        const struct stat status = StatusOf(replacement);
        most.device = status.st_dev;
        most.file = status.st_ino;
        known = std::move(most);
    }
}

} // namespace

mode_t SharedMode(mode_t mode, bool bOwnerKept, bool bGroupKept) noexcept {
    constexpr mode_t kAll = 07;
    constexpr mode_t kReadAndWrite = 06;
    const mode_t owner = (mode >> 6U) & kAll;
    const mode_t group = (mode >> 3U) & kAll;
    const mode_t others = mode & kAll;
    // Who is the owner no longer may be of the group or of the others, and so may those of the old group.
    const mode_t most = bOwnerKept ? kAll : owner;
    const mode_t newOwner = bOwnerKept ? owner : kReadAndWrite;
    const mode_t newGroup = bGroupKept ? group & most : group & others & most;
    const mode_t newOthers = bGroupKept ? others & most : newGroup;
    const mode_t special = mode & (S_ISVTX | (bOwnerKept ? S_ISUID : 0U) | (bGroupKept ? S_ISGID : 0U));
    return special | newOwner << 6U | newGroup << 3U | newOthers;
}

std::optional<FileRights> RightsOf(const CFile& file, CReason* reason) {
    try {
        return ReadRights(file.Descriptor());
    } catch (CallFailed& failed) {
        GiveReason(reason, std::move(failed.reason));
    }
    return std::nullopt;
}

bool CarryRightsOver(const CFile& original, const CFile& replacement, CReason* reason,
                     std::optional<FileRights>& known) noexcept {
    try {
        CopyRights(original.Descriptor(), replacement.Descriptor(), known);
        return true;
    } catch (CallFailed& failed) {
        GiveReason(reason, std::move(failed.reason));
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
    }
    return false;
}

} // namespace platform
