// What a printer replied, read from a file or from standard input.

#pragma once

#include "replies/printer_reply.h"
#include "value.h"

#include <cstdint>
#include <string>
#include <vector>

/// Most bytes of what a printer replies: that lists some millions of files.
inline constexpr std::uint64_t kMostReplyBytes = std::uint64_t{256} << 20;

/// Throws CFailure (Usage) when it is empty.
void RequireFileName(const std::string& file);

/// The bytes of the file, or of standard input for "-". Throws CFailure (Refused), calling it `what`, also when there
/// are more than `most`.
std::string ReadInput(const std::string& file, const std::string& what, std::uint64_t most);

/// Whether these bytes are JSON, as far as their beginning tells, and not a captured reply.
bool IsJson(const std::string& bytes);

/// Throws CFailure (Refused), with the line, when something in it is not understood.
PrinterReply ReadReply(const std::string& file, const std::string& what);

/// What the printer was asked to list, and did not.
std::vector<std::string> UnlistedNotes(const PrinterReply& reply);

/// The volumes of a reply as a storage report: volumes of one location make a device. Throws CFailure (Refused) when
/// the reply tells of none.
Value ReportOf(const PrinterReply& reply);
