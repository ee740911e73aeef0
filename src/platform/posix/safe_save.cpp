#include "safe_save.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <memory>
#include <new>
#include <string>

namespace platform {

namespace {

class CFile {
public:
    explicit CFile(int descriptor = -1) noexcept : m_nDescriptor(descriptor) {}
    ~CFile() {
        if (IsOpen()) {
            close(m_nDescriptor);
        }
    }
    CFile(CFile&& other) noexcept : m_nDescriptor(other.m_nDescriptor) { other.m_nDescriptor = -1; }
    CFile& operator=(CFile&& other) noexcept {
        std::swap(m_nDescriptor, other.m_nDescriptor);
        return *this;
    }
    bool IsOpen() const noexcept { return m_nDescriptor >= 0; }
    int Descriptor() const noexcept { return m_nDescriptor; }

private:
    int m_nDescriptor;
};

/// Writes a new file, or an old one from its beginning, up to the first failure.
class CFileWriter {
public:
    explicit CFileWriter(const CFile& file) noexcept : m_nFile(file.Descriptor()) {}

    /// False when the system fails.
    bool Write(const ContentsProducer& produceContents) noexcept {
        produceContents([this](std::string_view piece) { WritePiece(piece); });
        return !m_bFailed;
    }
    std::size_t WrittenBytes() const noexcept { return m_nWritten; }

private:
    void WritePiece(std::string_view piece) noexcept {
        if (m_nWritten > 0 && !m_bFailed) {
            // The disk takes what is there while further pieces are made. What fails here fails in the flush.
            sync_file_range(m_nFile, 0, 0, SYNC_FILE_RANGE_WRITE);
        }
        while (!m_bFailed && !piece.empty()) {
            const ssize_t count = write(m_nFile, piece.data(), piece.size());
            if (count < 0 && errno == EINTR) {
                continue;
            }
            m_bFailed = count <= 0;
            if (!m_bFailed) {
                m_nWritten += static_cast<std::size_t>(count);
                piece.remove_prefix(static_cast<std::size_t>(count));
            }
        }
    }

    const int m_nFile;
    std::size_t m_nWritten = 0;
    bool m_bFailed = false;
};

std::size_t SizeOf(const ContentsProducer& produceContents) noexcept {
    std::size_t size = 0;
    produceContents([&size](std::string_view piece) { size += piece.size(); });
    return size;
}

/// True when opening the temporary file failed because the folder takes no new file there, as opposed to a shortage
/// (a full disk, say) in which writing in place would destroy what there is.
bool FolderTakesNoFile(int error) noexcept {
    return error == EACCES || error == EPERM || error == EROFS || error == ENAMETOOLONG || error == EISDIR ||
           error == ELOOP;
}

/// Locks a file against other processes that save the same document. The lock is of the kind that does not meet the
/// shared lock of the existence test, since the file takes the document's place while it is held.
bool LockForSaving(int file) noexcept {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    while (fcntl(file, F_OFD_SETLKW, &lock) != 0) {
        if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

/// Opens the temporary file and locks it. The result is not open when that cannot be done, and nothing is left behind;
/// `error` then says why the folder did not take the file, or is 0 when it did.
CFile OpenTemporary(const std::string& path, int& error) noexcept {
    for (;;) {
        CFile file(open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, S_IRUSR | S_IWUSR));
        if (!file.IsOpen()) {
            error = errno;
            return file;
        }
        struct stat opened = {};
        struct stat named = {};
        const bool bLocked = LockForSaving(file.Descriptor()) && fstat(file.Descriptor(), &opened) == 0;
        const bool bNamed = bLocked && stat(path.c_str(), &named) == 0;
        if (bNamed && named.st_ino == opened.st_ino && named.st_dev == opened.st_dev) {
            return file;
        }
        if (!bNamed && (!bLocked || errno != ENOENT)) {
            unlink(path.c_str());
            return CFile();
        }
        // Another process has put this very file in the document's place meanwhile, or has removed it.
    }
}

bool FillTemporary(const CFile& file, const ContentsProducer& produceContents, const struct stat& original) noexcept {
    const int descriptor = file.Descriptor();
    // Ownership first: changing it may clear permission bits. Without the right to change it the file is the user's
    // own; a shortage is a failure like any other.
    if (fchown(descriptor, original.st_uid, original.st_gid) != 0 &&
        (errno == EIO || errno == ENOSPC || errno == EDQUOT)) {
        return false;
    }
    return ftruncate(descriptor, 0) == 0 && CFileWriter(file).Write(produceContents) &&
           fchmod(descriptor, original.st_mode & 07777) == 0 && fsync(descriptor) == 0;
}

bool WriteInPlace(const char* path, const ContentsProducer& produceContents) noexcept {
    const CFile file(open(path, O_WRONLY | O_CLOEXEC));
    struct stat original = {};
    if (!file.IsOpen() || !LockForSaving(file.Descriptor()) || fstat(file.Descriptor(), &original) != 0) {
        return false;
    }
    const auto size = static_cast<off_t>(SizeOf(produceContents));
    CFileWriter writer(file);
    const bool bWritten = posix_fallocate(file.Descriptor(), 0, size) == 0 && writer.Write(produceContents);
    // Reserving may have made the file longer, even where it failed; up to the first byte it is the old document.
    return ftruncate(file.Descriptor(), writer.WrittenBytes() == 0 ? original.st_size : size) == 0 && bWritten &&
           fsync(file.Descriptor()) == 0;
}

/// Makes the rename itself durable. The document is whole without it, so a failure is not one of the save.
void FlushFolder(const std::string& folder) noexcept {
    const CFile file(open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (file.IsOpen()) {
        fsync(file.Descriptor());
    }
}

bool ReplaceTarget(const std::string& target, const ContentsProducer& produceContents) {
    struct stat original = {};
    if (stat(target.c_str(), &original) != 0) {
        return false;
    }
    const std::size_t separator = target.rfind('/');
    const std::string folder = target.substr(0, separator + 1);
    const std::string temporary = folder + "." + target.substr(separator + 1) + ".saving";
    int error = 0;
    const CFile file = OpenTemporary(temporary, error);
    if (!file.IsOpen()) {
        return FolderTakesNoFile(error) && WriteInPlace(target.c_str(), produceContents);
    }
    if (!FillTemporary(file, produceContents, original) || rename(temporary.c_str(), target.c_str()) != 0) {
        unlink(temporary.c_str());
        return false;
    }
    FlushFolder(folder);
    return true;
}

} // namespace

bool ReplaceContents(const char* path, const ContentsProducer& produceContents, CReason* reason) noexcept {
    const std::unique_ptr<char, void (*)(void*)> target(realpath(path, nullptr), std::free);
    if (target == nullptr) {
        GiveReason(reason, CReason::OfCall("realpath", static_cast<std::uint32_t>(errno)));
        return false;
    }
    try {
        return ReplaceTarget(target.get(), produceContents);
    } catch (const std::bad_alloc&) {
        GiveReason(reason, CReason::Of(ReasonKind::OutOfMemory));
        return false;
    }
}

} // namespace platform
