// Makes the per-user copies of documents.

#include "document/copies.h"

#include "failure.h"

#include <vector>

namespace {

/// The folders that are not there yet, to be taken away again when nothing comes of it.
class CNewFolders {
public:
    explicit CNewFolders(const std::filesystem::path& folder) {
        std::vector<std::filesystem::path> missing;
        for (auto path = folder; !path.empty() && !std::filesystem::exists(path); path = path.parent_path()) {
            missing.push_back(path);
        }
        m_made.assign(missing.rbegin(), missing.rend());
    }
    ~CNewFolders() {
        std::error_code none;
        for (auto path = m_made.rbegin(); !m_bKept && path != m_made.rend(); ++path) {
            std::filesystem::remove(*path, none);
        }
    }
    CNewFolders(const CNewFolders&) = delete;
    CNewFolders& operator=(const CNewFolders&) = delete;
    void Keep() noexcept { m_bKept = true; }

private:
    std::vector<std::filesystem::path> m_made;
    bool m_bKept = false;
};

} // namespace

void RequireCopyable(const DocumentPlace& place) {
    if (place.perUser.empty()) {
        throw CFailure(ExitCode::NotKept, "you have no folder for application data",
                       "set HOME, or XDG_CONFIG_HOME to an absolute path");
    }
    if (!std::filesystem::is_regular_file(place.installed)) {
        throw CFailure(ExitCode::NoDocument,
                       place.title + " is not installed: " + host::TextOf(place.installed) + " is missing",
                       "see which are: cordelctl paths");
    }
}

void MakeCopy(const DocumentPlace& place, const std::string& bytes, Present present) {
    try {
        CNewFolders folders(place.perUser.parent_path());
        std::filesystem::create_directories(place.perUser.parent_path());
        host::WriteWhole(place.perUser, bytes, {}, [&] {
            return present == Present::Replaced ||
                   std::filesystem::symlink_status(place.perUser).type() == std::filesystem::file_type::not_found;
        });
        folders.Keep();
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, std::string("no per-user copy could be made: ") + error.what(),
                       "see whether the folder may be written and the disk has room");
    }
}

std::string EmptyDocument() {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Cordelbox>\n";
    for (const ContainerSchema& container : Containers()) {
        if (container.inStrings) {
            continue;
        }
        const std::string name(container.name);
        text += "  <" + name + (container.single ? ">\n    <Item" : "/>\n");
        if (container.single) { // such values are overwritten, and never added
            for (const AttributeSchema& attribute : container.attributes) {
                text += " " + std::string(attribute.name) + "=\"" + std::string(DefaultOf(attribute)) + "\"";
            }
            text += "/>\n  </" + name + ">\n";
        }
    }
    return text + "</Cordelbox>\n";
}
