#include "table.h"

#include <nlohmann/json.hpp>

#include <cstdio>
#include <fstream>

namespace {

constexpr double kBytesPerMegabyte = 1e6;

bool IsMemory(const std::string& name) { return name.starts_with("peak memory"); }

std::string Formatted(const char* format, double number) {
    char text[64];
    std::snprintf(text, sizeof text, format, number);
    return text;
}

/// A figure in the unit that a person would choose.
std::string Readable(const std::string& name, double figure) {
    if (IsMemory(name)) {
        return Formatted("%.1f MB", figure / kBytesPerMegabyte);
    }
    if (figure < 1e3) {
        return Formatted("%.0f ns", figure);
    }
    if (figure < 1e6) {
        return Formatted("%.2f us", figure / 1e3);
    }
    return figure < 1e9 ? Formatted("%.2f ms", figure / 1e6) : Formatted("%.2f s", figure / 1e9);
}

std::string Wording(const Bound& bound) {
    switch (bound.kind) {
    case Bound::Kind::TimesFaster:
        return Formatted("at least %g times faster", bound.limit);
    case Bound::Kind::LookupAtMost:
        return Formatted("a lookup at most %g times", bound.limit);
    case Bound::Kind::ExponentAtMost:
        return Formatted("exponent at most %g", bound.limit);
    default:
        return Formatted("at most %g times", bound.limit);
    }
}

} // namespace

void PrintTable(const std::vector<Verdict>& verdicts) {
    constexpr const char* kLine = "%-37s %10s  %-37s %10s  %9s  %-26s %s\n";
    std::printf(kLine, "workload", "median", "held against", "median", "ratio", "bound", "met");
    for (const Verdict& verdict : verdicts) {
        const Bound& bound = verdict.bound;
        std::printf(kLine, bound.figure.c_str(), Readable(bound.figure, verdict.figure).c_str(), bound.other.c_str(),
                    Readable(bound.other, verdict.other).c_str(), Formatted("%.4g", verdict.ratio).c_str(),
                    Wording(bound).c_str(), verdict.met ? "yes" : "NO");
    }
}

void WriteJson(const std::filesystem::path& file, const std::vector<Verdict>& verdicts, const Figures& figures) {
    nlohmann::json bounds = nlohmann::json::array();
    for (const Verdict& verdict : verdicts) {
        bounds.push_back({{"workload", verdict.bound.figure},
                          {"against", verdict.bound.other},
                          {"ratio", verdict.ratio},
                          {"bound", Wording(verdict.bound)},
                          {"met", verdict.met}});
    }
    nlohmann::json medians = nlohmann::json::object();
    for (const auto& [name, figure] : figures) {
        medians[name] = {{"unit", IsMemory(name) ? "bytes" : "ns"}, {"median", figure}};
    }
    std::ofstream(file) << nlohmann::json{{"bounds", bounds}, {"figures", medians}}.dump(2) << '\n';
}
