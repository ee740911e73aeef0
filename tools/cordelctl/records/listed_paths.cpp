// The local paths of the listed files.

#include "records/listed_paths.h"

#include "platform/code_page.h"
#include "system/system.h"

#include <algorithm>

namespace {

/// The ASCII characters of a path that are the same in every path that equals it: letters in one case, and without
/// those two that other characters become in it.
std::string BucketOf(const std::string& path) {
    std::string bucket;
    for (const char c : path) {
        const char folded = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
        if (static_cast<unsigned char>(folded) < 0x80 && folded != 'i' && folded != 'k') {
            bucket += folded;
        }
    }
    return bucket;
}

} // namespace

CListedPaths::CListedPaths(CDocument& document) {
    for (const Row& row : document.Rows("Files")) {
        if (const std::string* const path = row.Find("LocalPath")) {
            Add(*path);
        }
    }
}

bool CListedPaths::Has(const std::string& path) const {
    const auto bucket = m_paths.find(BucketOf(path));
    const std::string text = host::ToCodePage(path);
    return bucket != m_paths.end() &&
           std::any_of(bucket->second.begin(), bucket->second.end(), [&](const std::string& listed) {
               return platform::EqualIgnoringCase(host::ToCodePage(listed), text);
           });
}

void CListedPaths::Add(const std::string& path) { m_paths[BucketOf(path)].push_back(path); }
