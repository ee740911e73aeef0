// A printer's reply to the inquiries of the printer job language about its file system, as it was captured: the table
// of volumes (INFO FILESYS), directory listings (FSDIRLIST) and single entries (FSQUERY), in any number and order, with
// echoes and replies of another kind between them.

#pragma once

#include "reply_error.h"
#include "volume_table.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// A file or folder on the printer.
struct ReplyEntry {
    std::string volume; // "0:"
    std::string path;   // without the volume, parted by slashes
    bool isFolder = false;
    std::int64_t size = 0; // of a file, in bytes
};

/// A folder or file that the printer did not tell about.
struct UnlistedPath {
    std::string volume;
    std::string path;
    std::string reason;
};

struct PrinterReply {
    /// The last table of the capture. Empty when there is none, and when the printer has no file system.
    std::optional<std::vector<ReplyVolume>> volumes;
    bool hasNoFileSystem = false; // it said so
    /// All listings of the capture together; of an entry that is listed twice the later one.
    std::vector<ReplyEntry> entries;
    std::vector<UnlistedPath> unlisted;
};

/// Throws CReplyError, with the line, at the first thing that is not understood, and when there is no such reply at
/// all.
PrinterReply ReadPrinterReply(std::string_view capture);
