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
    DocumentPlace place;

    bool IsChanged() const { return StampOf(place.perUser) != before; }
};

/// The documents of a note. In a folder that others may write to, it may not be one of this tool's: no other file than
/// a document of the user's is taken from it.
std::vector<Noted> ReadNote(const std::filesystem::path& note, std::string& command, std::string& time) {
    std::vector<Noted> documents;
    const std::vector<DocumentPlace> places = AllDocuments({});
    std::istringstream lines(host::ReadBytes(note));
    std::getline(lines, time);
    std::getline(lines, command);
    Noted noted;
    std::string path;
    while (lines >> noted.number >> noted.before >> std::ws && std::getline(lines, path)) {
        const auto place = std::find_if(places.begin(), places.end(),
                                        [&](const DocumentPlace& one) { return one.perUser == host::PathOf(path); });
        if (place != places.end()) {
            noted.place = *place;
            documents.push_back(noted);
        }
    }
    return documents;
}

std::string Titles(const std::vector<Noted>& documents, bool bChanged) {
    std::string titles;
    for (const Noted& noted : documents) {
        if (noted.IsChanged() == bChanged) {
            titles += (titles.empty() ? "" : " and ") + noted.place.title;
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
        if (noted.place.perUser != place.perUser &&
            !locks.emplace_back().Try(CHistory::LockFile(noted.place.perUser), command)) {
            return {};
        }
    }
    const std::string changed = Titles(documents, true);
    const std::string unchanged = Titles(documents, false);
    for (const Noted& noted : documents) {
        CHistory(noted.place).Settle(noted.number, noted.IsChanged());
        std::filesystem::remove(NoteOf(noted.place.perUser), none);
    }
    std::filesystem::remove(own, none);
    if (changed.empty() || unchanged.empty()) {
        return {}; // all or nothing
    }
    return "\"" + command + "\" was ended before it was done, at " + time + ": " + changed + " has its changes, " +
           unchanged + " has not; to take them back there: cordelctl undo";
}
