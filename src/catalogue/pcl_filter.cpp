// The PCL filter settings.

#include "cordelbox.h"
#include "platform/bounded_text.h"

#include <iterator>

namespace {

/// In the order of the host's slots, which is part of the interface.
constexpr const char* kSettings[] = {"CMFORMFEED",       "CMRESET",           "CMPAPERSIZE",     "CMVERTMOTIONIDX",
                                     "CMLINESPACING",    "CMTOPMARGIN",       "CMTEXTLENGTH",    "CMOUTPUTBIN",
                                     "CMPAPERTRAY",      "CMPERFORATIONSKIP", "CMORIENTATION",   "CMSIMPLEXDUPLEX",
                                     "CMJOBSEPARATION",  "CMLEFTOFFSETREG",   "CMCOPIES",        "CMTOPOFFSETREG",
                                     "CMDUPLEXPAGESIDE", "CMPRINTDIRECTION",  "CMPAGELENGTH",    "CMCONFIG_IMG_DATA",
                                     "CMSET_VIEW_ILLUM", "CMDRV_CONFIG",      "CMRENDER_ALGO",   "CMPALETTE_CTRL_ID",
                                     "CMPALETTE_CTRL",   "CMMONO_PRINT_MODE", "CMPUSHPOP_CHECK", "CMFRAGMENT_CHECK"};

static_assert(std::size(kSettings) == 28);

} // namespace

uint32_t ReadPCLFilter(int32_t settings[28]) noexcept {
    if (settings == nullptr) {
        return 1;
    }
    for (const char* const setting : kSettings) {
        *settings++ = platform::LenientInteger(GetAttrValue("PCLCurrentSetting", setting).c_str());
    }
    return 1;
}
