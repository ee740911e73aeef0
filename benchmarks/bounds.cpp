#include "bounds.h"

#include "projects.h"
#include "workloads.h"

#include <cmath>

namespace {

double RatioOf(Bound::Kind kind, double figure, double other) {
    switch (kind) {
    case Bound::Kind::TimesFaster:
        return other / figure;
    case Bound::Kind::LookupAtMost:
        return figure / other / 2;
    case Bound::Kind::ExponentAtMost:
        return std::log(figure / other) / std::log(static_cast<double>(kLarge) / kMedium);
    default:
        return figure / other;
    }
}

} // namespace

std::vector<Bound> AllBounds() {
    using Kind = Bound::Kind;
    std::vector<Bound> bounds;
    for (const char* const work :
         {"CheckID", "IdsAreValid", "GetValidID", "GetAvailICMID", "GetJobs", "IsPathConflict"}) {
        bounds.push_back({Kind::ExponentAtMost, 1.3, WorkloadName(work, kLarge), WorkloadName(work, kMedium)});
    }
    for (const char* const work : {"without IDs", "with a twin", "of collisions"}) {
        bounds.push_back({Kind::LookupAtMost, 1.3, WorkloadName(work, 2 * kHostile), WorkloadName(work, kHostile)});
    }
    const auto add = [&](Kind kind, double limit, const std::string& work, int rows, const char* peer) {
        bounds.push_back({kind, limit, WorkloadName(work, rows), WorkloadName(work, rows, peer)});
    };
    add(Kind::TimesFaster, 3000, "CheckID", kMedium, "pugixml");
    add(Kind::TimesFaster, 1000, "IdsAreValid", kMedium, "pugixml");
    add(Kind::TimesFaster, 1.5, "CheckID", kLarge, "SQLite");
    add(Kind::TimesFaster, 1.2, "IdsAreValid", kLarge, "SQLite");
    bounds.push_back({Kind::AtMost, 1.5, WorkloadName("WritePrjFile", kLarge), WorkloadName("WritePrjFile", kSmall)});
    add(Kind::AtMost, 1.6, "opening", kLarge, "Expat");
    add(Kind::TimesFaster, 1.1, "opening", kLarge, "libxml2");
    add(Kind::AtMost, 1.6, "opening", kEveryday, "Expat");
    add(Kind::AtMost, 1.9, "WriteAttr with its save", kLarge, "raw");
    add(Kind::TimesFaster, 1.2, "WriteAttr with its save", kLarge, "pugixml");
    bounds.push_back({Kind::AtMost, 1.5, WorkloadName("verifying fonts", kManyFonts, "cordelctl"),
                      WorkloadName("verifying fonts", kManyFonts, "FreeType")});
    add(Kind::AtMost, 4.5, "peak memory", kLarge, "file");
    add(Kind::AtMost, 0.4, "peak memory", kLarge, "libxml2");
    return bounds;
}

std::optional<Verdict> Judge(const Bound& bound, const Figures& figures) {
    const auto figure = figures.find(bound.figure);
    const auto other = figures.find(bound.other);
    if (figure == figures.end() || other == figures.end()) {
        return std::nullopt;
    }
    const double ratio = RatioOf(bound.kind, figure->second, other->second);
    const bool bMet = bound.kind == Bound::Kind::TimesFaster ? ratio >= bound.limit : ratio <= bound.limit;
    return Verdict{bound, figure->second, other->second, ratio, bMet};
}
