// The library's own semaphore: one thread at a time, and nobody is forgotten.

#include "platform/semaphore.h"

#include "lacking_system.h"

#include <gtest/gtest.h>

#include <atomic>

using platform::LockHandle;

namespace {

constexpr DWORD kMoment = 50; // milliseconds
constexpr DWORD kLong = 60000;

DWORD WINAPI TakeAndGive(void* semaphore) {
    platform::Wait(static_cast<LockHandle>(semaphore));
    platform::Signal(static_cast<LockHandle>(semaphore));
    return 0;
}

/// Another thread that takes the semaphore and gives it back.
HANDLE StartOther(LockHandle semaphore) { return ::CreateThread(nullptr, 0, TakeAndGive, semaphore, 0, nullptr); }

} // namespace

TEST(Semaphores, LetTheNextThreadInWhenTheyAreGivenBack) {
    const LockHandle semaphore = platform::NewSemaphore();
    for (int round = 0; round < 2; ++round) { // the second after one that nobody waited for
        platform::Wait(semaphore);
        const HANDLE other = StartOther(semaphore);
        EXPECT_EQ(::WaitForSingleObject(other, kMoment), DWORD{WAIT_TIMEOUT}) << "it is taken";
        platform::Signal(semaphore);
        EXPECT_EQ(::WaitForSingleObject(other, kLong), DWORD{WAIT_OBJECT_0});
        ::CloseHandle(other);
        platform::Wait(semaphore);
        platform::Signal(semaphore);
    }
    platform::DeleteSemaphore(semaphore);
}

TEST(Semaphores, LeaveNothingBehind) {
    const int blocks = Blocks();
    const int handles = SemaphoreHandles();
    platform::DeleteSemaphore(platform::NewSemaphore());
    EXPECT_EQ(Blocks(), blocks);
    EXPECT_EQ(SemaphoreHandles(), handles);
    bool bMade = true;
    {
        const CLackingSystem lacking({.nAllocations = 0});
        bMade = platform::NewSemaphore() != nullptr;
    }
    EXPECT_FALSE(bMade);
    EXPECT_EQ(SemaphoreHandles(), handles);
}
