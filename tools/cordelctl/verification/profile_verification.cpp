#include "profile_verification.h"

#include "profile_content.h"
#include "profile_tags.h"
#include "profile_transforms.h"

namespace {

struct SlotKind {
    const char* code;
    const char* name;
};
constexpr SlotKind kSlotKinds[] = {{"0", "RGB sources"}, {"2", "printers"}, {"3", "linked profiles"}};

bool SuitsSlots(const CProfileTags& profile, const std::string& slots) {
    const std::string_view kind = profile.Class();
    return slots == "0"   ? profile.ColourSpace() == "RGB " && (kind == "mntr" || kind == "scnr" || kind == "spac")
           : slots == "2" ? kind == "prtr"
                          : kind == "link";
}

} // namespace

FileFindings VerifyProfile(std::string_view file, const std::string& slots) {
    FileFindings findings;
    const CProfileTags profile(file, findings);
    if (!profile.IsReadable()) {
        return findings;
    }
    CheckRequiredTags(profile, findings);
    CheckTagContent(profile, findings);
    if (!HasError(findings)) {
        const std::string failing = FailingTransform(file);
        if (!failing.empty()) {
            findings.push_back({Cause::TransformImpossible, failing});
        }
    }
    for (const SlotKind& kind : kSlotKinds) {
        if (slots == kind.code && !SuitsSlots(profile, slots)) {
            findings.push_back({Cause::ClassForSlot, "a profile of class \"" + std::string(profile.Class()) +
                                                         "\" and colour space \"" + std::string(profile.ColourSpace()) +
                                                         "\" is none for the slots of " + kind.name});
        }
    }
    return findings;
}
