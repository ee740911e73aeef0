// Files behind symbolic links.

#pragma once

#include "file_opening.h"
#include "platform/reason.h"

#include <string>

namespace platform {

/// Opens what `path` leads to, and makes `path` the one behind all links. A link at the end of a path is followed when
/// it is the user's or the system administrator's, or leads to a file of the link's own owner: in a folder that others
/// may write to, nobody can prepare a link through which a save would write a file that is not theirs. Where it cannot
/// be opened, the file is not open; `reason`, where one is wanted, says why. Throws std::bad_alloc.
CFile OpenBehindLinks(const CFileOpener& opener, std::string& path, int flags, CReason* reason);

} // namespace platform
