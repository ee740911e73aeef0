#include "catalogue/pcl_settings.h"

#include "nodes/attribute_values.h"
#include "platform/bounded_text.h"
#include "store/module_state.h"

const char* const kPclSettings[kPclSettingCount] = {
    "CMFORMFEED",        "CMRESET",          "CMPAPERSIZE",      "CMVERTMOTIONIDX",   "CMLINESPACING",
    "CMTOPMARGIN",       "CMTEXTLENGTH",     "CMOUTPUTBIN",      "CMPAPERTRAY",       "CMPERFORATIONSKIP",
    "CMORIENTATION",     "CMSIMPLEXDUPLEX",  "CMJOBSEPARATION",  "CMLEFTOFFSETREG",   "CMCOPIES",
    "CMTOPOFFSETREG",    "CMDUPLEXPAGESIDE", "CMPRINTDIRECTION", "CMPAGELENGTH",      "CMCONFIG_IMG_DATA",
    "CMSET_VIEW_ILLUM",  "CMDRV_CONFIG",     "CMRENDER_ALGO",    "CMPALETTE_CTRL_ID", "CMPALETTE_CTRL",
    "CMMONO_PRINT_MODE", "CMPUSHPOP_CHECK",  "CMFRAGMENT_CHECK"};

void ReadPclSettings(CXmlObject* document, int32_t* settings) {
    for (const char* const setting : kPclSettings) {
        *settings++ = platform::LenientInteger(ReadValue(document, kPclSettingsElement, setting).c_str());
    }
}

uint32_t ReadPCLFilter(int32_t settings[28]) noexcept {
    if (settings != nullptr) {
        ReadPclSettings(State().currentDocument, settings);
    }
    return 1;
}
