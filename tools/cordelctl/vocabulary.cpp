// The containers of the documents and the attributes of their rows, as far as the library knows them.

#include "vocabulary.h"

#include <algorithm>

const std::array<std::string_view, 28> kPclSettings{
    "CMFORMFEED",        "CMRESET",          "CMPAPERSIZE",      "CMVERTMOTIONIDX",   "CMLINESPACING",
    "CMTOPMARGIN",       "CMTEXTLENGTH",     "CMOUTPUTBIN",      "CMPAPERTRAY",       "CMPERFORATIONSKIP",
    "CMORIENTATION",     "CMSIMPLEXDUPLEX",  "CMJOBSEPARATION",  "CMLEFTOFFSETREG",   "CMCOPIES",
    "CMTOPOFFSETREG",    "CMDUPLEXPAGESIDE", "CMPRINTDIRECTION", "CMPAGELENGTH",      "CMCONFIG_IMG_DATA",
    "CMSET_VIEW_ILLUM",  "CMDRV_CONFIG",     "CMRENDER_ALGO",    "CMPALETTE_CTRL_ID", "CMPALETTE_CTRL",
    "CMMONO_PRINT_MODE", "CMPUSHPOP_CHECK",  "CMFRAGMENT_CHECK"};

namespace {

constexpr std::string_view kStorage[] = {"StorageName", "Volume", "TotalSpace", "FreeSpace",
                                         "Location",    "Label",  "Status"};
constexpr std::string_view kSendProject[] = {"Volume", "FilesSize", "FreeSpace", "FreeSpaceAfterSend"};
constexpr std::string_view kDisk[] = {"Image", "Partition", "Size", "Percent"};
constexpr std::string_view kFlash[] = {"Image", "Partition", "Size"};
constexpr std::string_view kName[] = {"Name"};
constexpr std::string_view kFiles[] = {"LocalPath", "Path",   "FileID", "Component",  "ID",
                                       "Type",      "Volume", "Size",   "CreateDate", "checked"};
constexpr std::string_view kFileID[] = {"FileID"};
constexpr std::string_view kIDArray[] = {"IDArray"};
constexpr std::string_view kJobs[] = {"Name", "ID", "Type", "Copies", "Stored", "checked"};
constexpr std::string_view kProject[] = {"Name", "Volume"};
constexpr std::string_view kTitle[] = {"Title"};
constexpr std::string_view kIDValue[] = {"ID", "Value"};

constexpr Container kContainers[] = {
    {"Storage", kStorage},
    {"SendProject", kSendProject},
    {"CurrentDisk", kDisk},
    {"DefaultDisk", kDisk},
    {"CurrentFlash", kFlash},
    {"DefaultFlash", kFlash},
    {"CurrentChosePartition", kName},
    {"Files", kFiles},
    {"Property", kFileID},
    {"PCLCurrentSetting", kPclSettings},
    {"RGBSource", kIDArray},
    {"PrinterProfile", kIDArray},
    {"LinkedProfile", kIDArray},
    {"Jobs", kJobs},
    {"Project", kProject},
    {"Main", kTitle},
    {"ProjectFilter", kIDValue},
};

} // namespace

const Container* FindContainer(std::string_view name) noexcept {
    const auto* const found = std::find_if(std::begin(kContainers), std::end(kContainers),
                                           [name](const Container& container) { return container.name == name; });
    return found != std::end(kContainers) ? found : nullptr;
}
