// partition: how the disk and the flash memory of a printer are divided.

#include "failure.h"
#include "records/field_text.h"
#include "storage/partition_copy.h"
#include "storage/partitions.h"
#include "text/nearest.h"
#include "text/number_text.h"
#include "verbs/rows.h"
#include "verbs/verbs.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace {

struct MediumNames {
    const char* name;
    const char* current;
    const char* standard;
};

constexpr MediumNames kDisk{"disk", "CurrentDisk", "DefaultDisk"};
constexpr MediumNames kFlash{"flash", "CurrentFlash", "DefaultFlash"};

const MediumNames& MediumOf(const Context& context) { return context.Has("--flash") ? kFlash : kDisk; }

/// The layouts that an edit is for: the current one, the default one, or both.
std::vector<std::string> LayoutsOf(const Context& context) {
    const MediumNames& medium = MediumOf(context);
    const std::string layout = context.Text("--layout");
    if (layout == "current") {
        return {medium.current};
    }
    return layout == "default" ? std::vector<std::string>{medium.standard}
                               : std::vector<std::string>{medium.current, medium.standard};
}

int32_t NumberOf(const Context& context, const char* option, int64_t largest) {
    const std::string text = context.Has(option) ? context.Text(option) : "0";
    const auto number = ParseSize(text);
    if (!number || *number > largest) {
        throw CFailure(ExitCode::Usage, std::string(option) + " takes no \"" + text + "\"",
                       "give a number from 0 to " + std::to_string(largest));
    }
    return static_cast<int32_t>(*number);
}

Result AddPartition(Context& context) {
    // The library stops hosts that record a size in KiB with more than 14 digits.
    constexpr int64_t kLargestSize = 99'999'999'999'999 * 1024;
    const MediumNames& medium = MediumOf(context);
    const auto size = ParseSizeWithUnit(context.Text("--size"));
    if (!size || *size > kLargestSize) {
        throw CFailure(ExitCode::Usage, "--size takes no \"" + context.Text("--size") + "\"",
                       "give a number of bytes, or with a unit: 4G; at most " + std::to_string(kLargestSize));
    }
    if (context.Has("--flash") && context.Has("--percent")) {
        throw CFailure(ExitCode::Usage, "partitions of the flash memory have no percentage");
    }
    const std::string utf8 = context.Text("NAME");
    if (utf8.empty()) {
        throw CFailure(ExitCode::Usage, "the NAME is empty");
    }
    const std::string name = RequireFit(utf8, kFieldLength, "the name of the partition");
    CDocument& document = context.Document();
    for (const char* const layout : {medium.current, medium.standard}) {
        if (!document.RowsWhere(layout, {{"Partition", utf8}}).empty()) {
            throw CFailure(ExitCode::Refused, std::string(layout) + " has a partition " + utf8 + " already",
                           "to change it: cordelctl partition edit " + utf8);
        }
    }
    const PartitionRecord record{NumberOf(context, "--image", 2147483647), name.c_str(), *size,
                                 NumberOf(context, "--percent", 100)};
    const PartitionRecorded recorded =
        RecordPartition(document.Object(), record, context.Has("--flash") ? Medium::Flash : Medium::Disk);
    RequireDone(recorded.m_current, "the partition");
    RequireDone(recorded.m_default, "the partition");
    document.NoteChange();
    Result result;
    result.data = TableOf(document.RowsWhere(medium.current, {{"Partition", utf8}})).data;
    result.said.push_back("added " + std::string(medium.name) + " partition " + utf8 + ", " +
                          std::to_string(*size / 1024) + " KiB");
    return result;
}

