// Which file is loaded and which is saved, and why a change does not last.

#include "doctor/checks.h"

#include "system/system.h"

namespace {

std::string Utf8(const std::filesystem::path& path) { return host::TextOf(path); }

Finding Whole(Level level, const char* check, std::string what, std::string consequence, std::string mend) {
    return {level, check, {}, {}, {}, std::move(what), std::move(consequence), std::move(mend)};
}

void CheckInstalled(const DocumentPlace& place, Findings& findings) {
    if (std::filesystem::is_regular_file(place.installed)) {
        return;
    }
    const bool folder = std::filesystem::is_directory(place.installed);
    const std::string what = folder ? "The installed document is a folder: " : "There is no installed document: ";
    if (place.IsKept()) {
        findings.push_back(Whole(Level::Note, "not-installed", what + Utf8(place.installed) + ".",
                                 "The per-user copy serves alone; nothing can be put in its place when it breaks.",
                                 "Install the document beside the executable."));
    } else {
        findings.push_back(Whole(Level::Error, "absent", what + Utf8(place.installed) + ".",
                                 "The document cannot be opened: the function that opens it returns null.",
                                 "Install the document there, or name the one that is there."));
    }
}

void CheckPaths(const DocumentPlace& place, Findings& findings) {
    if (!place.IsWithinReach()) {
        findings.push_back(Whole(Level::Error, "path-too-long",
                                 "The path is longer than the library handles: " + Utf8(place.Loaded()) + ".",
                                 "The document cannot be opened.",
                                 "Install the program, or keep the user's settings, in a folder with a shorter path."));
    }
}

/// Of a document that hosts change, a copy that is not loaded loses changes; of the texts, it is only not seen.
void AddUnusedCopy(const DocumentPlace& place, DocumentKind kind, const char* check, const char* reason,
                   const char* mend, Findings& findings) {
    const bool changes = kind != DocumentKind::Strings;
    findings.push_back(Whole(changes ? Level::Error : Level::Warning, check,
                             "The per-user copy " + std::string(reason) + ": " + Utf8(place.perUser) + ".",
                             changes ? "The installed document is loaded in its place: what was saved before is not "
                                       "seen, and changes last only until the document is released."
                                     : "The installed texts are shown, not those of the copy.",
                             mend));
}

void CheckPerUser(const DocumentPlace& place, DocumentKind kind, Findings& findings) {
    switch (StateOf(place.perUser)) {
    case FileState::Writable:
        return;
    case FileState::Absent:
        if (kind != DocumentKind::Strings) {
            findings.push_back(Whole(
                Level::Warning, "no-per-user-copy", "There is no per-user copy: " + Utf8(place.perUser) + ".",
                "Changes last only until the document is released; nothing is saved.", "Create it: cordelctl init."));
        }
        return;
    case FileState::NotAFile:
        AddUnusedCopy(place, kind, "copy-is-no-file", "is no file, but a folder or a device",
                      "Move it away and run: cordelctl init.", findings);
        return;
    case FileState::NotWritable:
        AddUnusedCopy(place, kind, "copy-is-read-only", "may not be read and written",
                      "Give yourself read and write permission for it.", findings);
        return;
    case FileState::InUse:
        AddUnusedCopy(place, kind, "copy-is-locked", "is held by another program",
                      "End that program, or wait until it is done.", findings);
        return;
    }
}

} // namespace

void CheckPlace(const DocumentPlace& place, DocumentKind kind, Findings& findings) {
    if (place.perUser.empty()) {
        findings.push_back(Whole(Level::Error, "no-per-user-folder", "You have no folder for application data.",
                                 "The library opens no document.",
                                 "Set HOME, or XDG_CONFIG_HOME to an absolute path."));
        return;
    }
    CheckPaths(place, findings);
    CheckInstalled(place, findings);
    CheckPerUser(place, kind, findings);
}
