// The superuser may write everything: tests of permissions act as another user for a while.

#pragma once

#include <sys/prctl.h>
#include <unistd.h>

#include <cstdlib>
#include <stdexcept>

/// While it lives, the process has no privileges. Does nothing for an ordinary user.
class CUnprivileged {
public:
    CUnprivileged() : m_bSuperuser(::geteuid() == 0) {
        constexpr uid_t nobody = 65534;
        if (m_bSuperuser && ::seteuid(nobody) != 0) {
            throw std::runtime_error("no change of user");
        }
    }

    ~CUnprivileged() {
        if (m_bSuperuser) {
            if (::seteuid(0) != 0) {
                std::abort();
            }
            ::prctl(PR_SET_DUMPABLE, 1); // cleared by the change of user; the leak checker needs it
        }
    }

    CUnprivileged(const CUnprivileged&) = delete;
    CUnprivileged& operator=(const CUnprivileged&) = delete;

private:
    const bool m_bSuperuser;
};
