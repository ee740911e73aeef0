// Counting semaphores of count 1, used as mutexes and always waited on without time limit.

#pragma once

#include "cordelbox.h"
#include "semaphore_types.h" // per target: LockHandle, a semaphore of the library's own, with Wait and Signal for it

namespace platform {

/// A new semaphore with count and maximum 1; null when there is none to be had.
LockHandle NewSemaphore() noexcept;
void DeleteSemaphore(LockHandle semaphore) noexcept;

// A host's semaphore.
void Wait(SemaphoreHandle semaphore) noexcept;
void Signal(SemaphoreHandle semaphore) noexcept;

/// Holds a semaphore for a scope.
template <class Handle>
class CSemaphoreGuard {
public:
    explicit CSemaphoreGuard(Handle semaphore) noexcept : m_hSemaphore(semaphore) { Wait(semaphore); }
    ~CSemaphoreGuard() { Signal(m_hSemaphore); }
    CSemaphoreGuard(const CSemaphoreGuard&) = delete;
    CSemaphoreGuard& operator=(const CSemaphoreGuard&) = delete;

private:
    const Handle m_hSemaphore;
};

} // namespace platform
