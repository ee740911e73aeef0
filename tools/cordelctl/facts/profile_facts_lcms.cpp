// Reads ICC profiles with Little CMS.

#include "profile_facts.h"

#include "lcms_handles.h"
#include "platform/utf8.h"

#include <memory>
#include <stdexcept>

namespace {

/// The four letters of a signature, without the blanks that fill it up.
std::string Letters(cmsUInt32Number signature) {
    std::string text;
    for (int shift = 24; shift >= 0; shift -= 8) {
        text += static_cast<char>((signature >> shift) & 0xFF);
    }
    text.erase(text.find_last_not_of(' ') + 1);
    return text;
}

std::string Information(cmsHPROFILE profile, cmsInfoType type) {
    const cmsUInt32Number size = cmsGetProfileInfo(profile, type, "en", "US", nullptr, 0);
    std::wstring wide(size / sizeof(wchar_t) + 1, L'\0');
    cmsGetProfileInfo(profile, type, "en", "US", wide.data(), size);
    std::u16string text; // one unit in each wide character, whatever its width
    for (const wchar_t unit : wide) {
        if (unit == L'\0') {
            break;
        }
        // Of 8-bit text the reader hands out bytes above 127 as negative numbers.
        text += static_cast<char16_t>(unit < 0 ? unit & 0xFF : unit);
    }
    return Utf16ToUtf8(text);
}

} // namespace

ProfileFacts ReadProfileFacts(const std::filesystem::path& path) {
    const ProfileHandle profile(cmsOpenProfileFromFile(path.string().c_str(), "r"));
    if (profile == nullptr) {
        throw std::runtime_error("it is damaged, or is no ICC profile");
    }
    return {Information(profile.get(), cmsInfoDescription),  Letters(cmsGetColorSpace(profile.get())),
            Letters(cmsGetDeviceClass(profile.get())),       Information(profile.get(), cmsInfoCopyright),
            Information(profile.get(), cmsInfoManufacturer), Information(profile.get(), cmsInfoModel)};
}
