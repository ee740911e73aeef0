// storage, space: what a printer reports of its devices and volumes, and what sending the ticked files does to them.

#include "failure.h"
#include "records/field_text.h"
#include "replies/file_system_inquiry.h"
#include "storage/send_space.h"
#include "storage/storage_devices.h"
#include "system/terminal.h"
#include "text/number_text.h"
#include "verbs/json_input.h"
#include "verbs/reply_input.h"
#include "verbs/rows.h"
#include "verbs/send_space.h"
#include "verbs/verbs.h"

#include <deque>
#include <limits>
#include <map>
#include <stdexcept>

namespace {

const ContainerSchema& Storage() { return Schema("Storage"); }

constexpr const char* kReportShape =
    R"({"storages": [{"name": "...", "volumes": [{"volume": "0:", "totalSpace": 1000, "freeSpace": 900,
"location": "...", "label": "...", "status": "..."}]}]})";

/// A report as the library takes it, with the memory that it points to.
class CReport {
public:
    explicit CReport(const Value& report) {
        RequireList(report, "storages");
        for (const Value& device : report["storages"].Items()) {
            RequireList(device, "volumes");
            auto& volumes = m_volumes.emplace_back();
            for (const Value& volume : device["volumes"].Items()) {
                volumes.push_back(VolumeOf(volume));
            }
            StorageRecord& record = m_storages.emplace_back();
            FillExactly(record.name, device["name"].Text(), "the name of a device");
            record.volumes = volumes.data();
            record.volumeCount = static_cast<uint32_t>(volumes.size());
        }
        m_info = {m_storages.data(), static_cast<uint32_t>(m_storages.size())};
    }
    CReport(const CReport&) = delete;
    CReport& operator=(const CReport&) = delete;

    const PrinterInfo& Info() const noexcept { return m_info; }

private:
    static void RequireList(const Value& value, const char* name) {
        if (!value[name].IsList()) {
            throw CFailure(ExitCode::Refused,
                           std::string("the report does not have the right shape: there is no list \"") + name + "\"",
                           kReportShape);
        }
    }

    static VolumeRecord VolumeOf(const Value& volume) {
        VolumeRecord record{};
        FillExactly(record.volume, volume["volume"].Text(), "the name of a volume");
        FillExactly(record.totalSpace, volume["totalSpace"].Text(), "the total space of a volume");
        FillExactly(record.freeSpace, volume["freeSpace"].Text(), "the free space of a volume");
        FillExactly(record.location, volume["location"].Text(), "the location of a volume");
        FillExactly(record.label, volume["label"].Text(), "the label of a volume");
        FillExactly(record.status, volume["status"].Text(), "the status of a volume");
        return record;
    }

    std::deque<std::vector<VolumeRecord>> m_volumes;
    std::vector<StorageRecord> m_storages;
    PrinterInfo m_info{};
};

/// How full the volume is, in per cent; null when its sizes are no numbers, or cannot be.
Value Usage(const Row& row) {
    const auto total = ParseSize(row.Value("TotalSpace"));
    const auto free = ParseSize(row.Value("FreeSpace"));
    if (!total || !free || *total == 0 || *free > *total) {
        return {};
    }
    return WholePercent(*total - *free, *total);
}

Result VolumeTable(CDocument& document, const Filter& filter) {
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const Row& row : document.RowsWhere("Storage", filter)) {
        Value volume = DataOf(row);
        volume.Add("used", Usage(row));
        if (ParseSize(row.Value("TotalSpace")) && ParseSize(row.Value("FreeSpace")) && volume["used"].IsNull() &&
            row.Value("TotalSpace") != "0") {
            result.notes.push_back("volume " + row.Value("Volume") + " has more free space than it is large");
        }
        result.data.Append(std::move(volume));
    }
    result.columns = {{"StorageName", "DEVICE", Format::Text}, {"Volume", "VOLUME", Format::Text},
                      {"Label", "LABEL", Format::Text},        {"Location", "LOCATION", Format::Text},
                      {"Status", "STATUS", Format::Text},      {"TotalSpace", "TOTAL", Format::Size},
                      {"FreeSpace", "FREE", Format::Size},     {"used", "USED", Format::Usage}};
    result.names = AttributeNames(Schema("Storage"));
    return result;
}

Result ReportVolumes(Context& context) {
    const std::string file = context.Text("FILE");
    const CReport report(IsJson(ReadInput(file, "the report", std::max(kMostJsonBytes, kMostReplyBytes)))
                             ? ReadJsonInput(file, "the report", kReportShape)
                             : ReportOf(ReadReply(file, "the report")));
    CDocument& document = context.Document();
    if (!context.Has("--add")) {
        document.RemoveAllChildren("Storage");
    }
    const CRowsAdded added = RecordVolumes(document.Object(), report.Info());
    RequireDone(added.m_failure, "the report");
    document.NoteChange();
    Result result = VolumeTable(document, {});
    result.said.push_back(
        Counted(added.m_nAdded, "volume") + " recorded" +
        (added.m_nAlreadyThere == 0 ? "" : ", " + std::to_string(added.m_nAlreadyThere) + " were there already"));
    return result;
}

