// Replacing a file in one step.

#pragma once

#include "platform/reason.h"

#include <functional>
#include <string_view>

namespace platform {

/// Takes the next piece of what a file is to hold.
using PieceSink = std::function<void(std::string_view piece)>;

/// Passes what a file is to hold to a sink, piece by piece, and the same however often it is called. Throws nothing.
using ContentsProducer = std::function<void(const PieceSink& sink)>;

/// Replaces the contents of a file that exists. Whatever happens, the file holds its old contents or the new ones: the
/// new ones are written to a temporary file beside it, flushed to disk and renamed over it. Each piece is one call to
/// the system, and on its way to the disk while the next one is made. Permissions and, where the process may,
/// ownership are kept; a symbolic link stays one, and its target is replaced. A temporary file that a killed
/// process left behind is used up by the next save. Only where the folder takes no new file is the file written in
/// place, after its space is reserved.
/// Processes that save the same file at the same time take turns. False: the file is as it was, unless writing in place
/// failed; `reason`, where one is wanted, says why.
bool ReplaceContents(const char* path, const ContentsProducer& produceContents, CReason* reason = nullptr) noexcept;

} // namespace platform
