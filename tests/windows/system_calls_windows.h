// The calls of a save to the system, watched and made to fail. This program has entries of its own for the imported
// functions, to which every call of the library and of the tests comes; outside a watch they do what they always do.

#pragma once

#include "cordelbox.h"

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

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
};

/// While it lives, every call is put to a judge, with its number from 0 on, and noted. Nobody waits meanwhile.
class CSystemCallWatch {
public:
    using Judge = std::function<Fate(std::size_t number, const SystemCall& call)>;
    explicit CSystemCallWatch(Judge judge = {});
    ~CSystemCallWatch();
    CSystemCallWatch(const CSystemCallWatch&) = delete;
    CSystemCallWatch& operator=(const CSystemCallWatch&) = delete;

    const std::vector<SystemCall>& Calls() const noexcept { return m_calls; }

    /// The fate of the next call, as the judge says. Kills the process where the judge does.
    Fate Note(SystemCall call);

private:
    const Judge m_judge;
    std::vector<SystemCall> m_calls;
    bool m_bInside = false; // the watch itself makes no calls that count
};
