#include "page/page_gathering.h"

#include "catalogue/pcl_settings.h"
#include "doctor/examination.h"
#include "document/tree_view.h"
#include "failure.h"
#include "ids/icm_profile_ids.h"
#include "text/number_text.h"

#include <algorithm>
#include <cctype>
#include <filesystem>
#include <limits>
#include <map>
#include <stdexcept>

namespace {

/// Beyond these a page would no longer be one to send.
constexpr int kMostPictures = 500;
constexpr std::uintmax_t kLargestPicturedFile = std::uintmax_t{64} << 20;

struct FileGroup {
    const char* title;
    const char* type;
};
constexpr FileGroup kFileGroups[] = {{"TrueType fonts", "5"}, {"Bitmap fonts", "1"},  {"Colour profiles", "6"},
                                     {"Macros", "2"},         {"Form overlays", "8"}, {"Other files", ""}};

struct SlotKind {
    const char* title;
    const char* profileType;
    std::uint32_t kind;
};
constexpr SlotKind kSlotKinds[] = {{"Slots for RGB profiles", "0", 0},
                                   {"Slots for profiles of the printer", "2", 2},
                                   {"Slots for linked profiles", "3", 3}};

struct Layout {
    const char* title;
    const char* container;
};
constexpr Layout kLayouts[] = {{"Disk, current", "CurrentDisk"},
                               {"Disk, default", "DefaultDisk"},
                               {"Flash memory, current", "CurrentFlash"},
                               {"Flash memory, default", "DefaultFlash"}};

std::string PercentText(int64_t part, int64_t whole) { return std::to_string(WholePercent(part, whole)) + " %"; }

std::optional<PageBar> UsageOf(const std::string& totalText, const std::string& freeText) {
    const auto total = ParseSize(totalText);
    const auto free = ParseSize(freeText);
    if (!total || !free || *total == 0 || *free > *total) {
        return std::nullopt;
    }
    PageBar bar;
    bar.used = static_cast<double>(*total - *free) / static_cast<double>(*total);
    bar.text = ReadableSize(std::to_string(*total - *free)) + " of " + ReadableSize(totalText) + " used, " +
               PercentText(*total - *free, *total);
    return bar;
}

/// What the ticked files of a document take of each volume.
struct TickedSizes {
    std::map<std::string, std::optional<int64_t>> byVolume; // none: a size is no number
};

TickedSizes TickedSizesOf(const DocumentNode& root) {
    TickedSizes sizes;
    for (const Item& row : ItemsOf(root, "Files")) {
        if (ValueIn(*row.node, "checked") != "1") {
            continue;
        }
        const auto size = ParseSize(ValueIn(*row.node, "Size"));
        auto& sum = sizes.byVolume.try_emplace(ValueIn(*row.node, "Volume"), 0).first->second;
        if (!size || !sum || *size > std::numeric_limits<int64_t>::max() - *sum) {
            sum.reset();
        } else {
            *sum += *size;
        }
    }
    return sizes;
}

class CSectionGatherer {
public:
    CSectionGatherer(CDocument& document, std::string prefix, const PageWishes& wishes, int& pictures)
        : m_document(document), m_root(document.Tree()), m_strPrefix(std::move(prefix)), m_wishes(wishes),
          m_nPictures(pictures) {}

    void Gather(PageSection& section, const Findings& findings, const TickedSizes& projectSizes) {
        NoteClashes(findings);
        NoteSlots();
        AddDevices(section);
        AddPartitions(section);
        AddSending(section, projectSizes);
        AddFiles(section);
        AddSlots(section);
        AddJobs(section);
        AddSettings(section);
    }

    /// The anchor of the row that a finding is about; empty when there is none.
    std::string AnchorOf(const Finding& finding) const {
        if (finding.item.empty()) {
            return {};
        }
        const auto found = m_anchors.find({finding.container, finding.item.substr(0, finding.item.find(", item "))});
        return found != m_anchors.end() ? found->second : std::string();
    }

private:
    /// A name in the page for a row, kept for the findings that are about it.
    std::string Anchor(const char* container, const Item& row, std::string_view key) {
        std::string anchor = m_strPrefix + '-' + container + '-' + std::to_string(row.number);
        m_anchors.emplace(std::pair(container, NameOfItem(row, key)), anchor);
        return anchor;
    }

