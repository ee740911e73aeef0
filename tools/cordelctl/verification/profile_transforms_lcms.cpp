// Builds the transforms with Little CMS.

#include "profile_transforms.h"

#include "facts/lcms_handles.h"

namespace {

constexpr const char* kIntents[] = {"perceptual", "relative colorimetric", "saturation", "absolute colorimetric"};

bool CanTransform(cmsHPROFILE from, cmsUInt32Number fromFormat, cmsHPROFILE to, cmsUInt32Number toFormat,
                  cmsUInt32Number intent) {
    const TransformHandle transform(
        cmsCreateTransform(from, fromFormat, to, toFormat, intent, cmsFLAGS_NOOPTIMIZE | cmsFLAGS_NOCACHE));
    return transform != nullptr;
}

} // namespace

std::string FailingTransform(std::string_view file) {
    const ProfileHandle profile(cmsOpenProfileFromMem(file.data(), static_cast<cmsUInt32Number>(file.size())));
    if (profile == nullptr) {
        return "the colour engine cannot open it";
    }
    const cmsProfileClassSignature kind = cmsGetDeviceClass(profile.get());
    if (kind == cmsSigNamedColorClass) {
        return ""; // names of colours are looked up, not turned
    }
    const cmsUInt32Number device = cmsFormatterForColorspaceOfProfile(profile.get(), 2, FALSE);
    if (kind == cmsSigLinkClass) {
        const cmsUInt32Number target = cmsFormatterForPCSOfProfile(profile.get(), 2, FALSE);
        return CanTransform(profile.get(), device, nullptr, target, INTENT_PERCEPTUAL) ? "" : "from device to device";
    }
    const ProfileHandle lab(cmsCreateLab4Profile(nullptr));
    for (cmsUInt32Number intent = 0; intent < std::size(kIntents); ++intent) {
        if (!CanTransform(profile.get(), device, lab.get(), TYPE_Lab_16, intent)) {
            return std::string("from the device's colours, ") + kIntents[intent];
        }
        if (kind != cmsSigInputClass && kind != cmsSigAbstractClass &&
            !CanTransform(lab.get(), TYPE_Lab_16, profile.get(), device, intent)) {
            return std::string("to the device's colours, ") + kIntents[intent];
        }
    }
    return "";
}
