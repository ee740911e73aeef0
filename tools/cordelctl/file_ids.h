// The IDs under which a printer stores files: the next free one of a group, and the check of an edited file.

#pragma once

#include <cstdint>
#include <string>

struct IdCheck {
    std::string fileID;
    int32_t id = 0;
    std::string group; // "fonts", "macros", "overlays", or "none" when such a file is not checked
    bool clash = false;
};

/// Checks the file that "Property" names. A clash is shown as the library shows it.
IdCheck CheckEditedFile();

/// The lowest free ID for a file of this type, or slot when it is a profile (`profileType` as in its row). Throws when
/// there is none.
int32_t NextFreeID(const std::string& type, const std::string& profileType);