/// Prints what is to be sent, byte for byte.
Result Inquiry(Context& context) {
    Result result;
    try {
        const std::string inquiry = FileSystemInquiry(context.Texts("FOLDER"));
        result.data = Value::Record{{"inquiry", inquiry}};
        if (!context.Options().json) {
            host::WriteOutput(inquiry);
            result.silent = true;
        }
    } catch (const std::invalid_argument& error) {
        throw CFailure(ExitCode::Usage, error.what());
    }
    return result;
}

/// What the printer holds, as it told.
Result ReadListing(Context& context) {
    const PrinterReply reply = ReadReply(context.Text("FILE"), "the listing");
    Result result;
    result.shape = Result::Shape::Table;
    result.columns = {{"Volume", "VOLUME", Format::Text},
                      {"Path", "PATH", Format::Text},
                      {"kind", "KIND", Format::Text},
                      {"Size", "SIZE", Format::Size}};
    Value::List entries;
    for (const ReplyEntry& entry : reply.entries) {
        entries.push_back(Value::Record{{"Volume", entry.volume},
                                        {"Path", entry.path},
                                        {"kind", entry.isFolder ? "folder" : "file"},
                                        {"Size", entry.isFolder ? Value() : Value(entry.size)}});
    }
    if (entries.empty()) {
        result.notes.emplace_back("the reply lists no files; to ask for them: cordelctl storage inquiry VOLUME:FOLDER");
    }
    for (std::string& note : UnlistedNotes(reply)) {
        result.notes.push_back(std::move(note));
    }
    result.data = std::move(entries);
    return result;
}

Result ListVolumes(Context& context) {
    Result result = VolumeTable(context.Document(), FilterOf(context.Texts("--where")));
    if (result.data.Items().empty()) {
        result.notes.emplace_back("no volumes are recorded");
    }
    return result;
}

Result AddVolume(Context& context) {
    std::vector<Pair> values = GivenValues(context.Args(), Storage());
    const auto given = [&](std::string_view name) -> std::string {
        for (const auto& [attribute, value] : values) {
            if (attribute == name) {
                return value;
            }
        }
        return {};
    };
    const std::string volume = context.Text("VOLUME");
    if (volume.empty()) {
        throw CFailure(ExitCode::Usage, "the VOLUME is empty");
    }
    CDocument& document = context.Document();
    if (!document.RowsWhere("Storage", {{"Volume", volume}}).empty()) {
        throw CFailure(ExitCode::Refused, "a volume " + volume + " is recorded already",
                       "to change it: cordelctl storage edit " + volume);
    }
    std::vector<Pair> row;
    for (const AttributeSchema& attribute : Storage().attributes) {
        if (attribute.name == "Volume") {
            row.emplace_back("Volume", StoredValue(attribute, volume));
        } else if (attribute.name != "VolumeNum") {
            row.emplace_back(attribute.name, given(attribute.name));
        } else if (!given("VolumeNum").empty()) {
            row.emplace_back("VolumeNum", given("VolumeNum"));
        }
    }
    document.AppendRow("Storage", row);
    Result result = VolumeTable(document, {{"Volume", volume}});
    result.said.push_back("added volume " + volume);
    return result;
}

Result EditVolumes(Context& context) {
    const std::vector<Pair> values = GivenValues(context.Args(), Storage());
    if (values.empty()) {
        throw CFailure(ExitCode::Usage, "nothing is to be changed", "see what can be: cordelctl storage edit --help");
    }
    CDocument& document = context.Document();
    std::vector<Row> rows = ChosenRows(context, document, Storage(), "VOLUME");
    EditRows(document, Storage(), rows, values);
    Result result;
    result.data = TableOf(rows).data;
    result.said.push_back(Counted(rows.size(), "volume") + " changed");
    return result;
}

Result RemoveVolumes(Context& context) {
    CDocument& document = context.Document();
    const std::vector<Row> rows = ChosenRows(context, document, Storage(), "VOLUME");
    document.RemoveRows("Storage", rows);
    Result result;
    result.data = TableOf(rows).data;
    result.said.push_back(Counted(rows.size(), "volume") + " removed");
    return result;
}

/// The bytes to send, by volume.
std::map<std::string, int64_t> SizesByVolume(CDocument& document) {
    std::map<std::string, int64_t> sizes;
    for (const Row& file : document.RowsWhere("Files", {{"checked", "1"}})) {
        const int64_t size = RequireSize(file.Value("Size"), "the size of " + file.Value("LocalPath"));
        int64_t& sum = sizes[file.Value("Volume")];
        if (size > std::numeric_limits<int64_t>::max() - sum) {
            throw CFailure(ExitCode::Refused,
                           "the files for volume " + file.Value("Volume") + " are too large to add up");
        }
        sum += size;
    }
    return sizes;
}

