// Makes the per-user copy of a document out of the installed one.

#include "per_user_copy.h"

#include "failure.h"
#include "platform/platform.h"

void RequireCopyable(const DocumentPlace& place) {
    if (place.perUser.empty()) {
        throw CFailure(ExitCode::NotKept, "you have no folder for application data",
                       "set HOME, or XDG_CONFIG_HOME to an absolute path");
    }
    if (!std::filesystem::is_regular_file(place.installed)) {
        throw CFailure(ExitCode::NoDocument,
                       place.title + " is not installed: " + platform::TextOf(place.installed) + " is missing",
                       "see which are: ls " + platform::TextOf(place.installed.parent_path()));
    }
}

std::filesystem::path PrepareCopy(const DocumentPlace& place) {
    std::filesystem::create_directories(place.perUser.parent_path());
    auto whole = place.perUser;
    whole += ".new";
    std::filesystem::copy_file(place.installed, whole, std::filesystem::copy_options::overwrite_existing);
    std::filesystem::permissions(whole, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
    return whole;
}
