// The new file of a save, under a name of its own until it takes the document's.

#pragma once

#include "file_opening.h"
#include "platform/reason.h"

#include <sys/types.h>

#include <array>

namespace platform {

/// Tries to lock a file against other processes, and against other threads that opened it themselves; never waits. The
/// lock does not meet that of the existence test. `type` is F_RDLCK, F_WRLCK or F_UNLCK; errno is EAGAIN when another
/// has it. The lock goes with the last descriptor of the file, also one that a forked process was born with: give it
/// back.
bool TryLock(const CFile& file, short type) noexcept;

/// A new file that only its owner may open, with a name that nobody can foresee, locked as long as somebody is at work
/// on it. It goes with the object unless it has taken another file's name.
class CTemporaryFile {
public:
    explicit CTemporaryFile(const CFile& folder) noexcept : m_folder(folder) {}
    ~CTemporaryFile();
    CTemporaryFile(const CTemporaryFile&) = delete;
    CTemporaryFile& operator=(const CTemporaryFile&) = delete;

    enum class Made {
        Yes,
        FolderTakesNone, // it does not let this process make a file, as opposed to a shortage
        Failed,
    };

    /// `reason`, where one is wanted, says why there is none.
    Made Make(const CFileOpener& opener, CReason* reason) noexcept;
    const CFile& File() const noexcept { return m_file; }

    /// Takes the place of the file of that name. False, and errno, when that cannot be done.
    bool RenameTo(const char* name) noexcept;

private:
    bool ChooseName() noexcept;
    const char* Hold() const noexcept;
    void Discard() noexcept;

    const CFile& m_folder;
    CFile m_file;
    std::array<char, 32> m_name{};
};

/// Removes the temporary files of processes that were killed: regular files without another name that belong to the
/// user or to the document's owner, and that nobody is at work on. Waits for nobody, and looks at so many names at
/// most.
void RemoveLeftovers(const CFileOpener& opener, const CFile& folder, uid_t documentOwner) noexcept;

inline constexpr int kMostNamesLookedAt = 4096;

} // namespace platform
