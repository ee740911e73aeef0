// Opening a document, and saving it after one attribute changed.

#include "host.h"
#include "parsers.h"
#include "projects.h"
#include "raw_save.h"
#include "workloads.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <memory>

namespace fs = std::filesystem;

namespace {

constexpr int kRepetitions = 15;

/// Registers work of which only a part is timed: it returns the seconds of that part, or less than 0 when it failed.
void RegisterTimed(const std::string& name, int iterations, std::function<double()> work) {
    const auto run = [work = std::move(work)](benchmark::State& state) {
        for ([[maybe_unused]] const auto _ : state) {
            const double seconds = work();
            if (seconds < 0) {
                state.SkipWithError("failed");
                break;
            }
            state.SetIterationTime(seconds);
        }
    };
    benchmark::RegisterBenchmark(name.c_str(), run)->Repetitions(kRepetitions)->Iterations(iterations)->UseManualTime();
}

template <class Work>
double SecondsOf(Work work) {
    const auto start = std::chrono::steady_clock::now();
    const bool bDone = work();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - start;
    return bDone ? time.count() : -1;
}

void RegisterOpening(CHost& host, int rows, int iterations) {
    const std::string document = "Opened-" + std::to_string(rows) + ".xml";
    const auto bytes = std::make_shared<const std::string>(FontProject(rows));
    const fs::path file = host.Install(document, *bytes);
    const auto open = [&host, document] {
        const double seconds = SecondsOf([&] {
            host.MakeCurrent(document);
            return true;
        });
        host.Close(document);
        return seconds;
    };
    RegisterTimed(WorkloadName("opening", rows), iterations, open);
    RegisterTimed(WorkloadName("opening", rows, "Expat"), iterations,
                  [bytes] { return SecondsOf([&] { return IsWellFormedForExpat(*bytes); }); });
    RegisterTimed(WorkloadName("opening", rows, "libxml2"), iterations, [file] {
        Libxml2Tree tree;
        return SecondsOf([&] {
            tree = ReadByLibxml2(file);
            return tree != nullptr;
        });
    });
}

void RegisterSaving(CHost& host) {
    const std::string document = "Saved-" + std::to_string(kLarge) + ".xml";
    const auto bytes = std::make_shared<const std::string>(FontProject(kLarge));
    host.Install(document, *bytes);
    const fs::path copy = host.CopyForUser(document, *bytes);
    const auto save = [&host, document, bOther = false]() mutable {
        host.MakeCurrent(document);
        bOther = !bOther;
        const char* const value = bOther ? "F000001" : "F000002";
        return SecondsOf([&] { return WriteAttr("Property", "FileID", value) == 1; });
    };
    RegisterTimed(WorkloadName("WriteAttr with its save", kLarge), 1, save);

    const fs::path rawFile = fs::path(copy).replace_extension(".raw");
    const fs::path treeFile = fs::path(copy).replace_extension(".tree");
    const auto tree = std::make_shared<pugi::xml_document>();
    tree->load_buffer(bytes->data(), bytes->size());
    RegisterTimed(WorkloadName("WriteAttr with its save", kLarge, "raw"), 1,
                  [rawFile, bytes] { return SecondsOf([&] { return ReplaceByBytes(rawFile, *bytes); }); });
    RegisterTimed(WorkloadName("WriteAttr with its save", kLarge, "pugixml"), 1,
                  [treeFile, tree] { return SecondsOf([&] { return ReplaceByTree(treeFile, *tree); }); });
}

} // namespace

void RegisterDocumentWorkloads(CHost& host) {
    RegisterOpening(host, kLarge, 1);
    RegisterOpening(host, kEveryday, 50);
    RegisterSaving(host);
}
