#include "platform/semaphore.h"

#include <cerrno>
#include <memory>
#include <new>

namespace platform {

SemaphoreHandle NewSemaphore() noexcept {
    std::unique_ptr<sem_t> semaphore(new (std::nothrow) sem_t);
    return semaphore != nullptr && sem_init(semaphore.get(), 0, 1) == 0 ? semaphore.release() : nullptr;
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
