#include "allocations.h"

#include <cerrno>
#include <cstdint>
#include <cstdlib>

extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* block, std::size_t size);
void __libc_free(void* block);
}

namespace {

// One thread only, and nothing here may allocate.

bool g_bInside = false;
std::size_t g_nCount = 0;
std::size_t g_nFailing = 0;
bool g_bFurther = false;
bool g_bFailed = false;

/// The library's blocks: a hash table that is never full. A slot that was used once is not free again.
constexpr std::size_t kSlots = std::size_t{1} << 16;
void* g_blocks[kSlots];
std::size_t g_nOutstanding = 0;
std::size_t g_nUsed = 0;
void* const kLeft = reinterpret_cast<void*>(1);

std::size_t FirstSlot(void* block) { return (reinterpret_cast<std::uintptr_t>(block) >> 4) * 0x9E3779B1u % kSlots; }

void Remember(void* block) {
    if (block == nullptr) {
        return;
    }
    std::size_t slot = FirstSlot(block);
    while (g_blocks[slot] != nullptr && g_blocks[slot] != kLeft) {
        slot = (slot + 1) % kSlots;
    }
    g_nUsed += g_blocks[slot] == nullptr ? 1 : 0;
    if (g_nUsed > kSlots / 2) {
        std::abort();
    }
    g_blocks[slot] = block;
    ++g_nOutstanding;
}

/// True when the block was the library's.
bool Forget(void* block) {
    if (block == nullptr || g_nOutstanding == 0) {
        return false;
    }
    for (std::size_t slot = FirstSlot(block); g_blocks[slot] != nullptr; slot = (slot + 1) % kSlots) {
        if (g_blocks[slot] == block) {
            g_blocks[slot] = kLeft;
            --g_nOutstanding;
            return true;
        }
    }
    return false;
}

bool Refuses() {
    if (!g_bInside) {
        return false;
    }
    ++g_nCount;
    if (g_nFailing == 0 || (g_bFurther ? g_nCount < g_nFailing : g_nCount != g_nFailing)) {
        return false;
    }
    g_bFailed = true;
    errno = ENOMEM;
    return true;
}

void* Noted(void* block) {
    if (g_bInside) {
        Remember(block);
    }
    return block;
}

} // namespace

CLibraryMemory::CLibraryMemory(std::size_t failing, bool bFurther) noexcept {
    g_nFailing = failing;
    g_bFurther = bFurther;
    g_bInside = true;
}

CLibraryMemory::~CLibraryMemory() {
    g_bInside = false;
    g_nFailing = 0;
}

void CLibraryMemory::Reset() noexcept {
    g_nCount = 0;
    g_bFailed = false;
    if (g_nOutstanding == 0 && g_nUsed > kSlots / 8) {
        for (void*& block : g_blocks) {
            block = nullptr;
        }
        g_nUsed = 0;
    }
}

bool CLibraryMemory::HasFailed() noexcept { return g_bFailed; }

std::size_t CLibraryMemory::Outstanding() noexcept { return g_nOutstanding; }

// Everything in the process must find these instead of the C library's, shared libraries too.
#pragma GCC visibility push(default)
extern "C" {

void* malloc(std::size_t size) noexcept { return Refuses() ? nullptr : Noted(__libc_malloc(size)); }

void* calloc(std::size_t count, std::size_t size) noexcept {
    return Refuses() ? nullptr : Noted(__libc_calloc(count, size));
}

void* realloc(void* block, std::size_t size) noexcept {
    if (Refuses()) {
        return nullptr;
    }
    const bool bLibrarys = Forget(block);
    void* const moved = __libc_realloc(block, size);
    if (bLibrarys || (g_bInside && block == nullptr)) {
        Remember(moved != nullptr || size == 0 ? moved : block);
    }
    return moved;
}

void free(void* block) noexcept {
    Forget(block);
    __libc_free(block);
}

} // extern "C"
#pragma GCC visibility pop
