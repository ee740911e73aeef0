// The documents that a command works on, loaded once each, and what becomes of their changes: one save each at the end,
// or none at all.
//
// A command that changes documents runs in a transaction: it locks each document against other processes of this tool,
// loads it, changes it in memory, and saves it when everything went well. Before that, and once more immediately before
// the new contents take the file's place, it looks whether the file is still the one that was loaded: when another
// program wrote it meanwhile, the command is done again on what that left.

#pragma once

#include "document/document.h"
#include "document/places.h"
#include "result.h"
#include "system/system.h"
#include "verb.h"

#include <functional>
#include <map>
#include <memory>
#include <string>

/// Locks on documents, each taken when its document is first opened for a change, and held to the end.
class CDocumentLocks {
public:
    CDocumentLocks(int seconds, std::string command) : m_nSeconds(seconds), m_strCommand(std::move(command)) {}

    /// Throws CFailure (NotKept), saying who holds the lock, when it is not to be had in time.
    void Take(const DocumentPlace& place);

    /// Waits until no other program holds the per-user copy. False: one still does.
    bool WaitUntilFree(const DocumentPlace& place) const;

private:
    int m_nSeconds;
    std::string m_strCommand;
    std::map<std::filesystem::path, host::CFileLock> m_locks;
};

enum class Access { Read, Change };

class CSession {
public:
    CSession(Access access, bool dryRun, CDocumentLocks& locks)
        : m_eAccess(access), m_bDryRun(dryRun), m_locks(locks) {}

    /// The document at this place, loaded when it is first asked for. With `access` Change it takes part in the
    /// transaction. Throws CFailure: NoDocument when it cannot be loaded, NotKept when a change of it could not be
    /// kept.
    CDocument& Open(const DocumentPlace& place, Access access);

    bool IsDryRun() const noexcept { return m_bDryRun; }
    Access Mode() const noexcept { return m_eAccess; }

    /// Saves what was changed. False, and nothing is saved, when another program wrote one of the files meanwhile.
    /// Throws CFailure (NotKept), and then nothing is changed.
    bool Save(const std::string& command);

    /// Has something done after the changes were saved, and never when they are not. What it throws does not undo them.
    void AfterSave(std::function<void()> work) { m_afterSave.push_back(std::move(work)); }

    /// Does it. Throws CFailure when some of it failed.
    void FinishSave();

    /// What makes hosts read wrong values of what the command used.
    std::vector<std::string> ErrorsInUse() const;

    /// What was changed, as a result to be printed in place of saving it.
    Result Differences() const;

private:
    struct Opened {
        DocumentPlace place;
        std::unique_ptr<CDocument> document;
        platform::FileStamp stamp = {};
        DocumentNode before; // of a dry run
        bool changes = false;
    };

    Access m_eAccess;
    bool m_bDryRun;
    CDocumentLocks& m_locks;
    std::map<std::filesystem::path, Opened> m_documents;
    std::vector<std::function<void()>> m_afterSave;
};

/// Runs the work in a transaction, again when another program came between. Its result is that of the last run, or with
/// --dry-run the differences. One whose status says that something failed changes nothing, unless it is partial.
Result RunTransaction(const Globals& globals, const std::string& command, const std::function<Result(CSession&)>& work);

/// Throws CFailure (Interrupted) when the user interrupted the command: nothing is changed yet.
void StopIfInterrupted();
