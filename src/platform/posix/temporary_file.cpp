// A temporary file is locked right after it was made, and stays so until it is the document or gone: one that can be
// locked belongs to a process that was killed. Whoever removes such a file holds its lock meanwhile, and looks at it
// again; whoever made a file and finds it locked, or without a name, makes another.

#include "temporary_file.h"

#include "failed_call.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cinttypes>
#include <cstdint>
#include <cstdio>
#include <string_view>

namespace platform {

namespace {

constexpr std::string_view kPrefix = ".cordelbox-";
constexpr std::string_view kSuffix = ".tmp";
constexpr int kAttempts = 8;

bool IsTemporaryName(std::string_view name) noexcept { return name.starts_with(kPrefix) && name.ends_with(kSuffix); }

/// A new file was refused because the folder takes none, as opposed to a shortage (a full disk, say) in which writing
/// in place would destroy what there is.
bool FolderTakesNoFile(int error) noexcept {
    return error == EACCES || error == EPERM || error == EROFS || error == ENAMETOOLONG;
}

bool CanBeLeftover(const struct stat& status, uid_t documentOwner) noexcept {
    return S_ISREG(status.st_mode) && status.st_nlink == 1 &&
           (status.st_uid == geteuid() || status.st_uid == documentOwner);
}

void RemoveLeftover(const CFileOpener& opener, const CFile& folder, const char* name, uid_t documentOwner) noexcept {
    struct stat named = {};
    if (fstatat(folder.Descriptor(), name, &named, AT_SYMLINK_NOFOLLOW) != 0 || !CanBeLeftover(named, documentOwner)) {
        return;
    }
    const CFile file = opener.OpenIn(folder, name, O_RDONLY | O_NONBLOCK | O_NOCTTY);
    struct stat opened = {};
    if (file.IsOpen() && TryLock(file, F_RDLCK) && fstat(file.Descriptor(), &opened) == 0 &&
        CanBeLeftover(opened, documentOwner)) {
        unlinkat(folder.Descriptor(), name, 0);
    }
}

} // namespace

bool TryLock(const CFile& file, short type) noexcept {
    struct flock lock = {}; // from the file's beginning to its end
    lock.l_type = type;
    return fcntl(file.Descriptor(), F_OFD_SETLK, &lock) == 0;
}

CTemporaryFile::~CTemporaryFile() {
    if (m_file.IsOpen()) {
        Discard();
    }
}

void CTemporaryFile::Discard() noexcept {
    unlinkat(m_folder.Descriptor(), m_name.data(), 0);
    m_file = CFile();
}

bool CTemporaryFile::ChooseName() noexcept {
    std::uint64_t number = 0;
    if (getrandom(&number, sizeof number, GRND_NONBLOCK) != static_cast<ssize_t>(sizeof number)) {
        return false;
    }
    std::snprintf(m_name.data(), m_name.size(), "%s%016" PRIx64 "%s", kPrefix.data(), number, kSuffix.data());
    return true;
}

/// Locks the new file, and makes sure that nobody took it for a leftover before. Null, or the call that failed.
const char* CTemporaryFile::Hold() const noexcept {
    struct stat status = {};
    if (!TryLock(m_file, F_WRLCK)) {
        return "fcntl";
    }
    if (fstat(m_file.Descriptor(), &status) != 0) {
        return "fstat";
    }
    errno = EAGAIN;
    return status.st_nlink == 1 ? nullptr : "fcntl";
}

CTemporaryFile::Made CTemporaryFile::Make(const CFileOpener& opener, CReason* reason) noexcept {
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (!ChooseName()) {
            Failed("getrandom", reason);
            return Made::Failed;
        }
        m_file = opener.OpenIn(m_folder, m_name.data(), O_WRONLY | O_CREAT | O_EXCL, S_IRUSR | S_IWUSR);
        const char* const failed = m_file.IsOpen() ? Hold() : "openat";
        if (failed == nullptr) {
            return Made::Yes;
        }
        const int error = errno;
        Failed(failed, reason);
        if (!m_file.IsOpen() && error != EEXIST) {
            return FolderTakesNoFile(error) ? Made::FolderTakesNone : Made::Failed;
        }
        if (m_file.IsOpen()) {
            Discard();
            if (error != EAGAIN) {
                return Made::Failed;
            }
        }
    }
    return Made::Failed;
}

bool CTemporaryFile::RenameTo(const char* name) noexcept {
    if (renameat(m_folder.Descriptor(), m_name.data(), m_folder.Descriptor(), name) != 0) {
        return false;
    }
    TryLock(m_file, F_UNLCK);
    m_file = CFile();
    return true;
}

void RemoveLeftovers(const CFileOpener& opener, const CFile& folder, uid_t documentOwner) noexcept {
    alignas(dirent64) std::array<char, 4096> entries;
    int names = 0;
    ssize_t count = 0;
    while (names < kMostNamesLookedAt &&
           (count = getdents64(folder.Descriptor(), entries.data(), entries.size())) > 0) {
        for (ssize_t at = 0; at < count; ++names) {
            const auto* const entry = reinterpret_cast<const dirent64*>(entries.data() + at);
            if (IsTemporaryName(entry->d_name)) {
                RemoveLeftover(opener, folder, entry->d_name, documentOwner);
            }
            at += entry->d_reclen;
        }
    }
}

} // namespace platform
