// The former states of a document, kept in a folder beside it: ".cordelctl" and the document's file name. A state is
// what the document was before a command changed it; they are numbered in order.
//
// States that were undone lie in a folder of their own, so that `redo` can bring them back, until the next change.

#pragma once

#include "document/places.h"

#include <cstdint>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

struct HistoryState {
    unsigned number = 0;
    std::string time;                // when it was kept, in UTC
    std::string command;             // before which it was
    std::uint64_t size = 0;          // bytes
    platform::FileStamp after = {};  // of the document, as the command left it
    platform::FileStamp before = {}; // of the document, when the state was kept
    std::filesystem::path file;
};

class CHistory {
public:
    explicit CHistory(const DocumentPlace& place);

    /// The file that processes of this tool lock before they change the document. Makes its folder.
    static std::filesystem::path LockFile(const std::filesystem::path& document);

    /// Oldest first.
    std::vector<HistoryState> States() const;

    /// Throws CFailure (Missing) when there is no such state.
    HistoryState State(const std::string& number) const;

    /// Keeps the document as it is, before `command` changes it. None when no states are kept. Throws CFailure
    /// (NotKept) when it cannot be kept.
    std::optional<HistoryState> Keep(const std::string& command);

    /// Notes that the command is done: the document is now as it left it.
    void NoteDone(HistoryState& state) const;

    /// For a command that was ended before it could do so: notes that it is done, or takes the state of that number
    /// back when it had not changed the document yet.
    void Settle(unsigned number, bool changed) const;

    /// Takes back a state that was kept for a change that did not come about.
    void Drop(const HistoryState& state) const;

    /// After a new change: what was undone cannot be done again, and the oldest states beyond the bounds go.
    void ForgetOld() const;

    /// Puts the newest state in the document's place, and the document among what was undone. Throws CFailure: Missing
    /// when there is none, Refused when another program changed the document since, unless `force`.
    HistoryState Undo(bool force);

    /// Puts back what was undone last.
    HistoryState Redo();

    /// Puts this state in the document's place; the document becomes the newest state.
    void Restore(const HistoryState& state, const std::string& command);

    /// Takes the states along when a document gets another name.
    void MoveTo(const DocumentPlace& place) const;

    std::filesystem::path Folder() const { return m_folder; }

private:
    std::vector<HistoryState> StatesIn(const std::filesystem::path& folder) const;
    HistoryState KeepIn(const std::filesystem::path& folder, unsigned number, const std::string& command) const;
    void Write(const HistoryState& state) const;

    /// By the bytes of a state, unless another program wrote the document since it had this stamp.
    void ReplaceDocument(const std::filesystem::path& state, const platform::FileStamp& stamp) const;

    std::filesystem::path m_document;
    std::filesystem::path m_folder;
    std::filesystem::path m_undone;
};

std::ostream& operator<<(std::ostream& stream, const platform::FileStamp& stamp);
std::istream& operator>>(std::istream& stream, platform::FileStamp& stamp);

/// "2026-11-20 16:42:02", in UTC.
std::string TimeNow();
