// The new contents go to a temporary file in the folder, are flushed to disk and renamed over the old file. Processes
// that save the same file at the same time do not wait for each other: each has a temporary file of its own, and the
// last one to rename it wins.

#include "safe_save.h"

#include "failed_call.h"
#include "file_opening.h"
#include "file_rights.h"
#include "size_signal.h"
#include "temporary_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <new>
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

/// False when it shall not be written.
bool FindSize(const ContentsProducer& produceContents, std::size_t& size) noexcept {
    size = 0;
    return produceContents([&size](std::string_view piece) { size += piece.size(); });
}

bool FillTemporary(const CFile& temporary, const CFile& original, const ContentsProducer& produceContents,
                   CReason* reason) noexcept {
    return CFileWriter(temporary).Write(produceContents, reason) && CarryRightsOver(original, temporary, reason) &&
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

bool WriteInPlace(const CFile& file, const ContentsProducer& produceContents, CReason* reason,
                  const LastLook& isAsLoaded) noexcept {
    const CPlaceLock lock(file);
    if (!lock.IsHeld()) {
        return Failed("fcntl", reason);
    }
    struct stat original = {};
    if (fstat(file.Descriptor(), &original) != 0) {
        return Failed("fstat", reason);
    }
    std::size_t bytes = 0;
    if (!FindSize(produceContents, bytes) || !IsStillWanted(isAsLoaded, reason)) {
        return false;
    }
    const auto size = static_cast<off_t>(bytes);
    CFileWriter writer(file);
    errno = posix_fallocate(file.Descriptor(), 0, size);
    const bool bWritten = errno == 0 ? writer.Write(produceContents, reason) : Failed("posix_fallocate", reason);
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

/// The folder, to be read and flushed; or only as a place to find files in, where the process may not read it.
CFile OpenFolder(const CFileOpener& opener, const char* path) noexcept {
    CFile folder = opener.Open(path, O_RDONLY | O_DIRECTORY);
    return folder.IsOpen() || errno != EACCES ? std::move(folder) : opener.Open(path, O_PATH | O_DIRECTORY);
}

/// True when the file cannot be replaced, as opposed to a shortage: it is a mount of its own, or the folder keeps its
/// files from all but their owners.
bool CannotBeReplaced(int error) noexcept { return error == EBUSY || error == EACCES || error == EPERM; }

enum class Replaced { Yes, No, OnlyInPlace };

Replaced ReplaceByRename(const CFileOpener& opener, const CFile& folder, const char* name, const CFile& original,
                         const ContentsProducer& produceContents, CReason* reason,
                         const LastLook& isAsLoaded) noexcept {
    CTemporaryFile temporary(folder);
    const CTemporaryFile::Made made = temporary.Make(opener, reason);
    if (made == CTemporaryFile::Made::FolderTakesNone) {
        return Replaced::OnlyInPlace;
    }
    if (made == CTemporaryFile::Made::Failed || !FillTemporary(temporary.File(), original, produceContents, reason) ||
        !IsStillWanted(isAsLoaded, reason)) {
        return Replaced::No;
    }
    if (!temporary.RenameTo(name)) {
        const int error = errno;
        Failed("renameat", reason);
        return CannotBeReplaced(error) ? Replaced::OnlyInPlace : Replaced::No;
    }
    fsync(folder.Descriptor()); // makes the new name durable; the document is whole without it
    return Replaced::Yes;
}

bool ReplaceTarget(const std::string& target, const ContentsProducer& produceContents, CReason* reason,
                   const LastLook& isAsLoaded) {
    const std::size_t separator = target.rfind('/');
    const std::string folderPath = target.substr(0, separator + 1);
    const char* const name = target.c_str() + separator + 1;
    const CFileOpener opener;
    const CFile folder = OpenFolder(opener, folderPath.c_str());
    if (!folder.IsOpen()) {
        return Failed("open", reason);
    }
    // O_NONBLOCK: neither a FIFO in the file's place nor a lease on it holds the caller up.
    const CFile original = opener.OpenIn(folder, name, O_RDWR | O_NONBLOCK | O_NOCTTY);
    if (!original.IsOpen()) {
        return Failed("openat", reason);
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
    const Replaced replaced = ReplaceByRename(opener, folder, name, original, produceContents, reason, isAsLoaded);
    return replaced == Replaced::Yes ||
           (replaced == Replaced::OnlyInPlace && WriteInPlace(original, produceContents, reason, isAsLoaded));
}

} // namespace

bool ReplaceContents(const char* path, const ContentsProducer& produceContents, CReason* reason,
                     const LastLook& isAsLoaded) noexcept {
    const std::unique_ptr<char, void (*)(void*)> target(realpath(path, nullptr), std::free);
    if (target == nullptr) {
        return Failed("realpath", reason);
    }
    try {
        return ReplaceTarget(target.get(), produceContents, reason, isAsLoaded);
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
        return false;
    }
}

} // namespace platform
