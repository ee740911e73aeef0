// The calls of a load and of a save to the system, watched and made to fail. This program defines the functions;
// outside a watch they do what they always do.

#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

struct SystemCall {
    std::string name;
    std::string path;   // of the file, or of the folder; of a converter its encoding
    std::string target; // of a rename
    std::string bytes;  // of a write
    bool bCreates = false;
};

/// What becomes of a call.
struct Fate {
    int error = 0;            // the call fails with it
    bool bKill = false;       // the process is killed before the call
    std::size_t nAtMost = -1; // a write or a read takes only so many bytes
    std::string answer{};     // what a link leads to, if not to what is there
};

/// While it lives, every call is put to a judge, with its number from 0 on, and noted.
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
