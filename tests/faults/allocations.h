// The memory that the library asks for, watched and refused. This program defines malloc and its kin; outside a watch
// they do what they always do.

#pragma once

#include <cstddef>

/// While it lives, allocations are the library's: they are counted, may fail, and are looked for until they are
/// released.
class CLibraryMemory {
public:
    /// Lets the allocation of that number fail, counted from 1 over all watches since the last Reset; with `bFurther`
    /// all that follow it too. 0: none.
    explicit CLibraryMemory(std::size_t failing = 0, bool bFurther = false) noexcept;
    ~CLibraryMemory();
    CLibraryMemory(const CLibraryMemory&) = delete;
    CLibraryMemory& operator=(const CLibraryMemory&) = delete;

    /// Begins to count anew.
    static void Reset() noexcept;
    /// True when an allocation was refused since then.
    static bool HasFailed() noexcept;
    /// Allocations of the library that are not released yet.
    static std::size_t Outstanding() noexcept;
};