void AppendRows(CDocument& document, const MediumNames& medium, const char* layout, const char* layoutName,
                const Filter& filter, Result& result) {
    if (!document.HasContainer(layout)) {
        return;
    }
    const std::vector<Row> rows = document.RowsWhere(layout, {});
    double total = 0;
    for (const Row& row : rows) {
        total += static_cast<double>(ParseSize(row.Value("Size")).value_or(0));
    }
    for (const Row& row : rows) {
        const bool passes = std::all_of(filter.begin(), filter.end(),
                                        [&](const Pair& pair) { return row.Value(pair.first) == pair.second; });
        if (!passes) {
            continue;
        }
        Value data = DataOf(row);
        data.Add("Medium", medium.name);
        data.Add("Layout", layoutName);
        const auto size = ParseSize(row.Value("Size"));
        data.Add("share", size && total > 0
                              ? Value(static_cast<int>(std::lround(static_cast<double>(*size) * 100 / total)))
                              : Value());
        result.data.Append(std::move(data));
    }
}

Result ListPartitions(Context& context) {
    CDocument& document = context.Document();
    const Filter filter = FilterOf(context.Texts("--where"));
    Result result;
    result.shape = Result::Shape::Table;
    result.data = Value::List();
    for (const MediumNames* const medium : {&kDisk, &kFlash}) {
        AppendRows(document, *medium, medium->current, "current", filter, result);
        AppendRows(document, *medium, medium->standard, "default", filter, result);
    }
    result.columns = {{"Medium", "MEDIUM", Format::Text},       {"Layout", "LAYOUT", Format::Text},
                      {"Partition", "PARTITION", Format::Text}, {"Image", "IMAGE", Format::Number},
                      {"Size", "KIB", Format::Number},          {"Percent", "PERCENT", Format::Number},
                      {"share", "SHARE", Format::Usage}};
    result.names = AttributeNames(Schema(kDisk.current));
    int percent = 0;
    for (const Row& row : document.RowsOrNone("CurrentDisk")) {
        percent += static_cast<int>(ParseSize(row.Value("Percent")).value_or(0));
    }
    if (percent > 100) {
        result.notes.push_back("the partitions of the current disk take " + std::to_string(percent) + " % in all");
    }
    return result;
}

Result EditPartitions(Context& context) {
    const ContainerSchema& schema = Schema(MediumOf(context).current);
    const std::vector<Pair> values = GivenValues(context.Args(), schema);
    if (values.empty()) {
        throw CFailure(ExitCode::Usage, "nothing is to be changed", "see what can be: cordelctl partition edit --help");
    }
    CDocument& document = context.Document();
    Result result;
    result.data = Value::List();
    std::size_t changed = 0;
    for (const std::string& layout : LayoutsOf(context)) {
        std::vector<Row> rows = ChosenRows(context, document, Schema(layout), "NAME");
        EditRows(document, Schema(layout), rows, values);
        for (const Row& row : rows) {
            Value data = DataOf(row);
            data.Add("container", layout);
            result.data.Append(std::move(data));
        }
        changed = std::max(changed, rows.size());
    }
    result.said.push_back(Counted(changed, "partition") + " changed in " + Joined(LayoutsOf(context), " and "));
    return result;
}

Result RemovePartitions(Context& context) {
    CDocument& document = context.Document();
    Result result;
    result.data = Value::List();
    std::size_t removed = 0;
    for (const std::string& layout : LayoutsOf(context)) {
        const std::vector<Row> rows = ChosenRows(context, document, Schema(layout), "NAME");
        document.RemoveRows(layout, rows);
        for (const Row& row : rows) {
            Value data = DataOf(row);
            data.Add("container", layout);
            result.data.Append(std::move(data));
        }
        removed = std::max(removed, rows.size());
    }
    result.said.push_back(Counted(removed, "partition") + " removed from " + Joined(LayoutsOf(context), " and "));
    return result;
}

/// Where a value is missing, hosts copy the partition's name in its place. The tool does not.
void RequireValue(const Row& row, const char* attribute) {
    if (row.Find(attribute) == nullptr) {
        throw CFailure(ExitCode::Missing,
                       "the current partition " + row.Value("Partition") + " has no " + attribute +
                           ": nothing was copied",
                       std::string("give it one: cordelctl partition edit NAME --layout current"));
    }
}

