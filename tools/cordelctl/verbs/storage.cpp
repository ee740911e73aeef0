// storage: what a printer reports of its devices and volumes.

#include "verbs.h"

#include "decoration.h"
#include "field_text.h"
#include "lookup.h"
#include "number_text.h"
#include "output.h"
#include "platform/platform.h"
#include "row_index.h"
#include "session.h"

#include <deque>
#include <fstream>
#include <iostream>

namespace {

constexpr const char* kReportShape =
    R"({"storages": [{"name": "...", "volumes": [{"volume": "0:", "totalSpace": 1000, "freeSpace": 900,
"location": "...", "label": "...", "status": "..."}]}]})";

struct Options {
    std::string file;
    bool add = false;
};

/// A report as the library takes it, with the memory that it points to.
class CReport {
public:
    explicit CReport(const Json& report) {
        for (const Json& device : report.at("storages")) {
            auto& volumes = m_volumes.emplace_back();
            for (const Json& volume : device.at("volumes")) {
                volumes.push_back(VolumeOf(volume));
            }
            StorageRecord& record = m_storages.emplace_back();
            FillExactly(record.name, Text(device, "name"), "the name of a device");
            record.volumes = volumes.data();
            record.volumeCount = static_cast<uint32_t>(volumes.size());
        }
        m_info = {m_storages.data(), static_cast<uint32_t>(m_storages.size())};
    }
    CReport(const CReport&) = delete;
    CReport& operator=(const CReport&) = delete;

    const PrinterInfo& Info() const noexcept { return m_info; }

    /// For each volume a value by which its row can be found: one that no other volume has.
    std::vector<RowKey> Keys() const {
        std::vector<const VolumeRecord*> all;
        for (const auto& volumes : m_volumes) {
            for (const auto& volume : volumes) {
                all.push_back(&volume);
            }
        }
        std::vector<RowKey> keys;
        for (const VolumeRecord* const volume : all) {
            keys.push_back(KeyOf(*volume, all));
        }
        return keys;
    }

private:
    static std::string Text(const Json& object, const char* key) {
        const Json value = object.value(key, Json());
        return value.is_string() ? platform::FromUtf8(value.get<std::string>()) : value.is_null() ? "" : value.dump();
    }

    static VolumeRecord VolumeOf(const Json& volume) {
        VolumeRecord record{};
        FillExactly(record.volume, Text(volume, "volume"), "the name of a volume");
        FillExactly(record.totalSpace, Text(volume, "totalSpace"), "the total space of a volume");
        FillExactly(record.freeSpace, Text(volume, "freeSpace"), "the free space of a volume");
        FillExactly(record.location, Text(volume, "location"), "the location of a volume");
        FillExactly(record.label, Text(volume, "label"), "the label of a volume");
        FillExactly(record.status, Text(volume, "status"), "the status of a volume");
        return record;
    }

    static RowKey KeyOf(const VolumeRecord& volume, const std::vector<const VolumeRecord*>& all) {
        const auto isUnique = [&](const char(VolumeRecord::*field)[256]) {
            int count = 0;
            for (const VolumeRecord* const other : all) {
                count += std::string_view(other->*field) == volume.*field ? 1 : 0;
            }
            return count == 1;
        };
        return isUnique(&VolumeRecord::volume)     ? RowKey{"Volume", volume.volume}
               : isUnique(&VolumeRecord::location) ? RowKey{"Location", volume.location}
               : isUnique(&VolumeRecord::label)    ? RowKey{"Label", volume.label}
                                                   : RowKey{"Volume", volume.volume};
    }

    std::deque<std::vector<VolumeRecord>> m_volumes;
    std::vector<StorageRecord> m_storages;
    PrinterInfo m_info{};
};