    void NoteClashes(const Findings& findings) {
        for (const Finding& finding : findings) {
            if (finding.check != "id-clash") {
                continue;
            }
            std::string_view items = finding.item;
            while (!items.empty()) {
                const std::size_t end = items.find(", item ");
                m_clashes.emplace(items.substr(0, end), finding.what);
                items.remove_prefix(end == std::string_view::npos ? items.size() : end + 2);
            }
        }
    }

    void NoteSlots() {
        for (const Item& row : ItemsOf(m_root, "Files")) {
            const auto slot = ParseSize(ValueIn(*row.node, "ID"));
            if (slot && ValueIn(*row.node, "Type") == "6") {
                m_slots[{ValueIn(*row.node, "ProfileType"), *slot}].push_back(TitleOf(row, "6"));
            }
        }
    }

    /// The titles of the profiles with this slot.
    std::vector<std::string> OwnersOf(const std::string& profileType, std::int64_t slot) const {
        const auto found = m_slots.find({profileType, slot});
        return found != m_slots.end() ? found->second : std::vector<std::string>();
    }

    void AddDevices(PageSection& section) {
        for (const Item& row : ItemsOf(m_root, "Storage")) {
            const std::string device = ValueIn(*row.node, "StorageName");
            if (section.devices.empty() || section.devices.back().name != device) {
                section.devices.push_back({device, {}});
            }
            const std::string total = ValueIn(*row.node, "TotalSpace");
            const std::string free = ValueIn(*row.node, "FreeSpace");
            std::string description;
            for (const char* const attribute : {"Label", "Location", "Status"}) {
                const std::string value = ValueIn(*row.node, attribute);
                description += (description.empty() || value.empty() ? "" : ", ") + value;
            }
            section.devices.back().volumes.push_back({Anchor("Storage", row, "Volume"), ValueIn(*row.node, "Volume"),
                                                      description, ReadableSize(total), ReadableSize(free),
                                                      UsageOf(total, free)});
        }
    }

    void AddPartitions(PageSection& section) {
        for (const Layout& layout : kLayouts) {
            const std::vector<Item> rows = ItemsOf(m_root, layout.container);
            if (rows.empty()) {
                continue;
            }
            double total = 0;
            for (const Item& row : rows) {
                total += static_cast<double>(ParseSize(ValueIn(*row.node, "Size")).value_or(0));
            }
            PagePartitionMap map{layout.title, {}};
            for (const Item& row : rows) {
                const auto size = ParseSize(ValueIn(*row.node, "Size")); // in KiB
                map.partitions.push_back({Anchor(layout.container, row, "Partition"), ValueIn(*row.node, "Partition"),
                                          size && *size <= std::numeric_limits<int64_t>::max() / 1024
                                              ? ReadableSize(std::to_string(*size * 1024))
                                              : ValueIn(*row.node, "Size"),
                                          ValueIn(*row.node, "Percent"),
                                          size && total > 0 ? static_cast<double>(*size) / total : 0});
            }
            section.partitions.push_back(std::move(map));
        }
    }

    /// Only where volumes are recorded: the document's own ticked files, or else the project's.
    void AddSending(PageSection& section, const TickedSizes& projectSizes) {
        const std::vector<Item> volumes = ItemsOf(m_root, "Storage");
        const TickedSizes own = TickedSizesOf(m_root);
        for (const auto& [volume, size] : (own.byVolume.empty() ? projectSizes : own).byVolume) {
            if (!volumes.empty()) {
                section.sending.push_back(SendingTo(volume, size, volumes));
            }
        }
    }