Result CopyPartitions(Context& context) {
    CDocument& document = context.Document();
    RequireSound(document, kDisk.current);
    RequireSound(document, kDisk.standard);
    Result result;
    PartitionCopy copied;
    if (context.Has("--image")) {
        const std::string name = context.Text("--image");
        const auto rows = document.RowsWhere(kDisk.current, {{"Partition", name}});
        if (rows.empty()) {
            throw CFailure(ExitCode::Missing, "there is no current partition \"" + name + "\": nothing was copied");
        }
        RequireValue(rows.front(), "Image");
        bool chosen = false;
        for (Row& row : document.Rows("CurrentChosePartition")) {
            if (!chosen && row.Find("Name") != nullptr) {
                document.SetValue("CurrentChosePartition", row, "Name", name);
                chosen = true;
            }
        }
        if (!chosen) {
            throw CFailure(ExitCode::Missing, "no item of CurrentChosePartition carries Name: nothing was copied",
                           "add it where it is missing: cordelctl doctor --fix");
        }
        copied = CopyChosenImage(document.Object(), MissingValue::StaysOut);
        result.said.push_back("the default partition " + name + " has the image of the current one");
    } else {
        for (const Row& row : document.Rows(kDisk.current)) {
            RequireValue(row, "Percent");
            RequireValue(row, "Size");
        }
        copied = CopyPartitionShares(document.Object(), MissingValue::StaysOut);
        result.said.emplace_back("the default disk partitions have the sizes of the current ones");
    }
    document.NoteChange();
    result.data = Value::Record{{"copied", static_cast<std::size_t>(copied.m_nCopied)},
                                {"noTarget", static_cast<std::size_t>(copied.m_nNoTarget)}};
    if (copied.m_nNoTarget > 0) {
        result.notes.push_back(Counted(copied.m_nNoTarget, "value") +
                               " had no place in DefaultDisk: it lacks the partition, or "
                               "the attribute");
    }
    return result;
}

} // namespace

std::vector<Verb> PartitionVerbs() {
    const Option where = WhereOption("The partitions with this value; several must all match");
    const Option names{Option::Kind::Operands, "NAME", "", "Names of partitions", false, Offer::PartitionKeys};
    const Option all{Option::Kind::Flag, "--all", "", "All partitions"};
    const Option flash{Option::Kind::Flag, "--flash", "", "Of the flash memory, not of the disk"};
    const Option layout{Option::Kind::Text, "--layout",       "LAYOUT", "current or default; without, both", false,
                        Offer::Choices,     "current default"};
    std::vector<Option> edit = EditOptions(Schema("CurrentDisk"), {});
    edit.insert(edit.begin(), {names, where, all, flash, layout});
    return {
        {"partition add",
         "Record a partition in the current and in the default layout",
         Effect::Changes,
         &AddPartition,
         {{Option::Kind::Operand, "NAME", "", "Name of the partition", true},
          {Option::Kind::Text, "--size", "SIZE", "Size in bytes, or with a unit: 4G", true},
          {Option::Kind::Text, "--percent", "NUMBER", "Share of the disk, 0 to 100"},
          {Option::Kind::Text, "--image", "NUMBER", "Number of the image"},
          flash},
         {},
         "cordelctl partition add Fonts --size 4G --percent 30 --printer Atrium"},
        {"partition list",
         "List the partitions",
         Effect::Reads,
         &ListPartitions,
         {where},
         {},
         "cordelctl partition list --printer Atrium"},
        {"partition edit",
         "Change partitions",
         Effect::Changes,
         &EditPartitions,
         std::move(edit),
         {},
         "cordelctl partition edit Fonts --size 6G --percent 40 --printer Atrium"},
        {"partition remove",
         "Remove partitions",
         Effect::Changes,
         &RemovePartitions,
         {names, where, all, flash, layout},
         {},
         "cordelctl partition remove Fonts --printer Atrium"},
        {"partition copy",
         "Carry sizes and percentages of the current disk partitions into the default layout",
         Effect::Changes,
         &CopyPartitions,
         {{Option::Kind::Text, "--image", "NAME", "Carry the image of this partition instead", false,
           Offer::PartitionKeys}}},
    };
}
