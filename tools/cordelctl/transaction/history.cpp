// The former states of a document.

#include "transaction/history.h"

#include "failure.h"
#include "text/number_text.h"
#include "text/time_text.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <cstdio>
#include <sstream>

namespace {

constexpr const char* kFolder = ".cordelctl";
constexpr std::size_t kMostStates = 50;
constexpr std::uint64_t kMostBytes = std::uint64_t{64} << 20;

/// What lies where a link leads is not the tool's to write or remove.
bool IsLink(const std::filesystem::path& path) {
    return std::filesystem::is_symlink(std::filesystem::symlink_status(path));
}

/// Owner only: what others may do with the documents they can see in the documents' own rights.
void MakeFolder(const std::filesystem::path& folder) {
    if (IsLink(folder)) {
        throw std::filesystem::filesystem_error("a link stands in the folder's place", folder,
                                                std::make_error_code(std::errc::not_a_directory));
    }
    if (std::filesystem::create_directories(folder)) {
        std::filesystem::permissions(folder, std::filesystem::perms::owner_all);
    }
}

std::string NameOfNumber(unsigned number) {
    char text[16];
    std::snprintf(text, sizeof text, "%06u", number);
    return text;
}

std::filesystem::path NotesOf(const HistoryState& state) {
    auto path = state.file;
    path.replace_extension(".txt");
    return path;
}

std::size_t MostStates() {
    const auto number = ParseSize(host::Variable("CORDELCTL_HISTORY"));
    return number ? static_cast<std::size_t>(*number) : kMostStates;
}

std::uint64_t MostBytes() {
    const auto bytes = ParseSizeWithUnit(host::Variable("CORDELCTL_HISTORY_BYTES"));
    return bytes ? static_cast<std::uint64_t>(*bytes) : kMostBytes;
}

std::optional<unsigned> NumberOf(const std::string& text) {
    unsigned number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() && !text.empty() ? std::optional(number)
                                                                                     : std::nullopt;
}

[[noreturn]] void FailToKeep(const std::filesystem::filesystem_error& error) {
    throw CFailure(ExitCode::NotKept,
                   "nothing was changed: the state before could not be kept: " + std::string(error.what()),
                   "see whether the folder may be written and the disk has room; to change without keeping states: "
                   "CORDELCTL_HISTORY=0");
}

} // namespace

std::ostream& operator<<(std::ostream& stream, const platform::FileStamp& stamp) {
    return stream << stamp.device << ' ' << stamp.file << ' ' << stamp.size << ' ' << stamp.modified << ' '
                  << stamp.changed;
}

std::istream& operator>>(std::istream& stream, platform::FileStamp& stamp) {
    return stream >> stamp.device >> stamp.file >> stamp.size >> stamp.modified >> stamp.changed;
}

std::string TimeNow() { return TextOfTime(std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now())); }

CHistory::CHistory(const DocumentPlace& place)
    : m_document(place.perUser), m_folder(place.perUser.parent_path() / kFolder / place.perUser.filename()),
      m_undone(m_folder / "undone") {}

std::filesystem::path CHistory::LockFile(const std::filesystem::path& document) {
    const auto folder = document.parent_path() / kFolder;
    MakeFolder(folder);
    auto file = folder / document.filename();
    file += ".lock";
    return file;
}

std::vector<HistoryState> CHistory::States() const { return StatesIn(m_folder); }

HistoryState CHistory::State(const std::string& number) const {
    const auto wanted = NumberOf(number);
    const auto states = States();
    const auto found =
        std::find_if(states.begin(), states.end(), [&](const HistoryState& state) { return state.number == wanted; });
    if (!wanted || found == states.end()) {
        throw CFailure(ExitCode::Missing, "there is no state \"" + number + "\"",
                       "see which there are: cordelctl history");
    }
    return *found;
}

std::vector<HistoryState> CHistory::StatesIn(const std::filesystem::path& folder) const {
    std::vector<HistoryState> states;
    if (IsLink(folder)) {
        return states;
    }
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator(folder, none)) {
        const auto number = NumberOf(host::TextOf(entry.path().stem()));
        if (!number || entry.path().extension() != ".xml" || !entry.is_regular_file(none) || entry.is_symlink(none)) {
            continue;
        }
        HistoryState state;
        state.number = *number;
        state.file = entry.path();
        state.size = entry.file_size(none);
        try {
            std::istringstream notes(host::ReadBytes(NotesOf(state)));
            std::getline(notes, state.time);
            std::getline(notes, state.command);
            notes >> state.after >> state.before;
        } catch (const std::filesystem::filesystem_error&) {
            state.command = "?"; // its notes are lost, it is not
        }
        states.push_back(std::move(state));
    }
    std::sort(states.begin(), states.end(),
              [](const HistoryState& left, const HistoryState& right) { return left.number < right.number; });
    return states;
}

void CHistory::Write(const HistoryState& state) const {
    std::ostringstream notes;
    notes << state.time << '\n' << state.command << '\n';
    notes << state.after << '\n' << state.before << '\n';
    host::PutFile(NotesOf(state), notes.str());
}

