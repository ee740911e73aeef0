// Counting semaphores of count 1, used as mutexes and always waited on without time limit.

#pragma once

#include "cordelbox.h"

namespace platform {

/// A new semaphore with count and maximum 1; null when there is none to be had.
SemaphoreHandle NewSemaphore() noexcept;
void DeleteSemaphore(SemaphoreHandle semaphore) noexcept;

void Wait(SemaphoreHandle semaphore) noexcept;
void Signal(SemaphoreHandle semaphore) noexcept;

/// Holds a semaphore for a scope.
class CSemaphoreGuard {
public:
    explicit CSemaphoreGuard(SemaphoreHandle semaphore) noexcept : m_hSemaphore(semaphore) { Wait(semaphore); }
    ~CSemaphoreGuard() { Signal(m_hSemaphore); }
    CSemaphoreGuard(const CSemaphoreGuard&) = delete;
    CSemaphoreGuard& operator=(const CSemaphoreGuard&) = delete;

private:
    const SemaphoreHandle m_hSemaphore;
};

} // namespace platform
