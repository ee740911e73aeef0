#include "records/file_contents.h"

#include "digests/digest.h"
#include "system/system.h"
#include "text/number_text.h"

#include <set>
#include <stdexcept>

FileContent RecordedContent(const Row& row) {
    return {row.Value("FileID"),
            host::PathOf(row.Value("LocalPath")),
            static_cast<std::uint64_t>(ParseSize(row.Value("Size")).value_or(0)),
            {row.Value("PostScriptName")}};
}

void CFileContents::Add(FileContent file) {
    for (const std::string& name : file.postScriptNames) {
        if (!name.empty()) {
            m_names.emplace(name, file.fileID);
        }
    }
    m_sizes[file.size].unread.push_back(std::move(file));
}

FileFindings CFileContents::Compare(const FileContent& file) {
    if (const auto same = m_sizes.find(file.size); same != m_sizes.end()) {
        auto& [unread, fileIDs] = same->second;
        for (const FileContent& other : unread) {
            try {
                fileIDs.emplace(Sha256OfFile(other.path), other.fileID);
            } catch (const std::runtime_error&) {
                continue; // one that cannot be read is not known to be a copy
            }
        }
        unread.clear();
        if (const auto copy = fileIDs.find(Sha256OfFile(file.path)); copy != fileIDs.end()) {
            return {{Cause::SameContent, "file " + copy->second + " is the same"}};
        }
    }
    FileFindings findings;
    std::set<std::string> told;
    for (const std::string& name : file.postScriptNames) {
        const auto other = m_names.find(name);
        if (other != m_names.end() && told.insert(name).second) {
            findings.push_back({Cause::SamePostScriptName, "file " + other->second + " is a font " + name + ", too"});
        }
    }
    return findings;
}
