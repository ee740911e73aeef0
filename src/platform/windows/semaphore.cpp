// Semaphores: the host's are the kernel's, the library's own ask it only when they have to.

#include "platform/semaphore.h"

#include <new>

namespace platform {

LockHandle NewSemaphore() noexcept {
    const HANDLE turn = ::CreateSemaphoreA(nullptr, 0, 1, nullptr);
    if (turn == nullptr) {
        return nullptr;
    }
    auto* const semaphore = new (std::nothrow) CountedSemaphore{0, turn};
    if (semaphore == nullptr) {
        ::CloseHandle(turn);
    }
    return semaphore;
}

void DeleteSemaphore(LockHandle semaphore) noexcept {
    if (semaphore != nullptr) {
        ::CloseHandle(semaphore->turn);
        delete semaphore;
    }
}

void Wait(LockHandle semaphore) noexcept {
    if (semaphore->users.fetch_add(1) > 0) {
        Wait(semaphore->turn);
    }
}

void Signal(LockHandle semaphore) noexcept {
    if (semaphore->users.fetch_sub(1) > 1) {
        Signal(semaphore->turn);
    }
}

void Wait(SemaphoreHandle semaphore) noexcept { ::WaitForSingleObject(semaphore, INFINITE); }

void Signal(SemaphoreHandle semaphore) noexcept { ::ReleaseSemaphore(semaphore, 1, nullptr); }

} // namespace platform
