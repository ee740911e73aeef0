#include "transaction/unfinished.h"

#include "system/system.h"

#include <algorithm>
#include <sstream>

namespace {

std::filesystem::path NoteOf(const std::filesystem::path& document) {
    auto file = CHistory::LockFile(document);
    file.replace_extension(".unfinished");
    return file;
}

/// A document as a note tells of it.
struct Noted {
    unsigned number = 0; // of the state before; 0: none was kept
    platform::FileStamp before = {};
    std::string title;
    std::filesystem::path document;

    bool IsChanged() const { return StampOf(document) != before; }
};

std::vector<Noted> ReadNote(const std::filesystem::path& note, std::string& command, std::string& time) {
    std::vector<Noted> documents;
    std::istringstream lines(host::ReadBytes(note));
    std::getline(lines, time);
    std::getline(lines, command);
    Noted noted;
    std::string path;
    while (lines >> noted.number >> noted.before >> std::ws && std::getline(lines, noted.title) &&
           std::getline(lines, path)) {
        noted.document = host::PathOf(path);
        documents.push_back(noted);
    }
    return documents;
}

std::string Titles(const std::vector<Noted>& documents, bool bChanged) {
    std::string titles;
    for (const Noted& noted : documents) {
        if (noted.IsChanged() == bChanged) {
            titles += (titles.empty() ? "" : " and ") + noted.title;
        }
    }
    return titles;
}

} // namespace

CUnfinished::~CUnfinished() {
    for (const auto& note : m_notes) {
        std::error_code none;
        std::filesystem::remove(note, none);
    }
}

void CUnfinished::Begin(const std::string& command, const std::vector<SavedDocument>& documents) {
    std::ostringstream text;
    text << TimeNow() << '\n' << command << '\n';
    for (const SavedDocument& document : documents) {
        text << (document.state ? document.state->number : 0) << ' ' << document.before << '\n'
             << document.place.title << '\n'
             << host::TextOf(document.place.perUser) << '\n';
    }
    for (const SavedDocument& document : documents) {
        const auto note = NoteOf(document.place.perUser);
        m_notes.push_back(note);
        host::PutFile(note, text.str());
    }
}

std::string SettleUnfinished(const DocumentPlace& place) {
    const auto own = NoteOf(place.perUser);
    std::error_code none;
    if (!std::filesystem::is_regular_file(std::filesystem::symlink_status(own, none))) {
        return {};
    }
    std::string command;
    std::string time;
    const std::vector<Noted> documents = ReadNote(own, command, time);
    std::vector<host::CFileLock> locks;
    for (const Noted& noted : documents) {
        if (noted.document != place.perUser && !locks.emplace_back().Try(CHistory::LockFile(noted.document), command)) {
            return {};
        }
    }
    const std::string changed = Titles(documents, true);
    const std::string unchanged = Titles(documents, false);
    for (const Noted& noted : documents) {
        CHistory(noted.document).Settle(noted.number, noted.IsChanged());
        std::filesystem::remove(NoteOf(noted.document), none);
    }
    std::filesystem::remove(own, none);
    if (changed.empty() || unchanged.empty()) {
        return {}; // all or nothing
    }
    return "\"" + command + "\" was ended before it was done, at " + time + ": " + changed + " has its changes, " +
           unchanged + " has not; to take them back there: cordelctl undo";
}
