#include "page/page_writer.h"

#include "page/page_template.h"
#include "text/printable.h"

#include <kainjow/mustache.hpp>

#include <algorithm>
#include <cmath>

namespace {

using kainjow::mustache::data;
using kainjow::mustache::list;
using kainjow::mustache::mustache;
using kainjow::mustache::partial;

constexpr double kBarWidth = 1000;
constexpr double kMapWidth = 100;        // percent
constexpr std::size_t kWordOfColumn = 6; // bytes; a longer word may be broken where a table would not fit

/// A text as the page shows it: no control character reaches it, no mark that turns the text around it, and nothing
/// that XML cannot hold. Markup is escaped where the text is put in.
std::string Shown(const std::string& text) { return Printable(text); }

std::string Rounded(double number) { return std::to_string(std::lround(number)); }

std::string WithTenths(double number) {
    const long tenths = std::lround(number * 10);
    return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10);
}

std::size_t LongestWord(std::string_view text) {
    std::size_t longest = 0;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find(' '), text.size());
        longest = std::max(longest, length);
        text.remove_prefix(std::min(length + 1, text.size()));
    }
    return longest;
}

/// Sets a text; an empty one is no text to the page, which then leaves out what stands around it.
void SetText(data& object, const std::string& key, const std::string& text) {
    if (text.empty()) {
        object.set(key, data(false));
    } else {
        object.set(key, Shown(text));
    }
}

template <class Item, class Draw>
data ListOf(const std::vector<Item>& items, Draw draw) {
    data drawn(list{});
    for (const Item& item : items) {
        drawn.push_back(draw(item));
    }
    return drawn;
}

data Drawn(const PageBar& bar) {
    const double used = std::clamp(bar.used, 0.0, 1.0);
    const double added = std::clamp(bar.added, 0.0, 1.0 - used);
    data object;
    object.set("used", Rounded(used * kBarWidth));
    SetText(object, "added", added > 0 || bar.isTooMuch ? Rounded(std::max(added * kBarWidth, 1.0)) : "");
    object.set("addedClass", bar.isTooMuch ? "over" : "added");
    object.set("text", Shown(bar.text));
    return object;
}

void SetBar(data& object, const std::optional<PageBar>& bar) { object.set("bar", bar ? Drawn(*bar) : data(false)); }

data Drawn(const PageFinding& finding) {
    data object;
    object.set("severity", finding.severity);
    object.set("severityClass", finding.severity == "error" ? "bad" : "quiet");
    object.set("where", Shown(finding.where));
    object.set("text", Shown(finding.text));
    SetText(object, "advice", finding.advice);
    SetText(object, "anchor", finding.anchor);
    return object;
}

data Drawn(const PageVolume& volume) {
    data object;
    SetText(object, "anchor", volume.anchor);
    object.set("name", Shown(volume.name));
    object.set("description", Shown(volume.description));
    object.set("total", Shown(volume.total));
    object.set("free", Shown(volume.free));
    SetBar(object, volume.bar);
    return object;
}

data Drawn(const PageDevice& device) {
    data object;
    object.set("name", Shown(device.name));
    object.set("volumes", ListOf(device.volumes, [](const PageVolume& volume) { return Drawn(volume); }));
    return object;
}

data Drawn(const PageSending& sending) {
    data object;
    object.set("volume", Shown(sending.volume));
    object.set("files", Shown(sending.files));
    object.set("before", Shown(sending.before));
    object.set("after", Shown(sending.after));
    object.set("fits", data(sending.fits));
    SetBar(object, sending.bar);
    return object;
}

data Drawn(const PagePartitionMap& map) {
    data blocks(list{});
    double left = 0;
    bool bEven = false;
    for (const PagePartition& partition : map.partitions) {
        const double width = std::clamp(partition.share, 0.0, 1.0 - left);
        data block;
        SetText(block, "anchor", partition.anchor);
        block.set("name", Shown(partition.name));
        block.set("size", Shown(partition.size));
        block.set("percent", Shown(partition.percent));
        block.set("x", WithTenths(left * kMapWidth));
        block.set("width", WithTenths(width * kMapWidth));
        block.set("even", data(bEven));
        blocks.push_back(block);
        left += width;
        bEven = !bEven;
    }
    data object;
    object.set("title", Shown(map.title));
    object.set("blocks", blocks);
    return object;
}

data Drawn(const Specimen& specimen, const std::string& text) {
    data object;
    object.set("box", "0 -" + std::to_string(specimen.ascent) + ' ' + std::to_string(specimen.width) + ' ' +
                          std::to_string(specimen.ascent + specimen.descent));
    object.set("path", specimen.path);
    SetText(object, "missingPath", specimen.missingPath);
    object.set("specimenLabel", Shown("specimen: " + text));
    std::string remark;
    if (specimen.missingGlyphs > 0) {
        remark = "lacks " + std::to_string(specimen.missingGlyphs) + " of the characters, shown as boxes";
    }
    if (specimen.isShortened) {
        remark += remark.empty() ? "the line is cut: the outlines are very rich" : "; the line is cut";
    }
    SetText(object, "remark", remark);
    return object;
}

