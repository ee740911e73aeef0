// The system as POSIX has it, and the two functions through which the library shows a message.

#include "system/system.h"

#include "platform/posix/file_opening.h"
#include "platform/posix/file_rights.h"
#include "platform/posix/safe_save.h"
#include "platform/posix/size_signal.h"
#include "platform/posix/temporary_file.h"
#include "platform/utf8.h"

#include "cordelbox.h"

#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace host {

namespace {

[[noreturn]] void Fail(const char* what, const std::filesystem::path& path) {
    throw std::filesystem::filesystem_error(what, path, std::error_code(errno, std::generic_category()));
}

/// A descriptor that is never one of the standard streams.
class CFile {
public:
    CFile(const std::filesystem::path& path, int flags, mode_t mode = 0)
        : m_nFile(::open(path.c_str(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, mode)) {
        if (m_nFile >= 0 && m_nFile <= STDERR_FILENO) {
            const int low = std::exchange(m_nFile, ::fcntl(m_nFile, F_DUPFD_CLOEXEC, STDERR_FILENO + 1));
            ::close(low);
        }
    }
    ~CFile() {
        if (m_nFile >= 0) {
            ::close(m_nFile);
        }
    }
    CFile(const CFile&) = delete;
    CFile& operator=(const CFile&) = delete;
    int Get() const noexcept { return m_nFile; }
    int Keep() noexcept { return std::exchange(m_nFile, -1); }

private:
    int m_nFile;
};

bool WriteAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::write(file, bytes.data(), bytes.size());
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count <= 0) {
            return false;
        }
        bytes.remove_prefix(static_cast<std::size_t>(count));
    }
    return true;
}

[[noreturn]] void FailFor(const CReason& reason, const std::filesystem::path& path) {
    if (reason.m_kind == ReasonKind::Overtaken) {
        FailForOvertaken(path);
    }
    errno = reason.m_nError != 0 ? static_cast<int>(reason.m_nError) : EIO;
    Fail("cannot write", path);
}

/// To be read and flushed; or only as a place to make files in, where the process may not read it.
platform::CFile OpenFolder(const platform::CFileOpener& opener, const std::filesystem::path& path) {
    const char* const name = path.empty() ? "." : path.c_str();
    platform::CFile folder = opener.Open(name, O_RDONLY | O_DIRECTORY);
    return folder.IsOpen() || errno != EACCES ? std::move(folder) : opener.Open(name, O_PATH | O_DIRECTORY);
}

/// A new file in the place of what has that name.
void MakeFile(const std::filesystem::path& path, std::string_view bytes, const std::filesystem::path& like,
              const LastLook& isAsLoaded) {
    const platform::CFileOpener opener;
    const platform::CFile folder = OpenFolder(opener, path.parent_path());
    if (!folder.IsOpen()) {
        Fail("cannot make a file beside", path);
    }
    platform::RemoveLeftovers(opener, folder, ::geteuid());
    const platform::CNoSizeSignal noSizeSignal;
    platform::CTemporaryFile file(folder);
    CReason reason;
    if (file.Make(opener, &reason) != platform::CTemporaryFile::Made::Yes) {
        FailFor(reason, path);
    }
    if (!WriteAll(file.File().Descriptor(), bytes)) {
        Fail("cannot write", path);
    }
    if (!like.empty()) {
        const platform::CFile original = opener.Open(like.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY);
        if (!original.IsOpen()) {
            Fail("cannot read", like);
        }
        std::optional<platform::FileRights> noneKnown;
        if (!platform::CarryRightsOver(original, file.File(), &reason, noneKnown)) {
            FailFor(reason, path);
        }
    }
    if (::fsync(file.File().Descriptor()) != 0) {
        Fail("cannot write", path);
    }
    if (!platform::IsStillWanted(isAsLoaded, nullptr)) {
        FailForOvertaken(path);
    }
    if (!file.RenameTo(path.filename().c_str())) {
        Fail("cannot replace", path);
    }
    ::fsync(folder.Descriptor());
}

