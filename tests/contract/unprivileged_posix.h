// The superuser may write everything: tests of permissions act as another user for a while.

#pragma once

#include <linux/capability.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <stdexcept>

/// While it lives, the process has no privileges. Does nothing for an ordinary user.
class CUnprivileged {
public:
    CUnprivileged() : m_bSuperuser(::geteuid() == 0) {
        if (m_bSuperuser) {
            const uid_t user = UserWhoReachesTheDocuments();
            if (user == 0 ? !TakePrivileges(false) : ::seteuid(user) != 0) {
                throw std::runtime_error("no change of user");
            }
        }
    }

    ~CUnprivileged() {
        if (m_bSuperuser) {
            if (::geteuid() == 0 ? !TakePrivileges(true) : ::seteuid(0) != 0) {
                std::abort();
            }
            ::prctl(PR_SET_DUMPABLE, 1); // cleared by the change; the leak checker needs it
        }
    }

    CUnprivileged(const CUnprivileged&) = delete;
    CUnprivileged& operator=(const CUnprivileged&) = delete;

private:
    /// Nobody, or the owner of the folders that only their owner enters: a home folder is often closed to others. The
    /// superuser without privileges is an owner like any other.
    static uid_t UserWhoReachesTheDocuments() {
        constexpr uid_t nobody = 65534;
        uid_t user = nobody;
        for (std::filesystem::path folder = std::filesystem::read_symlink("/proc/self/exe").parent_path();
             folder.has_relative_path(); folder = folder.parent_path()) {
            struct stat status {};
            if (::stat(folder.c_str(), &status) != 0) {
                throw std::runtime_error("no such folder: " + folder.string());
            }
            if ((status.st_mode & S_IXOTH) == 0 && status.st_uid != user) {
                if (user != nobody) {
                    throw std::runtime_error("no user without privileges reaches " + folder.string());
                }
                user = status.st_uid;
            }
        }
        return user;
    }

    /// Takes into effect what the process is permitted to do, or nothing of it.
    static bool TakePrivileges(bool bAll) {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct data[_LINUX_CAPABILITY_U32S_3]{};
        if (::syscall(SYS_capget, &header, data) != 0) {
            return false;
        }
        for (__user_cap_data_struct& part : data) {
            part.effective = bAll ? part.permitted : 0;
        }
        return ::syscall(SYS_capset, &header, data) == 0;
    }

    const bool m_bSuperuser;
};