/// y grows downwards in the drawing, and upwards with b*.
std::string PathOf(const std::vector<AbPoint>& outline) {
    std::string path;
    for (const AbPoint& point : outline) {
        path += path.empty() ? 'M' : 'L';
        path += Rounded(point.a) + ' ' + Rounded(-point.b);
    }
    return path + 'z';
}

double Reach(const std::vector<AbPoint>& outline) {
    double reach = 0;
    for (const AbPoint& point : outline) {
        reach = std::max({reach, std::abs(point.a), std::abs(point.b)});
    }
    return reach;
}

data Drawn(const Gamut& gamut, const Gamut& standard) {
    const std::string edge = Rounded(std::max(Reach(gamut.outline), Reach(standard.outline)) * 1.05 + 1);
    const std::string side = std::to_string(2 * std::stol(edge));
    data object;
    object.set("box", '-' + edge + " -" + edge + ' ' + side + ' ' + side);
    object.set("axes", 'M' + ('-' + edge) + " 0H" + edge + "M0 -" + edge + 'V' + edge);
    object.set("own", PathOf(gamut.outline));
    object.set("standard", PathOf(standard.outline));
    object.set("gamutLabel", "colours on the plane of a* and b*: area " + Rounded(gamut.area) + ", " +
                                 Rounded(gamut.area * 100 / standard.area) + " % of sRGB (dashed)");
    return object;
}

class CPage {
public:
    explicit CPage(const PageContent& content) : m_content(content) {}

    std::string Write() const {
        data page;
        page.set("title", Shown(m_content.title));
        SetText(page, "made", m_content.made);
        page.set("findings", ListOf(m_content.findings, [](const PageFinding& finding) { return Drawn(finding); }));
        page.set("hasFindings", data(!m_content.findings.empty()));
        page.set("sections",
                 ListOf(m_content.sections, [this](const PageSection& section) { return DrawSection(section); }));
        page.set("barPicture", data(partial([] { return std::string(kBarTemplate); })));
        return mustache(kPageTemplate).render(page);
    }

private:
    data DrawSection(const PageSection& section) const {
        data object;
        object.set("anchor", section.anchor);
        object.set("title", Shown(section.title));
        object.set("source", Shown(section.source));
        SetText(object, "problem", section.problem);
        object.set("devices", ListOf(section.devices, [](const PageDevice& device) { return Drawn(device); }));
        object.set("partitions", ListOf(section.partitions, [](const PagePartitionMap& map) { return Drawn(map); }));
        object.set("sending", ListOf(section.sending, [](const PageSending& sending) { return Drawn(sending); }));
        object.set("hasSending", data(!section.sending.empty()));
        object.set("files", ListOf(section.files, [this](const PageFileGroup& group) { return DrawGroup(group); }));
        object.set("slots", ListOf(section.slots, [](const PageSlotGrid& grid) { return DrawSlots(grid); }));
        object.set("tables", ListOf(section.tables, [](const PageTable& table) { return DrawTable(table); }));
        return object;
    }

    data DrawGroup(const PageFileGroup& group) const {
        data object;
        object.set("title", Shown(group.title));
        object.set("rows", ListOf(group.files, [this](const PageFile& file) { return DrawFile(file); }));
        return object;
    }

    data DrawFile(const PageFile& file) const {
        data object;
        SetText(object, "anchor", file.anchor);
        object.set("id", Shown(file.id));
        object.set("title", Shown(file.title));
        object.set("target", Shown(file.target));
        object.set("size", Shown(file.size));
        object.set("ticked", data(file.isTicked));
        SetText(object, "clash", file.clash);
        SetText(object, "notShown", file.notShown);
        object.set("specimen", file.specimen ? Drawn(*file.specimen, m_content.specimenText) : data(false));
        object.set("gamut", file.gamut ? Drawn(*file.gamut, m_standard) : data(false));
        return object;
    }

    static data DrawSlots(const PageSlotGrid& grid) {
        data object;
        object.set("title", Shown(grid.title));
        object.set("cells", ListOf(grid.slots, [](const PageSlot& slot) {
                       data cell;
                       cell.set("number", Shown(slot.number));
                       cell.set("state", slot.state);
                       SetText(cell, "owner", slot.owner);
                       return cell;
                   }));
        return object;
    }

    static data DrawTable(const PageTable& table) {
        data object;
        object.set("title", Shown(table.title));
        object.set("headings", ListOf(table.headings, [](const std::string& text) { return data(Shown(text)); }));
        object.set("rows", ListOf(table.rows, [](const PageRow& cells) {
                       data row;
                       SetText(row, "anchor", cells.anchor);
                       row.set("cells", ListOf(cells.cells, [](const std::string& text) { return DrawCell(text); }));
                       return row;
                   }));
        return object;
    }

    static data DrawCell(const std::string& text) {
        data cell;
        cell.set("text", Shown(text));
        cell.set("long", data(LongestWord(text) > kWordOfColumn));
        return cell;
    }

    const PageContent& m_content;
    const Gamut m_standard = StandardGamut();
};

} // namespace

std::string WritePage(const PageContent& content) { return CPage(content).Write(); }
