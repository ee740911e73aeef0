// The library's own semaphores count for themselves and ask the kernel only when somebody has to wait: every lookup
// takes one, and a call of the kernel costs more than the lookup, under Wine twenty times as much.

#pragma once

#include "cordelbox.h"

#include <atomic>

namespace platform {

struct CountedSemaphore {
    std::atomic<int> users; // who holds it, and who waits for it
    const HANDLE turn;      // a semaphore of the kernel, signalled once for everybody who had to wait
};

using LockHandle = CountedSemaphore*;

void Wait(LockHandle semaphore) noexcept;
void Signal(LockHandle semaphore) noexcept;

} // namespace platform
