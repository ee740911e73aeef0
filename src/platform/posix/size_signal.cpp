#include "size_signal.h"

#include <cerrno>
#include <ctime>

namespace platform {

CNoSizeSignal::CNoSizeSignal() noexcept {
    sigset_t waiting; // which only signals do that the thread had blocked
    m_bWaiting = sigpending(&waiting) == 0 && sigismember(&waiting, SIGXFSZ) == 1;
    sigemptyset(&m_signal);
    sigaddset(&m_signal, SIGXFSZ);
    pthread_sigmask(SIG_BLOCK, &m_signal, &m_before);
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
