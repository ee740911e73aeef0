#include "platform/semaphore.h"

#include <cerrno>
#include <new>

namespace platform {

SemaphoreHandle NewSemaphore() noexcept {
    auto* const semaphore = new (std::nothrow) sem_t;
    if (semaphore != nullptr && sem_init(semaphore, 0, 1) != 0) {
        delete semaphore;
        return nullptr;
    }
    return semaphore;
}

void DeleteSemaphore(SemaphoreHandle semaphore) noexcept {
    if (semaphore != nullptr) {
        sem_destroy(semaphore);
        delete semaphore;
    }
}

void Wait(SemaphoreHandle semaphore) noexcept {
    while (sem_wait(semaphore) != 0 && errno == EINTR) {
    }
}

void Signal(SemaphoreHandle semaphore) noexcept { sem_post(semaphore); }

} // namespace platform
