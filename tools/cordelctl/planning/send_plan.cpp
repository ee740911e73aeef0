#include "send_plan.h"

#include <algorithm>
#include <limits>
#include <map>
#include <stdexcept>
#include <utility>

namespace {

/// A path as it is compared.
std::string Folded(const std::string& path) {
    std::string folded;
    for (const char letter : path) {
        const char c = letter == '\\'                   ? '/'
                       : letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + ('a' - 'A'))
                                                        : letter;
        if (c != '/' || (!folded.empty() && folded.back() != '/')) {
            folded += c;
        }
    }
    return folded;
}

using Place = std::pair<std::string, std::string>; // volume and folded path

Place PlaceOf(const std::string& volume, const std::string& path) { return {volume, Folded(path)}; }

void AddTo(std::int64_t& sum, std::int64_t size) {
    if (size > std::numeric_limits<std::int64_t>::max() - sum) {
        throw std::overflow_error("the sizes are too large to add up");
    }
    sum += size;
}

/// Files of one group must not share an ID; empty for files without one.
std::string GroupOf(const ProjectFile& file) {
    return file.type == "2"                       ? "macros"
           : file.type == "8"                     ? "overlays"
           : file.type == "1" || file.type == "5" ? "fonts"
           : file.type == "6"                     ? "profiles " + file.profileType
                                                  : "";
}

class CPlanner {
public:
    CPlanner(const std::vector<ProjectFile>& files, const std::vector<PrinterFile>& listing) : m_files(files) {
        for (const PrinterFile& file : listing) {
            m_there[PlaceOf(file.volume, file.path)] = file;
        }
    }

    SendPlan Make(const std::vector<ReportedVolume>& volumes) {
        for (const ReportedVolume& volume : volumes) {
            VolumePlan& plan = m_volumes[volume.volume];
            plan.volume = volume.volume;
            plan.freeSpace = volume.freeSpace;
        }
        for (const ProjectFile& file : m_files) {
            if (file.ticked) {
                AddStep(file);
            }
        }
        AddOthers();
        SendPlan result;
        for (auto& [name, plan] : m_volumes) {
            if (plan.steps.empty() && plan.inNoProject.empty()) {
                continue;
            }
            plan.freeSpaceAfterSend = plan.freeSpace - plan.filesSize;
            Arrange(plan);
            result.volumes.push_back(std::move(plan));
        }
        result.clashes = Clashes();
        return result;
    }

private:
    void AddStep(const ProjectFile& file) {
        const auto volume = m_volumes.find(file.volume);
        if (volume == m_volumes.end()) {
            throw std::out_of_range("no volume \"" + file.volume + "\"");
        }
        VolumePlan& plan = volume->second;
        PlanStep step{file, Standing::New, 0, true, 0};
        if (const auto there = m_there.find(PlaceOf(file.volume, file.path)); there != m_there.end()) {
            step.sizeThere = there->second.size;
            step.standing = step.sizeThere == file.size ? Standing::IsThere : Standing::Replaces;
        }
        AddTo(plan.filesSize, file.size);
        if (step.standing != Standing::IsThere) {
            AddTo(plan.bytesToSend, file.size);
            AddTo(plan.bytesReplaced, step.sizeThere);
        }
        plan.steps.push_back(std::move(step));
    }

    /// What is on the printer, and in the project neither ticked nor unticked.
    void AddOthers() {
        std::map<Place, bool> known;
        for (const ProjectFile& file : m_files) {
            known[PlaceOf(file.volume, file.path)] = true;
        }
        for (const auto& [place, file] : m_there) {
            if (known.count(place) == 0) {
                VolumePlan& plan = m_volumes[file.volume];
                plan.volume = file.volume;
                plan.inNoProject.push_back(file);
            }
        }
    }

    static std::int64_t Growth(const PlanStep& step) {
        return step.standing == Standing::IsThere ? 0 : step.file.size - step.sizeThere;
    }

    /// The order of the project when all fit in it; else what makes room first, and then the smallest first, so that as
    /// many as possible fit.
    static void Arrange(VolumePlan& plan) {
        if (!Walk(plan)) {
            std::stable_sort(plan.steps.begin(), plan.steps.end(),
                             [](const PlanStep& a, const PlanStep& b) { return Growth(a) < Growth(b); });
            Walk(plan);
        }
        plan.bytesMissing = std::max<std::int64_t>(plan.bytesToSend - plan.bytesReplaced - plan.freeSpace, 0);
    }

    /// Fills in what is free after each step; false when one does not fit. A file that takes another's place needs room
    /// for itself only once the other is gone.
    static bool Walk(VolumePlan& plan) {
        bool fits = true;
        std::int64_t free = plan.freeSpace;
        for (PlanStep& step : plan.steps) {
            step.fits = Growth(step) <= free;
            free -= step.fits ? Growth(step) : 0;
            step.freeAfter = free;
            fits = fits && step.fits;
        }
        return fits;
    }

    std::vector<PlanClash> Clashes() const {
        std::map<std::pair<std::string, std::string>, std::vector<const ProjectFile*>> sent; // by group and ID
        std::map<Place, std::vector<const ProjectFile*>> paths;
        for (const ProjectFile& file : m_files) {
            if (!file.ticked) {
                continue;
            }
            paths[PlaceOf(file.volume, file.path)].push_back(&file);
            if (!GroupOf(file).empty() && !file.id.empty()) {
                sent[{GroupOf(file), file.id}].push_back(&file);
            }
        }
        std::vector<PlanClash> clashes;
        const auto add = [&](PlanClash::Kind kind, const std::string& group, const std::string& id,
                             const std::vector<const ProjectFile*>& files) {
            PlanClash clash{kind, group, id, {}};
            for (const ProjectFile* const file : files) {
                clash.fileIDs.push_back(file->fileID);
            }
            clashes.push_back(std::move(clash));
        };
        for (const auto& [key, files] : sent) {
            if (files.size() > 1) {
                add(PlanClash::Kind::SentTogether, key.first, key.second, files);
            }
        }
        for (const auto& [place, files] : paths) {
            if (files.size() > 1) {
                add(PlanClash::Kind::OnePath, place.first, files.front()->path, files);
            }
        }
        // Of what lies on the printer only the files of the project tell their IDs.
        for (const ProjectFile& file : m_files) {
            const Place place = PlaceOf(file.volume, file.path);
            const auto same = sent.find({GroupOf(file), file.id});
            if (!file.ticked && same != sent.end() && m_there.count(place) != 0 && paths.count(place) == 0) {
                auto files = same->second;
                files.push_back(&file);
                add(PlanClash::Kind::WithPrinter, same->first.first, file.id, files);
            }
        }
        return clashes;
    }

    const std::vector<ProjectFile>& m_files;
    std::map<Place, PrinterFile> m_there;
    std::map<std::string, VolumePlan> m_volumes;
};

} // namespace

bool SendPlan::Fits() const noexcept {
    return std::all_of(volumes.begin(), volumes.end(), [](const VolumePlan& plan) { return plan.bytesMissing == 0; });
}

SendPlan MakePlan(const std::vector<ProjectFile>& files, const std::vector<ReportedVolume>& volumes,
                  const std::vector<PrinterFile>& listing) {
    return CPlanner(files, listing).Make(volumes);
}
