// Whether a colour profile will work on a printer.

#pragma once

#include "file_finding.h"

#include <string>
#include <string_view>

/// `slots` is the kind of slots that it shall go into ("0" RGB sources, "2" printers, "3" linked profiles), or empty.
FileFindings VerifyProfile(std::string_view file, const std::string& slots = {});
