// Arbitrary relative paths, per-user roots and install-folder paths, against the rules in their plainest form; and
// documents opened and released under such names. An input is a root, an install-folder path and a relative path, one a
// line.

#include "cordelbox.h"
#include "fuzz_failure.h"
#include "platform/folders.h"
#include "platform/semaphore.h"
#include "store/document_paths.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace {

constexpr std::size_t kLongest = 259;

std::string Host() { return platform::HostFolder().c_str(); }

std::string ExpectedInstallPath(std::string relative) {
    std::replace(relative.begin(), relative.end(), '\\', '/');
    if (!relative.empty() && relative[0] == '/') {
        relative.erase(0, 1);
    }
    const std::string path = Host() + "/" + relative;
    return path.size() <= kLongest ? path : "";
}

std::string ExpectedUserPath(const std::string& root, const std::string& installed) {
    const std::string host = Host();
    std::string beginning = installed.substr(0, host.size());
    const auto fold = [](std::string text) {
        std::transform(text.begin(), text.end(), text.begin(), [](char letter) {
            return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
        });
        return text;
    };
    if (root.empty() || fold(beginning) != fold(host)) {
        return "";
    }
    const std::string remainder = installed.substr(host.size());
    if (root.size() + remainder.size() + 28 > kLongest) {
        return "";
    }
    return root + (root.back() == '/' ? "" : "/") + "Marvane/Hollivet" +
           (!remainder.empty() && remainder[0] == '/' ? "" : "/") + remainder;
}

bool IsAscii(const std::string& text) {
    return std::all_of(text.begin(), text.end(),
                       [](char character) { return static_cast<signed char>(character) > 0; });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static PoolOwner owner{nullptr, nullptr, platform::NewSemaphore()};
    std::string input(reinterpret_cast<const char*>(bytes), size);
    const auto takeLine = [&] {
        const std::size_t end = std::min(input.find('\n'), input.size());
        const std::string line = std::string(input.substr(0, end).c_str());
        input.erase(0, end + 1);
        return line;
    };
    const std::string root = "/no such folder/" + takeLine();
    std::string installed = takeLine();
    const std::string relative = input.c_str();
    ::setenv("XDG_CONFIG_HOME", root.c_str(), 1);
    // An install-folder path that begins with a dot stands for one in the host's folder.
    if (!installed.empty() && installed[0] == '.') {
        installed = Host() + installed.substr(1);
    }

    const std::string installPath = InstallFolderPath(relative.c_str()).c_str();
    Require(installPath == ExpectedInstallPath(relative), "install-folder path \"" + installPath + "\"");
    for (const std::string& path : {installed, installPath}) {
        const std::string userPath = UserCopyPath(path.c_str()).c_str();
        Require(userPath.size() <= kLongest, "too long");
        if (IsAscii(path)) {
            Require(userPath == ExpectedUserPath(root, path), "per-user path \"" + userPath + "\"");
        }
    }
    GetXmlObj(&owner, relative.c_str());
    GetPrinterXmlObj(relative.c_str());
    ReleaseXmlObj(relative.c_str());
    ReleaseAll();
    Require(owner.head == nullptr, "a document is still open");
    return 0;
}
