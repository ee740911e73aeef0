// The local paths of the listed files, to find out whether one is listed, letters compared in one case. As
// IsPathConflict does, but for thousands of files.

#pragma once

#include "document/document.h"

#include <string>
#include <unordered_map>
#include <vector>

class CListedPaths {
public:
    explicit CListedPaths(CDocument& document);
    bool Has(const std::string& path) const;
    void Add(const std::string& path);

private:
    std::unordered_map<std::string, std::vector<std::string>> m_paths; // by what no case changes
};
