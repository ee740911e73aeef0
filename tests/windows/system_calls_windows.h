// The calls of a save to the system, watched and made to fail. This program has entries of its own for the imported
// functions, to which every call of the library and of the tests comes; outside a watch they do what they always do.

#pragma once

#include "call_watch.h"
#include "cordelbox.h"

#include <string>

struct SystemCall {
    std::string name;
    std::wstring path; // of the file, as far as the call tells
    bool bCreates = false;
};

/// The exit code of a process that was killed before a call.
constexpr UINT kKilled = 77;

/// What becomes of a call.
struct Fate {
    DWORD error = 0;            // the call fails with it
    bool bKill = false;         // the process is killed before the call
    DWORD nAtMost = 0xFFFFFFFF; // a write takes only so many bytes
    bool bTakesEffect = false;  // the length of a file is set, although that fails
    LONGLONG nSize = -1;        // a file is said to have this size
    DWORD nAttributes = 0;      // a file is said to have these attributes too
    bool bRepeats = false;      // a search gives the same file once more
    int nChance = -1;           // chance is this byte, again and again
};

/// Nobody waits during a watch.
using CSystemCallWatch = CCallWatch<SystemCall, Fate>;

/// Milliseconds that were waited during watches, as it is said.
DWORD WaitedMilliseconds() noexcept;

/// Blocks that the system made for access rights and names of users, less those that it was given back.
int SystemBlocks() noexcept;
