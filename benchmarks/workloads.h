// What is measured. A workload's name is what it does, its number of rows and whose work it is, with slashes between:
// "CheckID/4096/pugixml". The bounds are on these names.

#pragma once

#include <string>

class CHost;

/// Lookups in an open document, and the growth of one. `host` must live until they have run.
void RegisterLookupWorkloads(CHost& host);

/// Opening and saving a document.
void RegisterDocumentWorkloads(CHost& host);

/// What the tool does with fonts before they are sent: `kManyFonts` of those that are installed.
inline constexpr int kManyFonts = 1000;
void RegisterFontWorkloads();

inline std::string WorkloadName(const std::string& work, int rows, const std::string& whose = "library") {
    return work + "/" + std::to_string(rows) + "/" + whose;
}
