// What a file lets whom do, carried over to the file that takes its place.

#pragma once

#include "file_opening.h"
#include "platform/reason.h"

#include <sys/stat.h>

#include <optional>
#include <string>

namespace platform {

/// What a file lets whom do at some moment, and which file it was.
struct FileRights {
    dev_t device = 0;
    ino_t file = 0;
    uid_t owner = 0;
    gid_t group = 0;
    mode_t mode = 0;
    std::optional<std::string> accessList; // none: the permissions say it all
    bool bListRead = true;                 // false: there may be a list that the process may not read

    bool AreOfSameFile(const FileRights& other) const noexcept { return device == other.device && file == other.file; }
    bool HaveListOf(const FileRights& other) const noexcept {
        return bListRead && other.bListRead && accessList == other.accessList;
    }

    /// Whether somebody may do more by these rights than by the others, as far as that can be told without knowing who
    /// is in which group.
    bool MayGiveMoreThan(const FileRights& other) const noexcept {
        return owner != other.owner || group != other.group || (mode & ~other.mode) != 0 || !HaveListOf(other);
    }
};

/// None when the system fails; `reason`, where one is wanted, says how. Throws std::bad_alloc.
std::optional<FileRights> RightsOf(const CFile& file, CReason* reason);

/// Gives a new file, which nobody but this process can open yet, the owner, group, permissions, access control list and
/// extended attributes of another. At no moment and to nobody does the new file grant more than the other one did: what
/// cannot be carried over shrinks to what everybody concerned had. False, with the reason where one is wanted, when
/// the system fails, as opposed to when it does not allow something or does not know it; the new file is of no use
/// then. `known`, where it is not none, is what the contents were open to until now: when the original is
/// another file, somebody has put it there, and what it grants beyond that is not carried over. Becomes that of the new
/// file.
bool CarryRightsOver(const CFile& original, const CFile& replacement, CReason* reason,
                     std::optional<FileRights>& known) noexcept;

/// The permissions of a file with `mode` when it becomes one of the user who saves it, who could read and write it, or
/// of another group.
mode_t SharedMode(mode_t mode, bool bOwnerKept, bool bGroupKept) noexcept;

} // namespace platform
