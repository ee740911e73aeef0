#include "size_signal.h"

#include <cerrno>
#include <ctime>

namespace platform {

CNoSizeSignal::CNoSizeSignal() noexcept {
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
    // Only a thread that had it blocked can have one waiting.
    sigset_t waiting;
    m_bWaiting =
        sigismember(&m_before, SIGXFSZ) == 1 && sigpending(&waiting) == 0 && sigismember(&waiting, SIGXFSZ) == 1;
}

CNoSizeSignal::~CNoSizeSignal() {
    const timespec kNow = {};
    if (!m_bWaiting) {
        while (sigtimedwait(&m_signal, nullptr, &kNow) < 0 && errno == EINTR) {
        }
    }
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

} // namespace platform
