#include "medians.h"

#include <cstdio>

bool CMedians::ReportContext(const Context&) { return true; }

void CMedians::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        const std::string& name = run.run_name.function_name;
        if (run.error_occurred) {
            std::fprintf(stderr, "%s: %s\n", name.c_str(), run.error_message.c_str());
        } else if (run.aggregate_name == "median") {
            m_figures[name] = run.GetAdjustedRealTime() / benchmark::GetTimeUnitMultiplier(run.time_unit) * 1e9;
            std::fprintf(stderr, "%s\n", name.c_str());
        }
    }
}