volatile std::sig_atomic_t interrupted = 0;

void OnSignal(int) { interrupted = 1; }

constexpr std::uint64_t kMostInput = std::uint64_t{1} << 30; // of standard input, more than any verb takes

constexpr int kPause = 200; // milliseconds between looks whether the user interrupts

/// What a pipe or a device gives until it ends or has given more than `most`, or the user interrupts: a read alone
/// would go on after a signal.
std::string ReadToEnd(int file, const std::filesystem::path& name, std::uint64_t most) {
    std::string bytes;
    char piece[1 << 12];
    while (!IsInterrupted() && bytes.size() <= most) {
        pollfd readable{file, POLLIN, 0};
        const int ready = ::poll(&readable, 1, kPause);
        if (ready == 0) {
            continue;
        }
        const ssize_t count = ready < 0 ? ready : ::read(file, piece, sizeof piece);
        if (count < 0 && (errno == EINTR || errno == EAGAIN)) {
            continue;
        }
        if (count < 0) {
            Fail("cannot read", name);
        }
        if (count == 0) {
            break;
        }
        bytes.append(piece, static_cast<std::size_t>(count));
    }
    return bytes;
}

/// To what is no file: it cannot be replaced, and a reader of it may be slow.
void WriteTo(const std::filesystem::path& path, std::string_view bytes) {
    const CFile file(path, O_WRONLY);
    if (file.Get() < 0 || ::fcntl(file.Get(), F_SETFL, 0) != 0 || !WriteAll(file.Get(), bytes)) {
        Fail("cannot write", path);
    }
}

} // namespace

