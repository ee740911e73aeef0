// A command that saves several documents, and is ended between them: a note beside each of them tells the next command
// which of them it was at.
//
// The notes are written before the first document is saved and removed after the last. Whoever locks one of the
// documents and finds a note knows that its command is no more: it says what became of it, and makes the former states
// of the documents as they are after a command that was done, or was not, so that `undo` takes back what was changed.

#pragma once

#include "document/places.h"
#include "transaction/history.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// One document of such a command, and its state before.
struct SavedDocument {
    DocumentPlace place;
    std::optional<HistoryState> state;
    platform::FileStamp before = {};
};

class CUnfinished {
public:
    CUnfinished() = default;
    ~CUnfinished();
    CUnfinished(const CUnfinished&) = delete;
    CUnfinished& operator=(const CUnfinished&) = delete;

    /// Writes the notes, which go with the object. Throws std::filesystem::filesystem_error.
    void Begin(const std::string& command, const std::vector<SavedDocument>& documents);

private:
    std::vector<std::filesystem::path> m_notes;
};

/// What became of a command that was ended while it saved this document and others, in words for the user; empty when
/// there was none. The document is locked; while another command works on one of the others, that is left for later.
std::string SettleUnfinished(const DocumentPlace& place);
