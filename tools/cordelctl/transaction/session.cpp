// The documents that a command works on, and what becomes of their changes.

#include "transaction/session.h"

#include "document/difference_result.h"
#include "failure.h"
#include "print.h"
#include "text/nearest.h"
#include "transaction/history.h"
#include "transaction/unfinished.h"

#include <algorithm>
#include <chrono>
#include <random>
#include <thread>
#include <vector>

namespace {

constexpr int kMostRuns = 5; // while others keep changing the document

/// A little, and not always the same: several that wait do not wake together.
void Pause() {
    static std::minstd_rand random(static_cast<unsigned>(host::ProcessNumber()));
    std::this_thread::sleep_for(std::chrono::microseconds(500 + random() % 2500));
}

class CDeadline {
public:
    explicit CDeadline(int seconds) : m_end(std::chrono::steady_clock::now() + std::chrono::seconds(seconds)) {}
    bool IsOver() const { return std::chrono::steady_clock::now() >= m_end; }

private:
    std::chrono::steady_clock::time_point m_end;
};

[[noreturn]] void FailForCopy(const DocumentPlace& place, FileState state) {
    const std::string path = host::TextOf(place.perUser);
    switch (state) {
    case FileState::NotWritable:
        throw CFailure(ExitCode::NotKept, "nothing was changed: " + path + " may not be read and written",
                       "give yourself read and write permission for it");
    case FileState::InUse:
        throw CFailure(ExitCode::NotKept, "nothing was changed: another program holds " + path,
                       "try again when that program is done, or wait for it longer: --wait SECONDS");
    case FileState::NotAFile:
        throw CFailure(ExitCode::NotKept, "nothing was changed: " + path + " is not a file",
                       "move it away, then run: cordelctl init");
    default:
        throw CFailure(ExitCode::NotKept,
                       "nothing was changed: there is no per-user copy of " + place.title +
                           (path.empty() ? "" : " (" + path + ")"),
                       path.empty() ? "set HOME or XDG_CONFIG_HOME, then run: cordelctl init"
                                    : "create it with: cordelctl init");
    }
}

/// Of what only reads: the installed document must not stand in for a copy that is there and cannot be used.
void RequireReadable(const DocumentPlace& place, FileState state) {
    const std::string path = host::TextOf(place.perUser);
    const auto fail = [&](const std::string& what, const std::string& advice) {
        throw CFailure(ExitCode::NoDocument, "your copy of " + place.title + " " + what + ": " + path, advice);
    };
    if (state == FileState::InUse) {
        fail("is held by another program",
             "try again when that program is done, or wait for it longer: --wait SECONDS");
    }
    if (state == FileState::NotWritable) {
        fail("may not be read and written, so that hosts load the installed document in its place",
             "give yourself read and write permission for it");
    }
    if (state == FileState::NotAFile) {
        fail("is no file", "move it away, then run: cordelctl init");
    }
}

void RequirePlace(const DocumentPlace& place) {
    if (place.perUser.empty()) {
        throw CFailure(ExitCode::NoDocument, place.title + " cannot be opened: you have no folder for application data",
                       "set HOME, or XDG_CONFIG_HOME to an absolute path");
    }
    if (!place.IsWithinReach()) {
        throw CFailure(ExitCode::NoDocument,
                       place.title + " cannot be opened: its path is too long: " + host::TextOf(place.perUser),
                       "install the program, or keep the user's configuration, in a folder with a shorter path");
    }
}

void RequireThere(const DocumentPlace& place) {
    if (!std::filesystem::exists(place.installed)) {
        std::string advice = "put it there, or name another with --printer or --language";
        if (place.kind == DocumentKind::Printer) {
            const auto printers = PrinterFileNames();
            advice = "printers that there are: " + (printers.empty() ? "none" : Joined(printers, ", ")) +
                     "; for a new one: cordelctl printer add NAME";
            throw CFailure(ExitCode::NoDocument,
                           place.title + " is not there: " + host::TextOf(place.installed) +
                               DidYouMean(place.name, printers),
                           advice);
        }
        if (place.kind == DocumentKind::Strings) {
            const auto languages = InstalledLanguages();
            throw CFailure(ExitCode::NoDocument,
                           place.title + " is not there: " + host::TextOf(place.installed) +
                               DidYouMean(place.name, languages),
                           "installed languages: " + (languages.empty() ? "none" : Joined(languages, ", ")));
        }
        throw CFailure(ExitCode::NoDocument, place.title + " is not there: " + host::TextOf(place.installed), advice);
    }
}

} // namespace

