// The host's surroundings on a POSIX system: the per-user root lies where saves do not wait for a disk.

#include "host_test.h"
#include "scratch_folder.h"
#include "unprivileged_posix.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/file.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>
#include <stdexcept>

namespace fs = std::filesystem;

fs::path InstallFolder() { return fs::read_symlink("/proc/self/exe").parent_path(); }

fs::path PreparePerUserRoot() {
    static const CScratchFolder folder;
    const fs::path root = folder.Path() / "PerUser";
    ::setenv("XDG_CONFIG_HOME", root.c_str(), 1);
    return root;
}

bool HasDomOfWine() { return false; }

SemaphoreHandle NewHostSemaphore() {
    sem_t* const semaphore = new sem_t;
    if (::sem_init(semaphore, 0, 1) != 0) {
        throw std::runtime_error("no semaphore");
    }
    return semaphore;
}

void DeleteHostSemaphore(SemaphoreHandle semaphore) {
    if (semaphore != nullptr) {
        ::sem_destroy(semaphore);
        delete semaphore;
    }
}

void TakeHostSemaphore(SemaphoreHandle semaphore) {
    while (::sem_wait(semaphore) != 0) {
    }
}

void GiveHostSemaphore(SemaphoreHandle semaphore) { ::sem_post(semaphore); }

struct CReadOnlyFile::State {
    explicit State(const fs::path& file) : path(file), permissions(fs::status(file).permissions()) {
        constexpr fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
        fs::permissions(path, write, fs::perm_options::remove);
    }
    ~State() {
        unprivileged.reset();
        fs::permissions(path, permissions);
    }
    State(const State&) = delete;
    State& operator=(const State&) = delete;

    const fs::path path;
    const fs::perms permissions;
    std::optional<CUnprivileged> unprivileged;
};

CReadOnlyFile::CReadOnlyFile(const fs::path& path) : m_pState(std::make_unique<State>(path)) {
    m_pState->unprivileged.emplace();
}

CReadOnlyFile::~CReadOnlyFile() = default;

struct CLockedFile::State {
    int nFile = -1;
};

CLockedFile::CLockedFile(const fs::path& path) : m_pState(std::make_unique<State>()) {
    m_pState->nFile = ::open(path.c_str(), O_RDWR | O_CLOEXEC);
    if (m_pState->nFile < 0 || ::flock(m_pState->nFile, LOCK_EX | LOCK_NB) != 0) {
        throw std::runtime_error("no lock");
    }
}

CLockedFile::~CLockedFile() { ::close(m_pState->nFile); }
