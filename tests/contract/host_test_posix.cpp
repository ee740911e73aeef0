// The host's surroundings on a POSIX system: the per-user root lies in a folder beside the test program.

#include "host_test.h"

#include <fcntl.h>
#include <semaphore.h>
#include <sys/file.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

namespace fs = std::filesystem;

fs::path InstallFolder() { return fs::read_symlink("/proc/self/exe").parent_path(); }

fs::path PreparePerUserRoot() {
    const fs::path root = InstallFolder() / "PerUser";
    ::setenv("XDG_CONFIG_HOME", root.c_str(), 1);
    return root;
}

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

// The superuser may write everything, so permissions count only once the tests act as another user.
struct CReadOnlyFile::State {
    fs::path path;
    fs::perms permissions{};
    bool bSuperuser = false;
};

CReadOnlyFile::CReadOnlyFile(const fs::path& path) : m_pState(std::make_unique<State>()) {
    constexpr fs::perms write = fs::perms::owner_write | fs::perms::group_write | fs::perms::others_write;
    m_pState->path = path;
    m_pState->permissions = fs::status(path).permissions();
    fs::permissions(path, write, fs::perm_options::remove);
    constexpr uid_t nobody = 65534;
    m_pState->bSuperuser = ::geteuid() == 0;
    if (m_pState->bSuperuser && ::seteuid(nobody) != 0) {
        throw std::runtime_error("no change of user");
    }
}

CReadOnlyFile::~CReadOnlyFile() {
    if (m_pState->bSuperuser) {
        if (::seteuid(0) != 0) {
            std::abort();
        }
        ::prctl(PR_SET_DUMPABLE, 1); // cleared by the change of user; the leak checker needs it
    }
    fs::permissions(m_pState->path, m_pState->permissions);
}

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