void StopIfInterrupted() {
    if (host::IsInterrupted()) {
        throw CFailure(ExitCode::Interrupted, "interrupted: nothing was changed");
    }
}

void CDocumentLocks::Take(const DocumentPlace& place) {
    if (m_locks.count(place.perUser) != 0) {
        return;
    }
    try {
        const auto file = CHistory::LockFile(place.perUser);
        const std::string holder =
            "cordelctl " + m_strCommand + " (process " + std::to_string(host::ProcessNumber()) + ")";
        host::CFileLock lock;
        const CDeadline told(1);
        const CDeadline deadline(m_nSeconds);
        bool said = false;
        while (!lock.Try(file, holder)) {
            StopIfInterrupted();
            const std::string other = host::HolderOf(file);
            if (deadline.IsOver()) {
                throw CFailure(ExitCode::NotKept,
                               "nothing was changed: " + (other.empty() ? "another cordelctl" : other) +
                                   " still works on " + place.title + " after " + std::to_string(m_nSeconds) + " s",
                               "try again when it is done, or wait for it longer: --wait SECONDS");
            }
            if (!said && told.IsOver()) {
                said = true;
                Note("waiting for " + (other.empty() ? "another cordelctl" : other));
            }
            Pause();
        }
        m_locks.emplace(place.perUser, std::move(lock));
        const std::string unfinished = SettleUnfinished(place);
        if (!unfinished.empty()) {
            Note(unfinished);
        }
    } catch (const std::filesystem::filesystem_error& error) {
        throw CFailure(ExitCode::NotKept, "nothing was changed: " + std::string(error.what()),
                       "see whether the folder may be written and the disk has room");
    }
}

bool CDocumentLocks::WaitUntilFree(const DocumentPlace& place) const {
    const CDeadline deadline(m_nSeconds);
    while (place.UserState() == FileState::InUse) {
        StopIfInterrupted();
        if (deadline.IsOver()) {
            return false;
        }
        Pause();
    }
    return true;
}

CDocument& CSession::Open(const DocumentPlace& place, Access access) {
    RequireInstalledDocuments();
    const bool changes = access == Access::Change && m_eAccess == Access::Change;
    if (const auto known = m_documents.find(place.perUser); known != m_documents.end()) {
        known->second.changes = known->second.changes || changes;
        return *known->second.document;
    }
    RequirePlace(place);
    if (changes && !m_bDryRun) {
        const FileState state = place.UserState();
        if (state == FileState::Absent) {
            if (place.kind != DocumentKind::Main) {
                RequireThere(place);
            }
            FailForCopy(place, state);
        }
        m_locks.Take(place);
    }
    m_locks.WaitUntilFree(place);
    Opened opened;
    opened.place = place;
    opened.changes = changes;
    opened.stamp = StampOf(place.perUser);
    const FileState state = place.UserState();
    if (changes && !m_bDryRun && state != FileState::Writable) {
        FailForCopy(place, state);
    }
    RequireReadable(place, state);
    if (state == FileState::Absent) {
        RequireThere(place);
    }
    opened.document = CDocument::Load(state == FileState::Writable ? place.perUser : place.installed, place.title);
    if (m_bDryRun && changes) {
        opened.before = opened.document->Tree();
    }
    return *m_documents.emplace(place.perUser, std::move(opened)).first->second.document;
}