    static PageSending SendingTo(const std::string& volume, const std::optional<int64_t>& size,
                                 const std::vector<Item>& volumes) {
        PageSending sending;
        sending.volume = volume;
        sending.files = size ? ReadableSize(std::to_string(*size)) : "unknown";
        const auto found = std::find_if(volumes.begin(), volumes.end(),
                                        [&volume](const Item& row) { return ValueIn(*row.node, "Volume") == volume; });
        if (found == volumes.end()) {
            sending.fits = false;
            sending.after = "no such volume is recorded";
            return sending;
        }
        const auto free = ParseSize(ValueIn(*found->node, "FreeSpace"));
        const auto total = ParseSize(ValueIn(*found->node, "TotalSpace"));
        sending.before = ReadableSize(ValueIn(*found->node, "FreeSpace"));
        if (!size || !free) {
            sending.after = "unknown";
            return sending;
        }
        sending.fits = *size <= *free;
        sending.after = sending.fits ? ReadableSize(std::to_string(*free - *size))
                                     : ReadableSize(std::to_string(*size - *free)) + " too much";
        if (auto bar = UsageOf(ValueIn(*found->node, "TotalSpace"), ValueIn(*found->node, "FreeSpace"))) {
            bar->added = static_cast<double>(*size) / static_cast<double>(*total);
            bar->isTooMuch = !sending.fits;
            bar->text =
                PercentText(*total - *free, *total) + " used, " + PercentText(*size, *total) + " more by sending";
            sending.bar = std::move(bar);
        }
        return sending;
    }

    void AddFiles(PageSection& section) {
        std::vector<PageFileGroup> groups;
        for (const FileGroup& group : kFileGroups) {
            groups.push_back({group.title, {}});
        }
        for (const Item& row : ItemsOf(m_root, "Files")) {
            const std::string type = ValueIn(*row.node, "Type");
            std::size_t group = 0;
            while (group + 1 < std::size(kFileGroups) && type != kFileGroups[group].type) {
                ++group;
            }
            groups[group].files.push_back(FileOf(row, type));
        }
        for (PageFileGroup& group : groups) {
            if (!group.files.empty()) {
                section.files.push_back(std::move(group));
            }
        }
    }

    PageFile FileOf(const Item& row, const std::string& type) {
        PageFile file;
        file.anchor = Anchor("Files", row, "FileID");
        file.id = ValueIn(*row.node, "ID");
        file.title = TitleOf(row, type);
        file.target = ValueIn(*row.node, "Volume") + ' ' + ValueIn(*row.node, "Path");
        file.size = ReadableSize(ValueIn(*row.node, "Size"));
        file.isTicked = ValueIn(*row.node, "checked") == "1";
        const auto clash = m_clashes.find(NameOfItem(row, "FileID"));
        file.clash = clash != m_clashes.end() ? clash->second : std::string();
        const auto slot = ParseSize(file.id);
        if (file.clash.empty() && type == "6" && slot &&
            OwnersOf(ValueIn(*row.node, "ProfileType"), *slot).size() > 1) {
            file.clash = "Another profile has slot " + file.id + " too.";
        }
        if (type == "1" || type == "5" || type == "6") {
            AddPicture(file, type, ValueIn(*row.node, "LocalPath"));
        }
        return file;
    }

    static std::string TitleOf(const Item& row, const std::string& type) {
        const std::string title = ValueIn(*row.node, type == "5"   ? "TrueTypeTontName"
                                                     : type == "1" ? "BitMapFontName"
                                                                   : "Description");
        return title.empty() ? host::TextOf(host::PathOf(ValueIn(*row.node, "LocalPath")).filename()) : title;
    }

    void AddPicture(PageFile& file, const std::string& type, const std::string& localPath) {
        if (m_nPictures == kMostPictures) {
            file.notShown = "not drawn: the page shows the first " + std::to_string(kMostPictures) + " pictures";
            return;
        }
        ++m_nPictures;
        const std::filesystem::path path = host::PathOf(localPath);
        std::error_code error;
        const std::uintmax_t size = std::filesystem::is_regular_file(path, error) ? file_size(path, error) : 0;
        try {
            if (error || size == 0) {
                throw std::runtime_error("it is not on this computer");
            }
            if (size > kLargestPicturedFile) {
                throw std::runtime_error("it is too large to be shown");
            }
            if (type == "6") {
                file.gamut = ReadGamut(path);
            } else {
                file.specimen = DrawSpecimen(path, m_wishes.specimenText);
            }
        } catch (const std::runtime_error& problem) {
            file.notShown = "no picture: " + std::string(problem.what());
        }
    }

