// The new contents go to a temporary file in the folder, are flushed to disk and renamed over the old file. Processes
// that save the same file at the same time do not wait for each other: each has a temporary file of its own, and the
// last one to rename it wins.

#include "safe_save.h"

#include "failed_call.h"
#include "file_opening.h"
#include "file_rights.h"
#include "links.h"
#include "size_signal.h"
#include "temporary_file.h"

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <ctime>
#include <new>
#include <optional>
#include <string>
#include <utility>

namespace platform {

namespace {

// How long a save in place waits for another one to end.
constexpr int kLockAttempts = 100;
constexpr timespec kLockPause = {0, 10'000'000};

/// Writes a new file, or an old one from its beginning, up to the first failure.
class CFileWriter {
public:
    explicit CFileWriter(const CFile& file) noexcept : m_nFile(file.Descriptor()) {}

    /// False when the contents shall not be written or the system fails; `reason`, where one is wanted, says how it
    /// did.
    bool Write(const ContentsProducer& produceContents, CReason* reason) noexcept {
        const bool bProduced = produceContents([this](std::string_view piece) { WritePiece(piece); });
        errno = m_nError;
        return m_nError == 0 ? bProduced : Failed("write", reason);
    }
    std::size_t WrittenBytes() const noexcept { return m_nWritten; }

private:
    void WritePiece(std::string_view piece) noexcept {
        if (m_nWritten > 0 && m_nError == 0) {
            // The disk takes what is there while further pieces are made. What fails here fails in the flush.
            sync_file_range(m_nFile, 0, 0, SYNC_FILE_RANGE_WRITE);
        }
        while (m_nError == 0 && !piece.empty()) {
            const ssize_t count = write(m_nFile, piece.data(), piece.size());
            if (count < 0 && errno == EINTR) {
                continue;
            }
            if (count <= 0) {
                m_nError = count < 0 ? errno : ENOSPC;
            } else {
                m_nWritten += static_cast<std::size_t>(count);
                piece.remove_prefix(static_cast<std::size_t>(count));
            }
        }
    }

