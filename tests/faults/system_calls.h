// The calls of a load and of a save to the system, watched and made to fail. This program defines the functions;
// outside a watch they do what they always do.

#pragma once

#include "call_watch.h"

#include <cstddef>
#include <string>
#include <string_view>

struct SystemCall {
    std::string name;
    std::string path;   // of the file, or of the folder; of a converter its encoding
    std::string target; // of a rename; of an attribute its name
    std::string bytes;  // of an attribute; of a pause how many nanoseconds it takes
    bool bCreates = false;
    std::string_view written{}; // while it is judged: what a write is asked to write
};

/// What becomes of a call.
struct Fate {
    int error = 0;                         // the call fails with it
    bool bKill = false;                    // the process is killed before the call
    std::size_t nAtMost = std::size_t(-1); // a write or a read takes only so many bytes
    std::string answer{};                  // what a link leads to, chance brings, or an attribute or a folder holds
};

using CSystemCallWatch = CCallWatch<SystemCall, Fate>;