bool CSession::Save(const std::string& command) {
    std::vector<Opened*> changed;
    for (auto& [path, opened] : m_documents) {
        if (opened.changes && opened.document->IsChanged()) {
            changed.push_back(&opened);
        }
    }
    const bool same = std::all_of(m_documents.begin(), m_documents.end(), [](const auto& entry) {
        return entry.second.stamp == StampOf(entry.first) || !entry.second.changes;
    });
    if (!same) {
        return false;
    }
    StopIfInterrupted();
    struct Step {
        CHistory history;
        std::optional<HistoryState> state;
        std::filesystem::path file;
        std::string former;
        bool saved = false;
    };
    std::vector<Step> steps;
    const auto takeBack = [&steps] { // all or nothing
        for (const Step& step : steps) {
            try {
                if (step.saved) {
                    host::WriteWhole(step.file, step.former);
                }
                if (step.state) {
                    step.history.Drop(*step.state);
                }
            } catch (const std::filesystem::filesystem_error& error) {
                Note(host::TextOf(step.file) + " was changed all the same, and could not be taken back (" +
                     error.code().message() + "); see: cordelctl history");
            }
        }
    };
    const bool several = changed.size() > 1;
    CUnfinished unfinished;
    try {
        std::vector<SavedDocument> documents;
        for (Opened* const opened : changed) {
            const auto& file = opened->place.perUser;
            Step& step = steps.emplace_back(
                Step{CHistory(opened->place), {}, file, several ? host::ReadBytes(file) : std::string()});
            step.state = step.history.Keep(command);
            documents.push_back({opened->place, step.state, opened->stamp});
        }
        if (several) {
            unfinished.Begin(command, documents);
        }
        for (std::size_t i = 0; i < changed.size(); ++i) {
            Opened* const opened = changed[i];
            Step& step = steps[i];
            step.saved =
                opened->document->SaveOver(step.file, [&] { return opened->stamp == StampOf(opened->place.perUser); });
            if (!step.saved) {
                takeBack();
                return false;
            }
            if (step.state) {
                step.history.NoteDone(*step.state);
            }
        }
    } catch (const std::exception&) {
        takeBack();
        throw;
    }
    for (const Step& step : steps) {
        if (step.state) {
            step.history.ForgetOld();
        }
    }
    return true;
}

void CSession::FinishSave() {
    for (const auto& work : m_afterSave) {
        work();
    }
}

std::vector<std::string> CSession::ErrorsInUse() const {
    std::vector<std::string> errors;
    for (const auto& [path, opened] : m_documents) {
        const auto more = opened.document->ErrorsInUse();
        errors.insert(errors.end(), more.begin(), more.end());
    }
    return errors;
}

Result CSession::Differences() const {
    std::vector<RecordChange> changes;
    for (const auto& [path, opened] : m_documents) {
        if (opened.changes && opened.document->IsChanged()) {
            const auto more = CompareDocuments(opened.before, opened.document->Tree());
            changes.insert(changes.end(), more.begin(), more.end());
        }
    }
    Result result = DifferenceResult(changes);
    result.said.insert(result.said.begin(), "nothing was changed; this would be:");
    return result;
}

Result RunTransaction(const Globals& globals, const std::string& command,
                      const std::function<Result(CSession&)>& work) {
    host::NoteInterruptions();
    CDocumentLocks locks(globals.wait, command);
    for (int run = 0; run < kMostRuns; ++run) {
        CSession session(Access::Change, globals.dryRun, locks);
        Result result = work(session);
        if (result.status > ExitCode::No && !result.partial) {
            return result; // all or nothing
        }
        if (globals.dryRun) {
            Result differences = session.Differences();
            differences.notes = std::move(result.notes);
            differences.status = result.status;
            return differences;
        }
        if (session.Save(command)) {
            try {
                session.FinishSave();
            } catch (const CFailure& failure) {
                result.notes.push_back("the change was saved, but " + std::string(failure.what()));
                result.status = failure.Code();
            }
            if (host::IsInterrupted()) {
                result.notes.emplace_back("interrupted, but the change was saved");
                result.status = ExitCode::Interrupted;
            }
            return result;
        }
        StopIfInterrupted();
    }
    throw CFailure(
        ExitCode::NotKept,
        "nothing was changed: another program changed the document each time before this change could be saved",
        "try again when that program is done");
}
