// The signal that a write beyond the process's limit of file sizes raises.

#pragma once

#include <csignal>

namespace platform {

/// While it lives, this thread's writes beyond the limit fail, and raise no signal that the process would see: its own
/// handling of the signal stays as it is, and so does one that was waiting already.
class CNoSizeSignal {
public:
    CNoSizeSignal() noexcept;
    ~CNoSizeSignal();
    CNoSizeSignal(const CNoSizeSignal&) = delete;
    CNoSizeSignal& operator=(const CNoSizeSignal&) = delete;

private:
    sigset_t m_signal;
    sigset_t m_before; // which signals the thread had blocked
    bool m_bWaiting;
};

} // namespace platform
