#include "store/document_paths.h"

#include "platform/code_page.h"
#include "platform/folders.h"

#include <string>
#include <string_view>

namespace {

using platform::kPathSeparator;
using platform::kPathSize;

std::string_view View(const AnsiString& text) noexcept { return {text.c_str(), text.size()}; }

/// What a per-user copy's path must leave free beyond its two variable parts; a few more than its fixed parts need.
constexpr std::size_t kUserPathReserve = 28;

/// The last byte of a character of two may look like a separator.
bool EndsWithSeparator(std::string_view path) noexcept {
    return path.ends_with(kPathSeparator) && platform::WholeCharacters(path, path.size() - 1) == path.size() - 1;
}

void EndWithSeparator(std::string& path) {
    if (!EndsWithSeparator(path)) {
        path += kPathSeparator;
    }
}

} // namespace

AnsiString InstallFolderPath(const AnsiString& relativePath) {
    std::string relative(View(relativePath));
    platform::ToNativeSeparators(relative.data());
    std::string path(View(platform::HostFolder()));
    if (path.empty()) {
        return {};
    }
    EndWithSeparator(path);
    path.append(relative, relative.starts_with(kPathSeparator) ? 1 : 0);
    return path.size() < kPathSize ? AnsiString(path.data(), path.size()) : AnsiString();
}

AnsiString UserCopyPath(const AnsiString& installFolderPath) {
    const AnsiString root = platform::ApplicationDataFolder();
    const AnsiString hostFolder = platform::HostFolder();
    const std::string_view installed = View(installFolderPath);
    if (root.empty() || hostFolder.empty() ||
        !platform::EqualIgnoringCase(installed.substr(0, hostFolder.size()), View(hostFolder))) {
        return {};
    }
    const std::string_view remainder = installed.substr(hostFolder.size());
    if (root.size() + remainder.size() + kUserPathReserve >= kPathSize) {
        return {};
    }
    std::string path(View(root));
    EndWithSeparator(path);
    path += "Marvane";
    path += kPathSeparator;
    path += "Hollivet";
    if (!remainder.starts_with(kPathSeparator)) {
        path += kPathSeparator;
    }
    path += remainder;
    return AnsiString(path.data(), path.size());
}
