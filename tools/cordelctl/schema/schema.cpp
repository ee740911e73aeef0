// What the documents hold.

#include "schema/schema.h"

#include "failure.h"
#include "platform/utf8.h"
#include "system/system.h"
#include "text/nearest.h"
#include "text/number_text.h"

#include <algorithm>
#include <array>

namespace {

constexpr AttributeSchema kStorage[] = {
    {"VolumeNum", "number of volumes of the device; on its first volume only", ValueKind::Number, 255, {}, {}, false},
    {"StorageName", "the device"},
    {"Volume", "the volume"},
    {"TotalSpace", "size of the volume", ValueKind::Bytes},
    {"FreeSpace", "what is free of it", ValueKind::Bytes},
    {"Location", "where the device is built in, as the printer says it"},
    {"Label", "name of the volume, as the printer says it"},
    {"Status", "state of the volume, as the printer says it"},
};

constexpr AttributeSchema kSendProject[] = {
    {"Volume", "the volume"},
    {"FilesSize", "what the ticked files for it take", ValueKind::Bytes},
    {"FreeSpace", "what is free before they are sent", ValueKind::Bytes},
    {"FreeSpaceAfterSend", "what is free afterwards; less than nothing when they do not fit", ValueKind::Number},
};

constexpr AttributeSchema kDisk[] = {
    {"Image", "number of the image", ValueKind::Number, 14},
    {"Partition", "name of the partition; pairs the two layouts"},
    {"Size", "its size", ValueKind::Kibibytes, 14},
    {"Percent", "its share of the disk", ValueKind::Percent, 9},
};

constexpr AttributeSchema kFlash[] = {
    {"Image", "number of the image", ValueKind::Number, 14},
    {"Partition", "name of the partition; pairs the two layouts"},
    {"Size", "its size", ValueKind::Kibibytes, 14},
};

constexpr AttributeSchema kChosen[] = {{"Name", "the partition that the user has chosen"}};

constexpr AttributeSchema kFiles[] = {
    {"FileID", "the key of the file in the list"},
    {"Component", "the component that the file belongs to"},
    {"ID", "number under which the printer stores it; of a profile its slot", ValueKind::Id},
    {"Type", "what the file is", ValueKind::Text, 255,
     "1=bitmap font, 2=macro, 5=TrueType font, 6=colour profile, 8=form overlay"},
    {"Volume", "volume of the printer"},
    {"Path", "path on that volume"},
    {"LocalPath", "path on this computer"},
    {"Size", "its size", ValueKind::Bytes},
    {"CreateDate", "when it was last changed, in UTC"},
    {"checked", "whether it is ticked for sending", ValueKind::Tick},
    {"FontFamilyName", "name of the family", ValueKind::Text, 255, {}, "5"},
    {"TrueTypeTontName", "name of the font; spelt so", ValueKind::Text, 255, {}, "5"},
    {"FontStyle", "style", ValueKind::Text, 255, {}, "5"},
    {"Copyright", "copyright text", ValueKind::Text, 255, {}, "5"},
    {"PostScriptName", "PostScript name", ValueKind::Text, 255, {}, "5"},
    {"SymbolSet", "symbol set", ValueKind::Text, 255, {}, "5"},
    {"BitMapFontName", "name of the font", ValueKind::Text, 255, {}, "1"},
    {"Format", "format of the file", ValueKind::Text, 255, {}, "1"},
    {"Xresolution", "horizontal resolution", ValueKind::Text, 255, {}, "1"},
    {"Yresolution", "vertical resolution", ValueKind::Text, 255, {}, "1"},
    {"FontType", "character set", ValueKind::Text, 255, {}, "1"},
    {"SymbolSet", "symbol set", ValueKind::Text, 255, {}, "1"},
    {"Proportional", "whether the characters have widths of their own", ValueKind::Text, 255, {}, "1"},
    {"PitchWidth", "width of the characters", ValueKind::Text, 255, {}, "1"},
    {"Height", "height", ValueKind::Text, 255, {}, "1"},
    {"Style", "style", ValueKind::Text, 255, {}, "1"},
    {"StrokeWeight", "weight of the strokes", ValueKind::Text, 255, {}, "1"},
    {"TypeFace", "type face", ValueKind::Text, 255, {}, "1"},
    {"EscapeSequence", "what selects the font", ValueKind::Text, 255, {}, "1"},
    {"ICMType", "colours of the profile", ValueKind::Text, 3, "0=RGB, 1=CMYK, 2=grey, 3=other", "6"},
    {"ProfileType", "which slots it takes", ValueKind::Text, 3, "0=RGBSource, 2=PrinterProfile, 3=LinkedProfile", "6"},
    {"ColorSpace", "colour space", ValueKind::Text, 255, {}, "6"},
    {"Description", "what the profile calls itself", ValueKind::Text, 255, {}, "6"},
    {"DeviceClass", "class of the device", ValueKind::Text, 255, {}, "6"},
    {"Copyright", "copyright text", ValueKind::Text, 255, {}, "6"},
    {"Comment", "maker and model; of any length", ValueKind::Text, 0, {}, "6"},
};

constexpr AttributeSchema kProperty[] = {{"FileID", "the file whose properties are being edited"}};

constexpr AttributeSchema kSlots[] = {
    {"IDArray", "one character for each slot, the first for slot 1: 0 and 1 may be used, 2 is in use", ValueKind::Slots,
     0}};

constexpr AttributeSchema kJobs[] = {
    {"Name", "name of the job", ValueKind::Text, 99},
    {"ID", "number of the job", ValueKind::Text, 9},
    {"Type", "type of the job", ValueKind::Text, 9},
    {"Copies", "number of copies", ValueKind::Number, 9},
    {"Stored", "where it is stored: a volume, say", ValueKind::Text, 9},
    {"checked", "whether it is ticked", ValueKind::Tick, 4},
};

constexpr auto kPcl = [] {
    std::array<AttributeSchema, 28> settings{};
    constexpr std::string_view kNames[] = {
        "CMFORMFEED",        "CMRESET",          "CMPAPERSIZE",      "CMVERTMOTIONIDX",   "CMLINESPACING",
        "CMTOPMARGIN",       "CMTEXTLENGTH",     "CMOUTPUTBIN",      "CMPAPERTRAY",       "CMPERFORATIONSKIP",
        "CMORIENTATION",     "CMSIMPLEXDUPLEX",  "CMJOBSEPARATION",  "CMLEFTOFFSETREG",   "CMCOPIES",
        "CMTOPOFFSETREG",    "CMDUPLEXPAGESIDE", "CMPRINTDIRECTION", "CMPAGELENGTH",      "CMCONFIG_IMG_DATA",
        "CMSET_VIEW_ILLUM",  "CMDRV_CONFIG",     "CMRENDER_ALGO",    "CMPALETTE_CTRL_ID", "CMPALETTE_CTRL",
        "CMMONO_PRINT_MODE", "CMPUSHPOP_CHECK",  "CMFRAGMENT_CHECK"};
    for (std::size_t i = 0; i < settings.size(); ++i) {
        settings[i].name = kNames[i];
        settings[i].meaning = "what the PCL filter does with this command or setting";
        settings[i].kind = ValueKind::Number;
    }
    return settings;
}();

constexpr AttributeSchema kMain[] = {{"Title", "caption of the message of a clash"}};

constexpr AttributeSchema kStringTable[] = {
    {"DuplicateID_EditingFile_SendingProject",
     "the message of a clash, with %s for the kind of file and %d for the ID",
     ValueKind::Text,
     255,
     {},
     {},
     false},
    {"FontFile_SPFTTF", "the fonts, as a kind of file", ValueKind::Text, 255, {}, {}, false}};

constexpr AttributeSchema kProjectFilter[] = {{"ID", "code of the type of files"}, {"Value", "its name"}};

constexpr ContainerSchema kContainers[] = {
    {"Files", "the files of the project", "FileID", "WritePrjFile",
     "GetFiles, IsPathConflict, CheckID, IdsAreValid, GetValidID, GetAvailICMID", kFiles, false, false, true},
    {"Property", "the file that is being edited", "", "", "CheckID", kProperty, false, true},
    {"Storage", "one row for each volume of a printer", "Volume", "PrinterInfoProc", "", kStorage},
    {"SendProject", "what sending the ticked files does to each volume", "Volume", "WriteFreeVolume", "", kSendProject},
    {"CurrentDisk", "the partitions of the disk, as they are edited", "Partition", "WritePartition",
     "GetDiskPercent, CopyPatition", kDisk},
    {"DefaultDisk", "the partitions of the disk to fall back on", "Partition", "WritePartition, CopyPatition", "",
     kDisk},
    {"CurrentFlash", "the partitions of the flash memory, as they are edited", "Partition", "WritePartition", "",
     kFlash},
    {"DefaultFlash", "the partitions of the flash memory to fall back on", "Partition", "WritePartition", "", kFlash},
    {"CurrentChosePartition", "the partition that the user has chosen", "", "", "CopyPatition", kChosen, false, true},
    {"PCLCurrentSetting", "the settings of the PCL filter", "", "", "ReadPCLFilter", kPcl, false, true},
    {"RGBSource", "slots for RGB profiles", "", "", "GetAvailICMID", kSlots, false, true},
    {"PrinterProfile", "slots for profiles of the printer", "", "", "GetAvailICMID", kSlots, false, true},
    {"LinkedProfile", "slots for linked profiles", "", "", "GetAvailICMID", kSlots, false, true},
    {"Jobs", "the print jobs that are stored on a printer", "ID", "WriteJobList", "GetJobs", kJobs, false, false, true},
    {"Main", "texts of the main window", "", "", "CheckID, IdsAreValid", kMain, true, true},
    {"StringTable", "texts by name", "", "", "CheckID, IdsAreValid", kStringTable, true, true},
    {"ProjectFilter", "names of the types of files", "ID", "", "CheckID, IdsAreValid", kProjectFilter, true},
};

bool IsNumber(std::string_view text, bool isSigned) {
    if (isSigned && text.starts_with('-')) {
        text.remove_prefix(1);
    }
    return !text.empty() && text.size() <= 19 &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool IsOfKind(ValueKind kind, const std::string& value) {
    switch (kind) {
    case ValueKind::Text:
        return true;
    case ValueKind::Number:
        return IsNumber(value, true);
    case ValueKind::Id:
        return IsPlainNumber(value) && value.size() <= 5 && std::stol(value) <= 32767;
    case ValueKind::Bytes:
    case ValueKind::Kibibytes:
        return IsNumber(value, false);
    case ValueKind::Percent:
        return IsNumber(value, false) && value.size() <= 3 && std::stol(value) <= 100;
    case ValueKind::Tick:
        return value == "0" || value == "1";
    case ValueKind::Slots:
        return value.find_first_not_of("012") == std::string::npos;
    }
    return true;
}

bool IsAllowed(std::string_view allowed, std::string_view value) {
    for (std::size_t begin = 0; begin < allowed.size();) {
        const std::size_t end = std::min(allowed.find(", ", begin), allowed.size());
        const std::string_view entry = allowed.substr(begin, end - begin);
        if (entry.substr(0, entry.find('=')) == value) {
            return true;
        }
        begin = end + 2;
    }
    return allowed.empty();
}

} // namespace

std::span<const ContainerSchema> Containers() noexcept { return kContainers; }

const ContainerSchema* FindContainerSchema(std::string_view name) noexcept {
    const auto* const found = std::find_if(std::begin(kContainers), std::end(kContainers),
                                           [name](const ContainerSchema& container) { return container.name == name; });
    return found != std::end(kContainers) ? found : nullptr;
}

const AttributeSchema* FindAttributeSchema(const ContainerSchema& container, std::string_view name) noexcept {
    const auto found = std::find_if(container.attributes.begin(), container.attributes.end(),
                                    [name](const AttributeSchema& attribute) { return attribute.name == name; });
    return found != container.attributes.end() ? &*found : nullptr;
}

std::string_view DefaultOf(const AttributeSchema& attribute) noexcept {
    switch (attribute.kind) {
    case ValueKind::Number:
        return "0";
    case ValueKind::Slots:
        return "11111111111111111111111111111111"; // all may be used
    default:
        return "";
    }
}

std::string_view NameOf(ValueKind kind) noexcept {
    switch (kind) {
    case ValueKind::Text:
        return "a text";
    case ValueKind::Number:
        return "a number";
    case ValueKind::Id:
        return "a plain number from 0 to 32767";
    case ValueKind::Bytes:
        return "a number of bytes";
    case ValueKind::Kibibytes:
        return "a number of KiB";
    case ValueKind::Percent:
        return "a number from 0 to 100";
    case ValueKind::Tick:
        return "0 or 1";
    case ValueKind::Slots:
        return "a row of 0, 1 and 2";
    }
    return "";
}

void RequireText(const std::string& value, const std::string& what) {
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < value.size();) {
        const bool decoded = DecodeUtf8(value, position, codePoint);
        const bool control = codePoint < 0x20 && codePoint != '\t' && codePoint != '\n' && codePoint != '\r';
        if (!decoded || control || codePoint == 0xFFFE || codePoint == 0xFFFF) {
            throw CFailure(ExitCode::Refused, "a document cannot hold " + what,
                           "leave out control characters, and bytes that are no characters");
        }
    }
    if (!host::IsInCodePage(value)) {
        throw CFailure(ExitCode::Refused, what + " has characters that the system's code page lacks",
                       "hosts would read others in their place");
    }
}

void RequireValue(const AttributeSchema& attribute, const std::string& value) {
    const std::string what = "the value of " + std::string(attribute.name);
    RequireText(value, what);
    if (attribute.longest != 0 && ByteLength(value) > attribute.longest) {
        throw CFailure(ExitCode::Refused,
                       what + " is " + std::to_string(ByteLength(value)) + " bytes long; at most " +
                           std::to_string(attribute.longest) + " fit",
                       "a longer one would stop hosts that read it");
    }
    if (!IsOfKind(attribute.kind, value)) {
        throw CFailure(ExitCode::Refused, what + " cannot be \"" + value + "\"",
                       "give " + std::string(NameOf(attribute.kind)));
    }
    if (!IsAllowed(attribute.allowed, value)) {
        throw CFailure(ExitCode::Refused, what + " cannot be \"" + value + "\"",
                       "give one of: " + std::string(attribute.allowed));
    }
}

std::size_t ByteLength(const std::string& utf8) { return host::ToCodePage(utf8).size(); }

bool IsPlainNumber(std::string_view text) noexcept {
    return !text.empty() && (text == "0" || text.front() != '0') &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}