    void AddSlots(PageSection& section) {
        for (const SlotKind& kind : kSlotKinds) {
            const std::string slots = ReadIcmSlots(m_document.Object(), kind.kind).value_or("");
            if (slots.empty()) {
                continue;
            }
            PageSlotGrid grid{kind.title, {}};
            for (std::size_t slot = 1; slot <= slots.size(); ++slot) {
                const std::vector<std::string> names = OwnersOf(kind.profileType, static_cast<std::int64_t>(slot));
                std::string owner;
                for (const std::string& name : names) {
                    owner += (owner.empty() ? "" : ", ") + name;
                }
                const bool bMayBeUsed = slots[slot - 1] == '0' || slots[slot - 1] == '1';
                grid.slots.push_back({std::to_string(slot),
                                      names.size() > 1 ? "clashing"
                                      : bMayBeUsed     ? "free"
                                                       : "taken",
                                      owner});
            }
            section.slots.push_back(std::move(grid));
        }
    }

    void AddJobs(PageSection& section) {
        PageTable table{"Stored jobs", {"ID", "Name", "Type", "Copies", "Stored on", "Ticked"}, {}};
        for (const Item& row : ItemsOf(m_root, "Jobs")) {
            table.rows.push_back({Anchor("Jobs", row, "ID"),
                                  {ValueIn(*row.node, "ID"), ValueIn(*row.node, "Name"), ValueIn(*row.node, "Type"),
                                   ValueIn(*row.node, "Copies"), ValueIn(*row.node, "Stored"),
                                   ValueIn(*row.node, "checked") == "1" ? "yes" : "no"}});
        }
        if (!table.rows.empty()) {
            section.tables.push_back(std::move(table));
        }
    }

    void AddSettings(PageSection& section) {
        PageTable table{"Settings of the PCL filter", {"Setting", "Value"}, {}};
        for (const char* const setting : kPclSettings) {
            if (const auto value = m_document.FirstValue(kPclSettingsElement, setting)) {
                table.rows.push_back({{}, {setting, *value}});
            }
        }
        if (!table.rows.empty()) {
            section.tables.push_back(std::move(table));
        }
    }

    CDocument& m_document;
    const DocumentNode m_root;
    const std::string m_strPrefix;
    const PageWishes& m_wishes;
    int& m_nPictures;
    std::map<std::pair<std::string, std::string>, std::string> m_anchors; // by container and name of the row
    std::map<std::string, std::string, std::less<>> m_clashes;            // why, by name of the file's row
    std::map<std::pair<std::string, std::int64_t>, std::vector<std::string>> m_slots; // who has them, by ProfileType
};

const char* SeverityOf(Level level) {
    return level == Level::Error ? "error" : level == Level::Warning ? "warning" : "note";
}

PageFinding FindingOf(const Finding& finding, const std::string& title, const std::string& anchor) {
    std::string where = title;
    for (const std::string& part : {finding.container, finding.item}) {
        where += part.empty() ? "" : ", " + part;
    }
    return {SeverityOf(finding.level), where, finding.what + ' ' + finding.consequence, finding.mend, anchor};
}

std::string Headline(std::string title) {
    title.replace(0, title.starts_with("the ") ? 4 : 0, "");
    title[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(title[0])));
    return title;
}

Patient PatientOf(const DocumentPlace& place) { return {place.title, place.name, place.kind, place, place.Loaded()}; }

} // namespace

PageContent GatherPage(Context& context, const PageWishes& wishes) {
    PageContent page;
    page.title = "Storage of printers";
    page.specimenText = wishes.specimenText;
    int pictures = 0;
    TickedSizes projectSizes;
    for (std::size_t index = 0; index < wishes.documents.size(); ++index) {
        const DocumentPlace& place = wishes.documents[index];
        const Findings findings = Examine(PatientOf(place)).findings;
        PageSection section;
        section.anchor = "document-" + std::to_string(index + 1);
        section.title = Headline(place.title);
        section.source = host::TextOf(place.Loaded());
        try {
            CDocument& document = context.Session().Open(place, Access::Read);
            if (place.kind == DocumentKind::Main) {
                projectSizes = TickedSizesOf(document.Tree());
            }
            CSectionGatherer gatherer(document, section.anchor, wishes, pictures);
            gatherer.Gather(section, findings, projectSizes);
            for (const Finding& finding : findings) {
                page.findings.push_back(FindingOf(finding, section.title, gatherer.AnchorOf(finding)));
            }
        } catch (const CFailure& failure) {
            section.problem = failure.what();
            for (const Finding& finding : findings) {
                page.findings.push_back(FindingOf(finding, section.title, section.anchor));
            }
        }
        page.sections.push_back(std::move(section));
    }
    return page;
}
