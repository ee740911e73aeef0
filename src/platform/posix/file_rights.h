// What a file lets whom do, carried over to the file that takes its place.

#pragma once

#include "file_opening.h"
#include "platform/reason.h"

#include <sys/stat.h>

namespace platform {

/// Gives a new file, which nobody but this process can open yet, the owner, group, permissions, access control list and
/// extended attributes of another. At no moment and to nobody does the new file grant more than the other one did: what
/// cannot be carried over shrinks to what everybody concerned had. False, with the reason where one is wanted, when
/// the system fails, as opposed to when it does not allow something or does not know it; the new file is of no use
/// then.
bool CarryRightsOver(const CFile& original, const CFile& replacement, CReason* reason) noexcept;

/// The permissions of a file with `mode` when it becomes one of the user who saves it, who could read and write it, or
/// of another group.
mode_t SharedMode(mode_t mode, bool bOwnerKept, bool bGroupKept) noexcept;

} // namespace platform
