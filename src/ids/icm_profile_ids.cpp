#include "ids/icm_profile_ids.h"

#include "ids/file_list_names.h"
#include "nodes/attribute_values.h"
#include "platform/bounded_text.h"
#include "platform/code_page.h"
#include "store/collected_values.h"
#include "store/module_state.h"

#include <algorithm>

namespace {

struct ProfileKind {
    uint32_t kind;
    const char* element;
    const char* profileType;
};

constexpr ProfileKind kKinds[] = {{0, "RGBSource", "0"}, {2, "PrinterProfile", "2"}, {3, "LinkedProfile", "3"}};

constexpr char kInUse = '2';

/// Marks the slots of the listed profiles of a kind; an ID that is no slot is ignored.
void MarkListed(CXmlObject* document, std::string& slots, const AnsiString& profileType) {
    const FileListNames names;
    for (const AnsiString& fileId : CCollectedValues(document, names.files, names.fileId)) {
        CXmlQuery query(names.files, names.id);
        query.AddPair(names.fileId, fileId);
        query.AddPair(names.profileType, profileType);
        if (ReadAttribute(document, &query) != 0) {
            continue;
        }
        const int32_t slot = platform::LenientInteger(query.FirstValue().c_str());
        if (slot >= 1 && static_cast<std::size_t>(slot) <= slots.size()) {
            slots[static_cast<std::size_t>(slot) - 1] = kInUse;
        }
    }
}

} // namespace

std::optional<std::string> ReadIcmSlots(CXmlObject* document, uint32_t kind) {
    const auto* const known = std::find_if(std::begin(kKinds), std::end(kKinds),
                                           [kind](const ProfileKind& entry) { return entry.kind == kind; });
    if (known == std::end(kKinds)) {
        return std::nullopt;
    }
    std::string slots = ReadValue(document, known->element, "IDArray").c_str();
    MarkListed(document, slots, known->profileType);
    return slots;
}

int32_t FindFreeSlot(const std::string& slots) {
    const std::size_t free = std::min(platform::FindCharacter(slots, '0'), platform::FindCharacter(slots, '1'));
    return free != std::string::npos ? static_cast<int32_t>(free) + 1 : 0;
}

int32_t GetAvailICMID(uint32_t kind) noexcept {
    const std::optional<std::string> slots = ReadIcmSlots(State().currentDocument, kind);
    return slots.has_value() ? FindFreeSlot(*slots) : 0;
}
