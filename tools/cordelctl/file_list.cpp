// The files of the current document's "Files".

#include "file_list.h"

#include "failure.h"
#include "lookup.h"
#include "platform/platform.h"

#include <algorithm>
#include <memory>
#include <set>

namespace {

constexpr int kLargestGap = 100;

bool IsListed(const std::string& fileID) { return RowExists("Files", "FileID", fileID); }

/// Releases what GetFiles has linked to a record.
void FreeChain(const FileItem& first) {
    FileItem link{};
    for (FileItem* next = first.next; next != nullptr;) {
        link.next = next;
        next = next->next;
        FreeFileItem(&link);
    }
}

std::vector<int> NumberedFileIDs() {
    std::vector<int> numbers;
    for (int number = 1, last = 0; number - last <= kLargestGap; ++number) {
        if (IsListed(std::to_string(number))) {
            numbers.push_back(number);
            last = number;
        }
    }
    return numbers;
}

} // namespace

std::vector<ListedFile> ReadTickedFiles() {
    std::vector<ListedFile> files;
    const auto first = std::make_unique<FileItem>();
    const int32_t count = GetFiles(first.get());
    const FileItem* item = first.get();
    for (int32_t i = 0; i < count; ++i, item = item->next) {
        const std::string fileID = item->FileID;
        files.push_back({fileID, item->Component, item->ID, item->Type, item->Volume, item->Path, item->LocalPath,
                         FileValue(fileID, "Size"), FileValue(fileID, "CreateDate"), true});
    }
    if (count > 0) {
        FreeChain(*first);
    }
    return files;
}

std::vector<ListedFile> ReadAllFiles() {
    std::vector<ListedFile> files;
    std::set<std::string> found;
    const auto add = [&](const std::string& fileID) {
        if (found.insert(fileID).second && IsListed(fileID)) {
            files.push_back(ReadFile(fileID));
        }
    };
    for (const int number : NumberedFileIDs()) {
        add(std::to_string(number));
    }
    for (const auto& fileID : {FindValue("Files", "FileID"), FindValueWhere("Files", "checked", "0", "FileID")}) {
        if (fileID) {
            add(*fileID);
        }
    }
    for (const auto& ticked : ReadTickedFiles()) {
        add(ticked.fileID);
    }
    return files;
}

ListedFile ReadFile(const std::string& fileID) {
    const auto value = [&](const char* attribute) { return FileValue(fileID, attribute); };
    return {fileID,        value("Component"), value("ID"),   value("Type"),       value("Volume"),
            value("Path"), value("LocalPath"), value("Size"), value("CreateDate"), value("checked") == "1"};
}

std::string FileValue(const std::string& fileID, const std::string& attribute) {
    return FindValueWhere("Files", "FileID", fileID, attribute).value_or("");
}

int NextFileID(int above) {
    do {
        ++above;
    } while (IsListed(std::to_string(above)));
    return above;
}

int LastFileID() {
    const auto numbers = NumberedFileIDs();
    return numbers.empty() ? 0 : numbers.back();
}

std::string ResolveFile(const std::string& nameOrPath) {
    if (IsListed(nameOrPath)) {
        return nameOrPath;
    }
    std::error_code none;
    const auto path = std::filesystem::weakly_canonical(platform::PathOf(nameOrPath), none);
    if (const auto fileID = FindValueWhere("Files", "LocalPath", platform::TextOf(path), "FileID")) {
        return *fileID;
    }
    throw CFailure(ExitCode::Missing, "no listed file has the FileID or the path \"" + nameOrPath + "\"",
                   "see what is listed: cordelctl files list --all");
}

int LowestFreeID(const std::string& type) {
    std::set<std::string> taken;
    for (const auto& file : ReadAllFiles()) {
        if (file.type == type) {
            taken.insert(file.id);
        }
    }
    int id = 0;
    while (taken.count(std::to_string(id)) != 0) {
        ++id;
    }
    return id;
}
