// partition: how the disk and the flash memory of a printer are divided.

#include "verbs.h"

#include "decoration.h"
#include "field_text.h"
#include "lookup.h"
#include "number_text.h"
#include "output.h"
#include "row_edit.h"
#include "row_index.h"
#include "session.h"

#include <limits>
#include <map>

namespace {

struct Options {
    std::string name;
    std::string image;
    int32_t imageNumber = 0;
    int64_t size = 0;
    int32_t percent = 0;
    bool flash = false;
};

struct Medium {
    const char* name;
    const char* current;
    const char* standard;
    bool hasPercent;
};

constexpr Medium kDisk{"disk", "CurrentDisk", "DefaultDisk", true};
constexpr Medium kFlash{"flash", "CurrentFlash", "DefaultFlash", false};

std::optional<std::string> PartitionValue(const std::string& layout, const std::string& name, const char* attribute) {
    return FindValueWhere(layout, "Partition", name, attribute);
}

/// A partition of the same name with other values would be recorded beside the old one.
void RequireNew(const Medium& medium, const Options& options) {
    for (const char* const layout : {medium.current, medium.standard}) {
        if (RowExists(layout, "Partition", options.name)) {
            throw CFailure(ExitCode::Refused, std::string(layout) + " has a partition " + options.name + " already",
                           "change it with: cordelctl set " + std::string(layout) +
                               " Size KIB --where Partition=" + options.name);
        }
    }
}

ExitCode Add(const Globals& globals, const Options& options) {
    const Medium& medium = options.flash ? kFlash : kDisk;
    RequireFit(options.name, kFieldLength, "the name of the partition");
    const CSession session(globals);
    RequireNew(medium, options);
    const PartitionRecord record{options.imageNumber, options.name.c_str(), options.size, options.percent};
    WritePartition(&record, options.flash ? 0 : 1);
    for (const char* const layout : {medium.current, medium.standard}) {
        if (!RowExists(layout, "Partition", options.name)) {
            throw CFailure(ExitCode::Missing, std::string("the document has no container ") + layout,
                           "add the empty container; the installed documents show where");
        }
        AddToIndex(layout, {"Partition", options.name});
    }
    Say(globals, "added " + std::string(medium.name) + " partition " + options.name + ", " +
                     std::to_string(options.size / 1024) + " KiB");
    session.RequireKept();
    return ExitCode::Done;
}

void AppendRows(const Medium& medium, const char* layout, const char* layoutName, std::vector<Json>& rows) {
    for (const RowKey& key : ReadIndex(layout)) {
        Json row{{"Medium", medium.name}, {"Layout", layoutName}, {"Partition", JsonText(key.value)}};
        for (const char* const attribute : {"Image", "Size", "Percent"}) {
            if (const auto value = PartitionValue(layout, key.value, attribute)) {
                row[attribute] = JsonText(*value);
            }
        }
        rows.push_back(row);
    }
}

/// The share of each partition in what its layout holds in all, as a bar.
void AppendShares(std::vector<Json>& rows) {
    const auto size = [](const Json& row) {
        return static_cast<double>(ParseSize(row.value("Size", std::string())).value_or(0));
    };
    std::map<std::pair<std::string, std::string>, double> totals;
    const auto layout = [](const Json& row) {
        return std::pair(row["Medium"].get<std::string>(), row["Layout"].get<std::string>());
    };
    for (const Json& row : rows) {
        totals[layout(row)] += size(row);
    }
    for (Json& row : rows) {
        row["share"] = UsageBar(size(row), totals[layout(row)]);
    }
}

ExitCode Show(const Globals& globals) {
    const CSession session(globals);
    std::vector<Json> rows;
    for (const Medium* const medium : {&kDisk, &kFlash}) {
        AppendRows(*medium, medium->current, "current", rows);
        AppendRows(*medium, medium->standard, "default", rows);
    }
    const std::string percents = ToText(GetDiskPercent());
    if (globals.json) {
        PrintJson({{"partitions", rows}, {"diskPercent", JsonText(percents)}});
        return ExitCode::Done;
    }
    AppendShares(rows);
    PrintRows(globals,
              {{"Medium", "MEDIUM"},
               {"Layout", "LAYOUT"},
               {"Partition", "PARTITION"},
               {"Image", "IMAGE", Format::Number},
               {"Size", "KIB", Format::Number},
               {"Percent", "PERCENT", Format::Number},
               {"share", "SHARE"}},
              rows);
    Say(globals, "the current disk in percent: " + (percents.empty() ? "none" : percents));
    return ExitCode::Done;
}

/// Where a value is missing, the library copies the partition's name in its place.
void RequireValue(const std::string& partition, const char* attribute) {
    if (!PartitionValue(kDisk.current, partition, attribute)) {
        throw CFailure(ExitCode::Missing,
                       "the current partition " + partition + " has no " + attribute + ": nothing was copied");
    }
}

ExitCode CopySizes(const Globals& globals) {
    const CSession session(globals);
    for (const RowKey& key : ReadIndex(kDisk.current)) {
        RequireValue(key.value, "Percent");
        RequireValue(key.value, "Size");
    }
    CopyPatition(1);
    Say(globals, "the default disk partitions have the sizes of the current ones");
    session.RequireKept();
    return ExitCode::Done;
}

ExitCode CopyImage(const Globals& globals, const Options& options) {
    const CSession session(globals);
    RequireValue(options.image, "Image");
    OverwriteFirst("CurrentChosePartition", "Name", options.image);
    CopyPatition(0);
    Say(globals, "the default partition " + options.image + " has the image of the current one");
    session.RequireKept();
    return ExitCode::Done;
}

void AddAdd(CLI::App& partition, Host& host, const std::shared_ptr<Options>& options) {
    // The library stops the process when a size in KiB has more than 14 digits.
    constexpr int64_t kLargestSize = 99'999'999'999'999 * 1024;
    auto* const add =
        partition.add_subcommand("add", "Record a disk partition in the current and in the default layout");
    add->add_option("NAME", options->name, "Name of the partition")->required();
    add->add_option("--size", options->size, "Size in bytes")->required()->check(CLI::Range(int64_t{0}, kLargestSize));
    auto* const percent =
        add->add_option("--percent", options->percent, "Share of the disk")->check(CLI::Range(0, 100));
    add->add_option("--image", options->imageNumber, "Number of the image")
        ->check(CLI::Range(0, std::numeric_limits<int32_t>::max()));
    add->add_flag("--flash", options->flash, "A partition of the flash memory")->excludes(percent);
    add->callback([&host, options] { host.exit = Add(host.globals, *options); });
}

} // namespace

void AddPartitionVerb(CLI::App& app, Host& host) {
    auto options = std::make_shared<Options>();
    auto* const partition = AddFamily(app, "partition", "The partitions of a printer");
    AddAdd(*partition, host, options);

    auto* const show = partition->add_subcommand("show", "Show the partitions");
    show->callback([&host] { host.exit = Show(host.globals); });

    auto* const copy = partition->add_subcommand("copy", "Carry sizes and percentages of the current disk partitions "
                                                         "into the default layout");
    copy->add_option("--image", options->image, "Carry the image of this partition instead")->type_name("NAME");
    copy->callback([&host, options] {
        host.exit = options->image.empty() ? CopySizes(host.globals) : CopyImage(host.globals, *options);
    });
}
