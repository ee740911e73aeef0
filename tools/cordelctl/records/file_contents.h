// Files by what they hold: which of them hold the same, and which are fonts of one PostScript name.

#pragma once

#include "document/document.h"
#include "verification/file_finding.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <string>
#include <vector>

struct FileContent {
    std::string fileID;
    std::filesystem::path path; // on this computer
    std::uint64_t size = 0;
    std::vector<std::string> postScriptNames; // of the fonts in it
};

/// A listed file as its row tells of it.
FileContent RecordedContent(const Row& row);

class CFileContents {
public:
    void Add(FileContent file);

    /// What of this file is in one that was added before. Only files of the same size are read. Throws
    /// std::runtime_error when this one cannot be.
    FileFindings Compare(const FileContent& file);

private:
    struct FilesOfOneSize {
        std::vector<FileContent> unread;
        std::map<std::string, std::string> fileIDs; // by digest
    };

    std::map<std::uint64_t, FilesOfOneSize> m_sizes;
    std::map<std::string, std::string> m_names; // FileIDs by PostScript name
};
