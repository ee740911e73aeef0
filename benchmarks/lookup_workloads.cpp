// The functions of the library that look something up for every row, or in every row, of a list.

#include "host.h"
#include "plain_lookups.h"
#include "projects.h"
#include "sqlite_lookups.h"
#include "workloads.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <functional>
#include <memory>

namespace {

constexpr int kRepetitions = 9;
constexpr double kSeconds = 0.1;    // of each repetition
constexpr int kSlowRepetitions = 3; // of work that takes seconds
constexpr int kAddedFiles = 200;    // to one project, in one repetition

using Work = std::function<int()>;

/// Registers work that must give `expected`; `prepare` runs before each repetition, untimed.
benchmark::internal::Benchmark* Register(const std::string& name, std::function<void()> prepare, Work work,
                                         int expected) {
    const auto run = [=](benchmark::State& state) {
        prepare();
        for ([[maybe_unused]] const auto _ : state) {
            if (work() != expected) {
                state.SkipWithError("wrong result");
                break;
            }
        }
    };
    return benchmark::RegisterBenchmark(name.c_str(), run);
}

/// Registers work of the library on an installed document.
void RegisterOnDocument(CHost& host, const std::string& name, const std::string& document, Work work, int expected) {
    const auto prepare = [&host, document, work] {
        host.MakeCurrent(document);
        work(); // makes the table and the index
    };
    Register(name, prepare, work, expected)->Repetitions(kRepetitions)->MinTime(kSeconds);
}

void RegisterOnFonts(CHost& host, int rows) {
    const std::string document = "Fonts-" + std::to_string(rows) + ".xml";
    host.Install(document, FontProject(rows));
    const auto registerCall = [&](const std::string& name, Work work, int expected) {
        RegisterOnDocument(host, WorkloadName(name, rows), document, std::move(work), expected);
    };
    registerCall(
        "CheckID", [] { return CheckID(nullptr, nullptr, nullptr); }, 1);
    registerCall(
        "IdsAreValid", [] { return IdsAreValid(nullptr); }, 1);
    registerCall(
        "GetValidID", [] { return GetValidID(0); }, rows < kLarge ? rows : -1);
    const auto findPath = [] { return static_cast<int>(IsPathConflict("C:\\Fonts\\Univers\\new.ttf")); };
    registerCall("IsPathConflict", findPath, 0);
}

void RegisterOnProfiles(CHost& host, int rows) {
    const std::string document = "Profiles-" + std::to_string(rows) + ".xml";
    host.Install(document, ProfileProject(rows));
    RegisterOnDocument(
        host, WorkloadName("GetAvailICMID", rows), document, [] { return GetAvailICMID(0); }, rows);
}

void RegisterOnJobs(CHost& host, int rows) {
    const std::string document = "Jobs-" + std::to_string(rows) + ".xml";
    host.Install(document, PrinterWithJobs(rows));
    const auto takeJobs = [] {
        int32_t count = 0;
        DelJobList(GetJobs(&count));
        return static_cast<int>(count);
    };
    RegisterOnDocument(host, WorkloadName("GetJobs", rows), document, takeJobs, rows);
}

void RegisterPlainLookups(int rows) {
    const auto peer = std::make_shared<CPlainLookups>(FontProject(rows));
    const auto registerCall = [rows](const std::string& name, Work work, int expected) {
        Register(
            WorkloadName(name, rows, "pugixml"), [] {}, std::move(work), expected)
            ->Repetitions(kSlowRepetitions)
            ->Iterations(1);
    };
    registerCall(
        "CheckID", [peer] { return peer->CheckId(); }, 1);
    registerCall(
        "IdsAreValid", [peer] { return peer->IdsAreValid(); }, rows);
}

void RegisterSqliteLookups(int rows) {
    const auto peer = std::make_shared<CSqliteLookups>(rows);
    const auto registerCall = [rows](const std::string& name, const Work& work, int expected) {
        Register(WorkloadName(name, rows, "SQLite"), work, work, expected)
            ->Repetitions(kRepetitions)
            ->MinTime(kSeconds);
    };
    registerCall(
        "CheckID", [peer] { return peer->CheckId(); }, 1);
    registerCall(
        "IdsAreValid", [peer] { return peer->IdsAreValid(); }, rows);
}

/// IdsAreValid looks every file up twice.
void RegisterOnHostile(CHost& host, int rows) {
    const auto registerOn = [&](const std::string& name, const std::string& project) {
        const std::string document = name + "-" + std::to_string(rows) + ".xml";
        host.Install(document, project);
        RegisterOnDocument(
            host, WorkloadName(name, rows), document, [] { return IdsAreValid(nullptr); }, 1);
    };
    registerOn("without IDs", ProjectWithoutIds(rows));
    registerOn("with a twin", ProjectWithATwin(rows));
    registerOn("of collisions", ProjectOfCollisions(rows));
}

/// WritePrjFile of one more file. The project has no per-user copy, so that nothing is written to disk.
void RegisterAddedFiles(CHost& host, int rows) {
    const std::string document = "Growing-" + std::to_string(rows) + ".xml";
    host.Install(document, FontProject(rows));
    const auto run = [&host, rows, document](benchmark::State& state) {
        host.MakeCurrent(document);
        int row = rows;
        TrueTypeDetail detail{};
        FileItem file = FontRecord(row, detail);
        WritePrjFile(&file); // makes the table and the index
        for ([[maybe_unused]] const auto _ : state) {
            file = FontRecord(++row, detail);
            const auto start = std::chrono::steady_clock::now();
            WritePrjFile(&file);
            state.SetIterationTime(std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count());
        }
        host.Close(document);
    };
    benchmark::RegisterBenchmark(WorkloadName("WritePrjFile", rows).c_str(), run)
        ->Repetitions(kRepetitions)
        ->Iterations(kAddedFiles)
        ->UseManualTime();
}

} // namespace

void RegisterLookupWorkloads(CHost& host) {
    for (const int rows : {kSmall, kMedium, kLarge}) {
        RegisterOnFonts(host, rows);
        RegisterOnProfiles(host, rows);
        RegisterOnJobs(host, rows);
    }
    RegisterOnHostile(host, kHostile);
    RegisterOnHostile(host, 2 * kHostile);
    RegisterPlainLookups(kSmall);
    RegisterPlainLookups(kMedium);
    RegisterSqliteLookups(kLarge);
    RegisterAddedFiles(host, kSmall);
    RegisterAddedFiles(host, kLarge);
}