    const int m_nFile;
    std::size_t m_nWritten = 0;
    int m_nError = 0;
};

/// Adds up the bytes. False when they shall not be written.
bool AddUpSize(const ContentsProducer& produceContents, std::size_t& size) noexcept {
    return produceContents([&size](std::string_view piece) { size += piece.size(); });
}

/// What is written into a file, and for whom.
struct Contents {
    const ContentsProducer& produce;
    const LastLook& isAsLoaded;
    std::optional<FileRights>& known; // what they are open to until now
};

/// `rights` become those of the new file.
bool FillTemporary(const CFile& temporary, const CFile& original, const Contents& contents,
                   std::optional<FileRights>& rights, CReason* reason) noexcept {
    return CFileWriter(temporary).Write(contents.produce, reason) &&
           CarryRightsOver(original, temporary, reason, rights) &&
           (fsync(temporary.Descriptor()) == 0 || Failed("fsync", reason));
}

/// A lock that keeps other saves in place out, given back at the end also where a forked process has the file too.
class CPlaceLock {
public:
    explicit CPlaceLock(const CFile& file) noexcept : m_file(file) {
        for (int attempt = 1; !(m_bHeld = TryLock(file, F_WRLCK)) && errno == EAGAIN && attempt < kLockAttempts;
             ++attempt) {
            nanosleep(&kLockPause, nullptr);
        }
    }
    ~CPlaceLock() {
        if (m_bHeld) {
            TryLock(m_file, F_UNLCK);
        }
    }
    CPlaceLock(const CPlaceLock&) = delete;
    CPlaceLock& operator=(const CPlaceLock&) = delete;
    bool IsHeld() const noexcept { return m_bHeld; }

private:
    const CFile& m_file;
    bool m_bHeld = false;
};

/// Whether the file is no other one's too, and open to nobody that the contents were not open to. Throws
/// std::bad_alloc.
bool MayHold(const CFile& file, nlink_t names, const Contents& contents, CReason* reason) {
    if (names > 1) {
        GiveReason(reason,
                   CReason::Of(ReasonKind::NotPermitted, "the file has other names, and they would lead to it"));
        return false;
    }
    if (!contents.known.has_value()) {
        return true;
    }
    std::optional<FileRights> rights = RightsOf(file, reason);
    if (!rights.has_value()) {
        return false;
    }
    if (!rights->AreOfSameFile(*contents.known) && rights->MayGiveMoreThan(*contents.known)) {
        GiveReason(reason,
                   CReason::Of(ReasonKind::NotPermitted, "another file is in its place, which others may open"));
        return false;
    }
    contents.known = std::move(rights);
    return true;
}

/// Whether the process may make a file so long. Within a file that is as long already no reserving of space would tell.
bool IsWithinLimit(std::size_t bytes, CReason* reason) noexcept {
    rlimit limit{RLIM_INFINITY, RLIM_INFINITY};
    getrlimit(RLIMIT_FSIZE, &limit);
    if (bytes <= limit.rlim_cur) {
        return true;
    }
    errno = EFBIG;
    return Failed("write", reason);
}

bool WriteInPlace(const CFile& file, const Contents& contents, CReason* reason) {
    const CPlaceLock lock(file);
    if (!lock.IsHeld()) {
        return Failed("fcntl", reason);
    }
    struct stat original = {};
    if (fstat(file.Descriptor(), &original) != 0) {
        return Failed("fstat", reason);
    }
    std::size_t bytes = 0;
    if (!MayHold(file, original.st_nlink, contents, reason) || !AddUpSize(contents.produce, bytes) ||
        !IsWithinLimit(bytes, reason) || !IsStillWanted(contents.isAsLoaded, reason)) {
        return false;
    }
    const auto size = static_cast<off_t>(bytes);
    CFileWriter writer(file);
    errno = posix_fallocate(file.Descriptor(), 0, size);
    const bool bWritten = errno == 0 ? writer.Write(contents.produce, reason) : Failed("posix_fallocate", reason);
    // Reserving may have made the file longer, even where it failed; up to the first byte it is the old document.
    const bool bCut = ftruncate(file.Descriptor(), writer.WrittenBytes() == 0 ? original.st_size : size) == 0;
    if (!bWritten) {
        return false;
    }
    if (!bCut) {
        return Failed("ftruncate", reason);
    }
    return fsync(file.Descriptor()) == 0 || Failed("fsync", reason);
}

/// The folder, to be read and flushed; or only as a place to find files in, where the process may not read it. Nothing
/// but a folder is found under the path: it ends in a separator, or is ".".
CFile OpenFolder(const CFileOpener& opener, const char* path) noexcept {
    CFile folder = opener.Open(path, O_RDONLY);
    return folder.IsOpen() || errno != EACCES ? std::move(folder) : opener.Open(path, O_PATH);
}

/// True when the file cannot be replaced, as opposed to a shortage: it is a mount of its own, or the folder keeps its
/// files from all but their owners.
bool CannotBeReplaced(int error) noexcept { return error == EBUSY || error == EACCES || error == EPERM; }

/// The folder lets files be made, and neither renamed nor removed: a temporary file would stay in it.
bool KeepsEveryName(const CFile& folder) noexcept {
    struct statx status = {};
    return statx(folder.Descriptor(), "", AT_EMPTY_PATH, STATX_TYPE, &status) == 0 &&
           (status.stx_attributes & STATX_ATTR_APPEND) != 0;
}

enum class Replaced { Yes, No, OnlyInPlace };

Replaced ReplaceByRename(const CFileOpener& opener, const CFile& folder, const char* name, const CFile& original,
                         const Contents& contents, CReason* reason) {
    if (KeepsEveryName(folder)) {
        return Replaced::OnlyInPlace;
    }
    CTemporaryFile temporary(folder);
    const CTemporaryFile::Made made = temporary.Make(opener, reason);
    if (made == CTemporaryFile::Made::FolderTakesNone) {
        return Replaced::OnlyInPlace;
    }
    std::optional<FileRights> rights = contents.known;
    if (made == CTemporaryFile::Made::Failed || !FillTemporary(temporary.File(), original, contents, rights, reason) ||
        !IsStillWanted(contents.isAsLoaded, reason)) {
        return Replaced::No;
    }
    if (!temporary.RenameTo(name)) {
        const int error = errno;
        Failed("renameat", reason);
        return CannotBeReplaced(error) ? Replaced::OnlyInPlace : Replaced::No;
    }
    contents.known = std::move(rights);
    fsync(folder.Descriptor()); // makes the new name durable; the document is whole without it
    return Replaced::Yes;
}

bool ReplaceTarget(std::string path, const Contents& contents, CReason* reason) {
    const CFileOpener opener;
    // O_NONBLOCK: neither a FIFO in the file's place nor a lease on it holds the caller up.
    const CFile original = OpenBehindLinks(opener, path, O_RDWR | O_NONBLOCK | O_NOCTTY, reason);
    if (!original.IsOpen()) {
        return false;
    }
    const std::size_t name = path.rfind('/') + 1;
    const CFile folder = OpenFolder(opener, name == 0 ? "." : path.substr(0, name).c_str());
    if (!folder.IsOpen()) {
        return Failed("open", reason);
    }
    struct stat status = {};
    if (fstat(original.Descriptor(), &status) != 0) {
        return Failed("fstat", reason);
    }
    if (!S_ISREG(status.st_mode)) {
        GiveReason(reason, CReason::Of(ReasonKind::NotRegular));
        return false;
    }
    RemoveLeftovers(opener, folder, status.st_uid);
    const CNoSizeSignal noSizeSignal;
    const Replaced replaced = ReplaceByRename(opener, folder, path.c_str() + name, original, contents, reason);
    return replaced == Replaced::Yes || (replaced == Replaced::OnlyInPlace && WriteInPlace(original, contents, reason));
}

} // namespace

bool ReplaceContents(const char* path, const ContentsProducer& produceContents, CReason* reason,
                     const LastLook& isAsLoaded, std::optional<FileRights>* known) noexcept {
    std::optional<FileRights> none;
    try {
        return ReplaceTarget(path, {produceContents, isAsLoaded, known != nullptr ? *known : none}, reason);
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
        return false;
    }
}

} // namespace platform
