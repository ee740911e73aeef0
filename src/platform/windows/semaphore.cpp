// Semaphores of the kernel.

#include "platform/semaphore.h"

namespace platform {

SemaphoreHandle NewSemaphore() noexcept { return ::CreateSemaphoreA(nullptr, 1, 1, nullptr); }

void DeleteSemaphore(SemaphoreHandle semaphore) noexcept { ::CloseHandle(semaphore); }

void Wait(SemaphoreHandle semaphore) noexcept { ::WaitForSingleObject(semaphore, INFINITE); }

void Signal(SemaphoreHandle semaphore) noexcept { ::ReleaseSemaphore(semaphore, 1, nullptr); }

} // namespace platform
