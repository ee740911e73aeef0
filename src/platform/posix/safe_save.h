// Replacing a file in one step.

#pragma once

#include "file_rights.h"
#include "platform/last_look.h"
#include "platform/reason.h"

#include <functional>
#include <optional>
#include <string_view>

namespace platform {

/// Takes the next piece of what a file is to hold.
using PieceSink = std::function<void(std::string_view piece)>;

/// Passes what a file is to hold to a sink, piece by piece, and the same however often it is called. False: it shall
/// not be written. Throws nothing.
using ContentsProducer = std::function<bool(const PieceSink& sink)>;

/// Replaces the contents of a file that exists. Whatever happens, the file holds its old contents or the new ones: the
/// new ones are written to a temporary file beside it that nobody else may open, flushed to disk and renamed over it.
/// Each piece is one call to the system, and on its way to the disk while the next one is made. Owner, group,
/// permissions, access control list and extended attributes are kept where the process may, and nobody may ever do more
/// than before; a symbolic link stays one, and its target is replaced. Temporary files that killed processes left
/// behind are removed. Only where the folder does not take a new file in the place of the old one is the file written
/// in place, after its space is reserved, and only when it has no other name. A write beyond the process's limit of
/// file sizes fails without a signal. Of processes that save the same file at the same time the last one wins; in place
/// they take turns, and one that does not get its turn within a second fails. `isAsLoaded` is asked immediately before
/// the rename, or before the first byte in place. `known`, where it is given and not none, is what the contents were
/// open to until now: a file that somebody has put in the place of the one they came from does not open them to more.
/// Afterwards it is what they are open to. False: the file is as it was, unless writing in place failed; `reason`,
/// where one is wanted, says why.
bool ReplaceContents(const char* path, const ContentsProducer& produceContents, CReason* reason = nullptr,
                     const LastLook& isAsLoaded = {}, std::optional<FileRights>* known = nullptr) noexcept;

} // namespace platform