std::vector<std::string> CommandWords(int argc, char** argv) {
    return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

std::filesystem::path ExecutableFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

std::filesystem::path PerUserRoot() {
    const char* const configuration = std::getenv("XDG_CONFIG_HOME");
    if (configuration != nullptr && configuration[0] == '/') {
        return configuration;
    }
    const char* const home = std::getenv("HOME");
    return home != nullptr && home[0] == '/' ? std::filesystem::path(home) / ".config" : std::filesystem::path();
}

std::string TextOf(const std::filesystem::path& path) { return path.native(); }
std::filesystem::path PathOf(std::string_view text) { return text; }
std::string ToCodePage(std::string_view utf8) { return std::string(utf8); }
std::string FromCodePage(std::string_view text) { return std::string(text); }

bool IsInCodePage(std::string_view utf8) {
    char32_t codePoint = 0;
    for (std::size_t position = 0; position < utf8.size();) {
        if (!DecodeUtf8(utf8, position, codePoint)) {
            return false;
        }
    }
    return true;
}

const std::string& StandardInput() {
    static const std::string input = [] {
        try {
            return ReadToEnd(STDIN_FILENO, "standard input", kMostInput);
        } catch (const std::filesystem::filesystem_error&) {
            return std::string(); // it is closed
        }
    }();
    return input;
}

std::string Variable(const char* name) {
    const char* const value = std::getenv(name);
    return value != nullptr ? value : "";
}

std::string ReadBytes(const std::filesystem::path& path, std::uint64_t most) {
    const CFile file(path, O_RDONLY);
    struct stat facts;
    if (file.Get() < 0 || ::fstat(file.Get(), &facts) != 0) {
        Fail("cannot read", path);
    }
    if (!S_ISREG(facts.st_mode)) {
        errno = EINVAL;
        Fail("no regular file", path);
    }
    if (static_cast<std::uint64_t>(facts.st_size) > most) {
        throw TooLarge(path);
    }
    std::string bytes(static_cast<std::size_t>(facts.st_size), '\0');
    std::size_t length = 0;
    while (length < bytes.size()) {
        const ssize_t count =
            ::pread(file.Get(), bytes.data() + length, bytes.size() - length, static_cast<off_t>(length));
        if (count < 0 && errno == EINTR) {
            continue;
        }
        if (count < 0) {
            Fail("cannot read", path);
        }
        if (count == 0) {
            break;
        }
        length += static_cast<std::size_t>(count);
    }
    bytes.resize(length);
    return bytes;
}

std::string ReadInput(const std::filesystem::path& path, std::uint64_t most) {
    struct stat facts;
    if (::stat(path.c_str(), &facts) == 0 && (S_ISREG(facts.st_mode) || S_ISDIR(facts.st_mode))) {
        return ReadBytes(path, most);
    }
    const CFile file(path, O_RDONLY);
    if (file.Get() < 0) {
        Fail("cannot read", path);
    }
    return ReadToEnd(file.Get(), path, most);
}

void WriteWhole(const std::filesystem::path& path, std::string_view bytes, const std::filesystem::path& like,
                const LastLook& isAsLoaded) {
    struct stat present;
    if (::stat(path.c_str(), &present) != 0) {
        MakeFile(path, bytes, like, isAsLoaded);
    } else if (!S_ISREG(present.st_mode)) {
        WriteTo(path, bytes);
    } else {
        const auto contents = [bytes](const platform::PieceSink& sink) {
            sink(bytes);
            return true;
        };
        CReason reason;
        if (!platform::ReplaceContents(path.c_str(), contents, &reason, isAsLoaded)) {
            FailFor(reason, path);
        }
    }
}

void PutFile(const std::filesystem::path& path, std::string_view bytes, const std::filesystem::path& like) {
    MakeFile(path, bytes, like, {});
}

CFileLock::CFileLock(CFileLock&& other) noexcept : m_nHandle(std::exchange(other.m_nHandle, kNone)) {}

CFileLock& CFileLock::operator=(CFileLock&& other) noexcept {
    std::swap(m_nHandle, other.m_nHandle);
    return *this;
}

CFileLock::~CFileLock() { Release(); }

bool CFileLock::Try(const std::filesystem::path& path, std::string_view holder) {
    CFile file(path, O_RDWR | O_CREAT | O_NOFOLLOW, 0600);
    if (file.Get() < 0) {
        Fail("cannot open the lock file", path);
    }
    if (::flock(file.Get(), LOCK_EX | LOCK_NB) != 0) {
        if (errno != EWOULDBLOCK && errno != EINTR) {
            Fail("cannot lock", path);
        }
        return false;
    }
    // Who holds it is for a message only, and does not go into a file that has another name too.
    struct stat facts;
    if (::fstat(file.Get(), &facts) == 0 && S_ISREG(facts.st_mode) && facts.st_nlink == 1 &&
        (::ftruncate(file.Get(), 0) != 0 || !WriteAll(file.Get(), holder))) {
        errno = 0;
    }
    m_nHandle = file.Keep();
    return true;
}

void CFileLock::Release() noexcept {
    if (IsHeld()) {
        ::close(static_cast<int>(std::exchange(m_nHandle, kNone)));
    }
}

std::string HolderOf(const std::filesystem::path& path) {
    try {
        return ReadBytes(path);
    } catch (const std::filesystem::filesystem_error&) {
        return {};
    }
}

void NoteInterruptions() noexcept {
    struct sigaction action = {};
    action.sa_handler = &OnSignal;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction present;
        if (::sigaction(signal, nullptr, &present) == 0 && present.sa_handler != SIG_IGN) {
            ::sigaction(signal, &action, nullptr);
        }
    }
}

bool IsInterrupted() noexcept { return interrupted != 0; }

std::uint64_t ProcessNumber() noexcept { return static_cast<std::uint64_t>(::getpid()); }

} // namespace host

// A terminal has no windows: a message is printed.
__attribute__((visibility("default"))) int MessageBoxA(WindowHandle, const char* text, const char* caption,
                                                       unsigned int) {
    std::fprintf(stderr, "%s: %s\n", caption, text);
    return 1;
}

__attribute__((visibility("default"))) int EnableWindow(WindowHandle, int) { return 0; }
