// The figures of one run: medians of the repetitions in nanoseconds, and peaks of memory in bytes, by name.

#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

using Figures = std::map<std::string, double>;

/// Collects the medians of what Google Benchmark runs, and names each workload on standard error as it is done.
class CMedians : public benchmark::BenchmarkReporter {
public:
    explicit CMedians(Figures& figures) noexcept : m_figures(figures) {}
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;

private:
    Figures& m_figures;
};
