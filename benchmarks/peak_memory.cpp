#include "peak_memory.h"

#include "host.h"
#include "parsers.h"
#include "projects.h"
#include "workloads.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

constexpr const char* kDocument = "Peak.xml";
constexpr const char* kOption = "--peak-memory-of";
constexpr const char* kLibrary = "library";
constexpr const char* kLibxml2 = "libxml2";
constexpr double kBytesPerUnit = 1024; // of ru_maxrss

/// Runs this program again and returns its peak.
double PeakOf(const char* whose, const char* document) {
    const pid_t child = fork();
    if (child == 0) {
        execl("/proc/self/exe", "cordelbox_benchmarks", kOption, whose, document, nullptr);
        _exit(EXIT_FAILURE);
    }
    int status = 0;
    rusage usage{};
    if (child < 0 || wait4(child, &status, 0, &usage) != child || status != 0) {
        std::fprintf(stderr, "no peak for %s\n", whose);
        return 0;
    }
    return static_cast<double>(usage.ru_maxrss) * kBytesPerUnit;
}

bool ReadContainers() {
    CHost host;
    host.MakeCurrent(kDocument);
    return !GetAttrValue("Property", "FileID").empty() &&
           GetAttrValue1("Files", "FileID", FontFileId(kLarge - 1).c_str(), "Copyright").size() > 0;
}

} // namespace

void MeasurePeaks(Figures& figures) {
    std::string document;
    {
        CHost host;
        const std::string project = FontProject(kLarge);
        document = host.Install(kDocument, project);
        figures[WorkloadName("peak memory", kLarge, "file")] = static_cast<double>(project.size());
    }
    for (const char* const whose : {kLibrary, kLibxml2}) {
        figures[WorkloadName("peak memory", kLarge, whose)] = PeakOf(whose, document.c_str());
    }
}

bool RunAsChild(int argumentCount, char** arguments) {
    if (argumentCount != 4 || std::strcmp(arguments[1], kOption) != 0) {
        return false;
    }
    const bool bDone =
        std::strcmp(arguments[2], kLibrary) == 0 ? ReadContainers() : ReadByLibxml2(arguments[3]) != nullptr;
    std::exit(bDone ? EXIT_SUCCESS : EXIT_FAILURE);
}
