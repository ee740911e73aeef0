// Runs the workloads and their peers, prints the table and writes it as JSON.
//
//     cordelbox_benchmarks <JSON file> [options of Google Benchmark, as --benchmark_filter=<expression>]

#include "host.h"
#include "peak_memory.h"
#include "table.h"
#include "workloads.h"

#include <cstdio>
#include <cstdlib>

int main(int argumentCount, char** arguments) {
    if (RunAsChild(argumentCount, arguments)) {
        return EXIT_SUCCESS;
    }
    if (argumentCount < 2) {
        std::fprintf(stderr, "usage: cordelbox_benchmarks <JSON file> [options of Google Benchmark]\n");
        return EXIT_FAILURE;
    }
    Figures figures;
    MeasurePeaks(figures);

    CHost host;
    RegisterLookupWorkloads(host);
    RegisterDocumentWorkloads(host);
    RegisterFontWorkloads();
    // A workload and its peers take turns, so that a machine that is busy for a while does not favour one of them.
    std::vector<char*> options(arguments + 1, arguments + argumentCount);
    char interleaving[] = "--benchmark_enable_random_interleaving=true";
    options.push_back(interleaving);
    int optionCount = static_cast<int>(options.size());
    benchmark::Initialize(&optionCount, options.data());
    CMedians medians(figures);
    benchmark::RunSpecifiedBenchmarks(&medians);

    std::vector<Verdict> verdicts;
    for (const Bound& bound : AllBounds()) {
        const auto verdict = Judge(bound, figures);
        if (verdict.has_value()) {
            verdicts.push_back(*verdict);
        }
    }
    PrintTable(verdicts);
    WriteJson(arguments[1], verdicts, figures);
    return EXIT_SUCCESS;
}