Result WriteSpace(Context& context) {
    CDocument& document = context.Document();
    RequireSound(document, "Files");
    const auto sizes = SizesByVolume(document);
    if (context.Has("--for") && context.Text("--for").empty()) {
        throw CFailure(ExitCode::Usage, "the name behind --for is empty");
    }
    CDocument& printer = context.Has("--for") ? context.Printer(context.Text("--for")) : document;
    RequireSound(printer, "Storage");
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    std::vector<SendSpaceRecord> records;
    bool fits = true;
    const auto text = [](const std::string& utf8) {
        const std::string bytes = host::ToCodePage(utf8);
        return AnsiString(bytes.data(), bytes.size());
    };
    for (const auto& [volume, size] : sizes) {
        const int64_t before = FreeSpaceOf(printer, volume);
        const int64_t after = before - size;
        fits = fits && after >= 0;
        records.push_back(
            {text(volume), text(std::to_string(size)), text(std::to_string(before)), text(std::to_string(after))});
        result.data.Append(Value::Record{{"Volume", volume},
                                         {"FilesSize", size},
                                         {"FreeSpace", before},
                                         {"FreeSpaceAfterSend", after},
                                         {"fits", after >= 0}});
    }
    document.RemoveAllChildren("SendProject");
    const CRowsAdded added = RecordSendSpace(document.Object(), records.data(), static_cast<int64_t>(records.size()));
    RequireDone(added.m_failure, "the space");
    document.NoteChange();
    result.columns = {{"Volume", "VOLUME", Format::Text},
                      {"FilesSize", "TO SEND", Format::Size},
                      {"FreeSpace", "FREE", Format::Size},
                      {"FreeSpaceAfterSend", "FREE AFTERWARDS", Format::Size},
                      {"fits", "FITS", Format::Text}};
    if (sizes.empty()) {
        result.notes.emplace_back("no file is ticked, so nothing would be sent");
    }
    if (!fits) {
        result.notes.emplace_back("the ticked files do not fit");
        result.status = ExitCode::No;
    }
    return result;
}

} // namespace

std::vector<Verb> StorageVerbs() {
    const Option where = WhereOption("The volumes with this value; several must all match");
    const Option volumes{Option::Kind::Operands, "VOLUME", "", "Names of volumes", false, Offer::VolumeKeys};
    const Option all{Option::Kind::Flag, "--all", "", "All volumes"};
    std::vector<Option> add = EditOptions(Storage(), {"Volume"});
    add.insert(add.begin(), {Option::Kind::Operand, "VOLUME", "", "Name of the volume", true});
    std::vector<Option> edit = EditOptions(Storage(), {});
    edit.insert(edit.begin(), {volumes, where, all});
    return {
        {"storage report",
         "Record what a printer reports, in place of what it reported before",
         Effect::Changes,
         &ReportVolumes,
         {{Option::Kind::Operand, "FILE", "",
           "The captured reply of the printer, or a report in JSON with sizes in bytes; - for standard input", true,
           Offer::Files},
          {Option::Kind::Flag, "--add", "", "Keep what was reported before; equal volumes are not recorded twice"}},
         kReportShape,
         "cordelctl storage report reply.txt --printer Atrium\ncordelctl storage report report.json --printer Atrium"},
        {"storage inquiry",
         "Print what to send to a printer so that it tells about its volumes and files",
         Effect::None,
         &Inquiry,
         {{Option::Kind::Operands, "FOLDER", "", "Folders whose files are asked for, each as VOLUME:FOLDER"}},
         "What the printer answers is read by storage report, storage listing and plan.",
         "cordelctl storage inquiry 0:fonts 0:macros >inquiry"},
        {"storage listing",
         "Show what a printer's folders hold, as it told",
         Effect::None,
         &ReadListing,
         {{Option::Kind::Operand, "FILE", "", "The captured reply of the printer; - for standard input", true,
           Offer::Files}},
         {},
         "cordelctl storage listing reply.txt"},
        {"storage list",
         "List the volumes",
         Effect::Reads,
         &ListVolumes,
         {where},
         {},
         "cordelctl storage list --all-printers"},
        {"storage add",
         "Record a volume",
         Effect::Changes,
         &AddVolume,
         std::move(add),
         {},
         "cordelctl storage add 3: --storage-name \"Memory card\" --total-space 4G --free-space 4G --printer Atrium"},
        {"storage edit",
         "Change volumes",
         Effect::Changes,
         &EditVolumes,
         std::move(edit),
         {},
         "cordelctl storage edit 0: --free-space 1.5G --printer Atrium"},
        {"storage remove", "Remove volumes", Effect::Changes, &RemoveVolumes, {volumes, where, all}},
        {"space",
         "Work out, record and show what sending the ticked files leaves free",
         Effect::Changes,
         &WriteSpace,
         {{Option::Kind::Text, "--for", "NAME", "Printer whose volumes count; without, those of the same document",
           false, Offer::Printers}},
         {},
         "cordelctl space --for Atrium"},
    };
}
