#include "links.h"

#include "failed_call.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <optional>

namespace platform {

namespace {

constexpr int kMostLinks = 40; // as the system follows

/// Makes `path` the one that the link leads to, and notes the owner of one that is not trusted by itself. False, and
/// errno, when it cannot be read.
bool FollowLink(const CFileOpener& opener, std::string& path, std::optional<uid_t>& owner) {
    const CFile link = opener.Open(path.c_str(), O_PATH | O_NOFOLLOW);
    struct stat status = {};
    if (!link.IsOpen() || fstat(link.Descriptor(), &status) != 0) {
        return false;
    }
    const bool bTrusted = status.st_uid == geteuid() || status.st_uid == 0;
    if (!bTrusted && owner.value_or(status.st_uid) != status.st_uid) {
        errno = EACCES;
        return false;
    }
    if (!bTrusted) {
        owner = status.st_uid;
    }
    std::string target(PATH_MAX, '\0');
    const ssize_t length = readlinkat(link.Descriptor(), "", target.data(), target.size());
    if (length < 0) {
        return false;
    }
    target.resize(static_cast<std::size_t>(length));
    path.erase(target.starts_with('/') ? 0 : path.rfind('/') + 1);
    path += target;
    return true;
}

} // namespace

CFile OpenBehindLinks(const CFileOpener& opener, std::string& path, int flags, CReason* reason) {
    std::optional<uid_t> owner;
    CFile file = opener.Open(path.c_str(), flags | O_NOFOLLOW);
    for (int links = 0; !file.IsOpen() && errno == ELOOP && links < kMostLinks; ++links) {
        if (!FollowLink(opener, path, owner)) {
            break;
        }
        file = opener.Open(path.c_str(), flags | O_NOFOLLOW);
    }
    if (!file.IsOpen()) {
        Failed("open", reason);
        return file;
    }
    struct stat status = {};
    if (owner.has_value() && (fstat(file.Descriptor(), &status) != 0 || status.st_uid != *owner)) {
        GiveReason(reason, CReason::Of(ReasonKind::NotPermitted, "the link to it is somebody else's"));
        return CFile();
    }
    return file;
}

} // namespace platform