Json ReadReport(const std::string& file) {
    try {
        if (file == "-") {
            return Json::parse(std::cin);
        }
        std::ifstream stream(platform::PathOf(file), std::ios::binary);
        if (!stream) {
            throw CFailure(ExitCode::Refused, "the report " + file + " cannot be opened");
        }
        return Json::parse(stream);
    } catch (const Json::exception& error) {
        throw CFailure(ExitCode::Refused, "the report is no JSON: " + std::string(error.what()), kReportShape);
    }
}

/// All volumes that can be found, each with the attributes of its row.
std::vector<Json> StoredVolumes() {
    std::vector<Json> rows;
    for (const RowKey& key : ReadIndex("Storage")) {
        if (!RowExists("Storage", key.attribute, key.value)) {
            Note("the volume with the " + key.attribute + " " + key.value + " is no longer there");
            continue;
        }
        Json row;
        for (const char* const attribute :
             {"StorageName", "Volume", "TotalSpace", "FreeSpace", "Location", "Label", "Status"}) {
            row[attribute] = JsonText(FindValueWhere("Storage", key.attribute, key.value, attribute).value_or(""));
        }
        rows.push_back(row);
    }
    return rows;
}

/// How full the volume is; empty when its sizes are no numbers.
std::string Usage(const Json& row) {
    const auto total = ParseSize(row["TotalSpace"].get<std::string>());
    const auto free = ParseSize(row["FreeSpace"].get<std::string>());
    return total && free ? UsageBar(static_cast<double>(*total - *free), static_cast<double>(*total)) : "";
}

void PrintVolumes(const Globals& globals) {
    auto rows = StoredVolumes();
    for (Json& row : rows) {
        if (!globals.json) {
            row["usage"] = Usage(row);
        }
    }
    if (rows.empty()) {
        const auto volume = FindValue("Storage", "Volume");
        Note(volume ? "the document holds volumes that this program did not record, the first of them " + *volume
                    : "no volumes are recorded");
    }
    PrintRows(globals,
              {{"StorageName", "DEVICE"},
               {"Volume", "VOLUME"},
               {"Label", "LABEL"},
               {"Location", "LOCATION"},
               {"Status", "STATUS"},
               {"TotalSpace", "TOTAL", Format::Size},
               {"FreeSpace", "FREE", Format::Size},
               {"usage", "USED"}},
              rows);
}

ExitCode Report(const Globals& globals, const Options& options) {
    const Json json = ReadReport(options.file);
    std::unique_ptr<CReport> report;
    try {
        report = std::make_unique<CReport>(json);
    } catch (const Json::exception& error) {
        throw CFailure(ExitCode::Refused, "the report does not have the right shape: " + std::string(error.what()),
                       kReportShape);
    }
    const CSession session(globals);
    if (!options.add) {
        DelAllElem("Storage");
        ClearIndex("Storage");
    }
    PrinterInfoProc(&report->Info());
    for (const RowKey& key : report->Keys()) {
        if (!RowExists("Storage", key.attribute, key.value)) {
            throw CFailure(ExitCode::Missing, "the report was not recorded: the document has no container Storage",
                           "add the empty container; the installed documents show where");
        }
        AddToIndex("Storage", key);
    }
    PrintVolumes(globals);
    session.RequireKept();
    return ExitCode::Done;
}

ExitCode Show(const Globals& globals) {
    const CSession session(globals);
    PrintVolumes(globals);
    return ExitCode::Done;
}

} // namespace

void AddStorageVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const storage = AddFamily(app, "storage", "The devices and volumes of a printer");

    auto* const report = storage->add_subcommand("report", "Record what a printer reports, in place of what it "
                                                           "reported before");
    report->add_option("FILE", options->file, "The report in JSON; - for standard input")->required();
    report->add_flag("--add", options->add, "Keep what was reported before; equal volumes are not recorded twice");
    report->footer(std::string("The report, with sizes in bytes:\n") + kReportShape);
    report->callback([&host, options] { host.exit = Report(host.globals, *options); });

    auto* const show = storage->add_subcommand("show", "Show the volumes");
    show->callback([&host] { host.exit = Show(host.globals); });
}
