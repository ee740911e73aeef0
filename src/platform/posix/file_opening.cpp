#include "file_opening.h"

#include <fcntl.h>
#include <unistd.h>

#include <utility>

namespace platform {

namespace {

constexpr int kFirstDescriptor = STDERR_FILENO + 1;

/// The descriptor itself, or one above the standard streams in its place: it is one of theirs only when the host has
/// closed a stream at this very moment.
CFile AboveStandardStreams(int descriptor) noexcept {
    CFile file(descriptor);
    if (!file.IsOpen() || descriptor >= kFirstDescriptor) {
        return file;
    }
    return CFile(fcntl(descriptor, F_DUPFD_CLOEXEC, kFirstDescriptor));
}

} // namespace

CFile::~CFile() {
    if (IsOpen()) {
        close(m_nDescriptor);
    }
}

CFile::CFile(CFile&& other) noexcept : m_nDescriptor(std::exchange(other.m_nDescriptor, -1)) {}

CFile& CFile::operator=(CFile&& other) noexcept {
    std::swap(m_nDescriptor, other.m_nDescriptor);
    return *this;
}

CFileOpener::CFileOpener() noexcept {
    // The lowest free descriptor is the one that is given out. What is opened here can be neither read nor written.
    for (CFile& placeholder : m_placeholders) {
        CFile file(open("/", O_PATH | O_CLOEXEC));
        if (file.Descriptor() >= kFirstDescriptor) {
            return;
        }
        placeholder = std::move(file);
    }
}

CFileOpener::~CFileOpener() = default;

CFile CFileOpener::Open(const char* path, int flags) const noexcept {
    return AboveStandardStreams(open(path, flags | O_CLOEXEC));
}

CFile CFileOpener::OpenIn(const CFile& folder, const char* name, int flags, mode_t mode) const noexcept {
    return AboveStandardStreams(openat(folder.Descriptor(), name, flags | O_NOFOLLOW | O_CLOEXEC, mode));
}

} // namespace platform
