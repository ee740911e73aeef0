// The IDs under which a printer stores files.

#include "file_ids.h"

#include "failure.h"
#include "file_list.h"
#include "lookup.h"

#include <cstdlib>

IdCheck CheckEditedFile() {
    IdCheck check;
    check.fileID = ToText(GetAttrValue("Property", "FileID"));
    int32_t kind = -1;
    MessageWindows windows{};
    check.clash = CheckID(&check.id, &kind, &windows) == 0;
    check.group = kind == 0 ? "fonts" : kind == 1 ? "macros" : kind == 2 ? "overlays" : "none";
    return check;
}

int32_t NextFreeID(const std::string& type, const std::string& profileType) {
    if (type == "6") {
        const int32_t slot = GetAvailICMID(static_cast<uint32_t>(std::strtoul(profileType.c_str(), nullptr, 10)));
        if (slot == 0) {
            throw CFailure(ExitCode::Refused, "no slot for a colour profile of this kind is free",
                           "the slots stand in IDArray of RGBSource, PrinterProfile and LinkedProfile");
        }
        return slot;
    }
    const int32_t id = type == "1" || type == "5" ? GetValidID(0) : type == "2" ? GetValidID(1) : LowestFreeID(type);
    if (id < 0) {
        throw CFailure(ExitCode::Refused, "all IDs from 0 to 32767 are taken in this group");
    }
    return id;
}