HistoryState CHistory::KeepIn(const std::filesystem::path& folder, unsigned number, const std::string& command) const {
    MakeFolder(m_folder);
    MakeFolder(folder);
    HistoryState state{
        number, TimeNow(), command, 0, {}, StampOf(m_document), folder / (NameOfNumber(number) + ".xml")};
    try {
        Write(state); // first: notes by themselves are no state
        host::PutFile(state.file, host::ReadBytes(m_document), m_document);
    } catch (const std::filesystem::filesystem_error&) {
        Drop(state);
        throw;
    }
    return state;
}

std::optional<HistoryState> CHistory::Keep(const std::string& command) {
    if (MostStates() == 0) {
        return std::nullopt;
    }
    try {
        const auto states = States();
        const auto undone = StatesIn(m_undone);
        const unsigned last =
            std::max(states.empty() ? 0 : states.back().number, undone.empty() ? 0 : undone.back().number);
        return KeepIn(m_folder, last + 1, command);
    } catch (const std::filesystem::filesystem_error& error) {
        FailToKeep(error);
    }
}

void CHistory::ForgetOld() const {
    const auto undone = StatesIn(m_undone);
    std::for_each(undone.begin(), undone.end(), [this](const HistoryState& old) { Drop(old); });
    const auto states = States();
    std::size_t count = 0;
    std::uint64_t bytes = 0;
    std::for_each(states.rbegin(), states.rend(), [&](const HistoryState& state) {
        bytes += count > 0 ? state.size : 0; // the newest always stays
        ++count;
        if (count > MostStates() || bytes > MostBytes()) {
            Drop(state);
        }
    });
}

void CHistory::NoteDone(HistoryState& state) const {
    state.after = StampOf(m_document);
    try {
        Write(state);
    } catch (const std::filesystem::filesystem_error&) {
        // Undoing it will want --force: nothing is lost.
    }
}

void CHistory::Settle(unsigned number, bool changed) const {
    auto states = States();
    for (HistoryState& state : states) {
        if (state.number == number && state.after == platform::FileStamp()) {
            if (changed) {
                NoteDone(state);
            } else {
                Drop(state);
            }
        }
    }
}

void CHistory::Drop(const HistoryState& state) const {
    std::error_code none;
    std::filesystem::remove(state.file, none);
    std::filesystem::remove(NotesOf(state), none);
}

void CHistory::ReplaceDocument(const std::filesystem::path& state, const platform::FileStamp& stamp) const {
    host::WriteWhole(m_document, host::ReadBytes(state), state, [&] { return stamp == StampOf(m_document); });
}

HistoryState CHistory::Undo(bool force) {
    auto states = States();
    while (!states.empty() && states.back().after == platform::FileStamp() &&
           states.back().before == StampOf(m_document)) {
        Drop(states.back()); // its command was ended before it changed anything
        states.pop_back();
    }
    if (states.empty()) {
        throw CFailure(ExitCode::Missing, "there is nothing to undo");
    }
    HistoryState newest = states.back();
    if (!force && newest.after != StampOf(m_document)) {
        throw CFailure(ExitCode::Refused,
                       newest.after == platform::FileStamp()
                           ? "\"" + newest.command + "\" was ended before it could note how it left the document"
                           : "another program changed the document after \"" + newest.command + "\"",
                       "see what: cordelctl diff --state " + std::to_string(newest.number) +
                           "; to undo all the same, with those changes: --force");
    }
    try {
        const auto stamp = StampOf(m_document);
        HistoryState undone = KeepIn(m_undone, newest.number, newest.command);
        try {
            ReplaceDocument(newest.file, stamp);
        } catch (const std::filesystem::filesystem_error&) {
            Drop(undone);
            throw;
        }
        Drop(newest);
        states.pop_back();
        if (!states.empty() && states.back().after == newest.before) {
            NoteDone(states.back()); // the document is what that command left, and nobody wrote it in between
        }
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "nothing was undone: " + std::string(error.what()));
    }
    return newest;
}

HistoryState CHistory::Redo() {
    const auto undone = StatesIn(m_undone);
    if (undone.empty()) {
        throw CFailure(ExitCode::Missing, "nothing was undone that could be done again");
    }
    const HistoryState& next = undone.front(); // what was undone last has the lowest number
    try {
        const auto stamp = StampOf(m_document);
        HistoryState state = KeepIn(m_folder, next.number, next.command);
        try {
            ReplaceDocument(next.file, stamp);
        } catch (const std::filesystem::filesystem_error&) {
            Drop(state);
            throw;
        }
        NoteDone(state);
        Drop(next);
        return state;
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "nothing was done again: " + std::string(error.what()));
    }
}

void CHistory::Restore(const HistoryState& state, const std::string& command) {
    try {
        std::optional<HistoryState> kept;
        const auto stamp = StampOf(m_document);
        if (std::filesystem::is_regular_file(m_document)) {
            kept = Keep(command);
        }
        try {
            ReplaceDocument(state.file, stamp);
        } catch (const std::filesystem::filesystem_error&) {
            if (kept) {
                Drop(*kept);
            }
            throw;
        }
        if (kept) {
            NoteDone(*kept);
            ForgetOld();
        }
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "nothing was restored: " + std::string(error.what()));
    }
}

void CHistory::MoveTo(const DocumentPlace& place) const {
    const CHistory other(place);
    std::error_code none;
    if (std::filesystem::is_directory(m_folder) && !std::filesystem::exists(other.m_folder)) {
        std::filesystem::rename(m_folder, other.m_folder, none);
    }
}
