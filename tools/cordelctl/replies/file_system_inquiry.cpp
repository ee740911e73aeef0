#include "file_system_inquiry.h"

#include "reply_lines.h"

#include <algorithm>
#include <stdexcept>

namespace {

/// As printers spell it: "0:\fonts".
std::string PathForPrinter(const std::string& folder) {
    const std::size_t colon = folder.find(':');
    if (colon == std::string::npos || colon == 0) {
        throw std::invalid_argument("\"" + folder + "\" names no volume: give it as VOLUME:FOLDER");
    }
    if (std::any_of(folder.begin(), folder.end(),
                    [](char character) { return character == '"' || static_cast<unsigned char>(character) < 0x20; })) {
        throw std::invalid_argument("\"" + folder + "\" has a character that no inquiry can carry");
    }
    std::string path = folder.substr(colon + 1);
    std::replace(path.begin(), path.end(), '/', '\\');
    path.erase(0, path.find_first_not_of('\\'));
    return folder.substr(0, colon + 1) + "\\" + path;
}

} // namespace

std::string FileSystemInquiry(const std::vector<std::string>& folders) {
    std::string inquiry = std::string(kUniversalExit) + "@PJL\r\n@PJL INFO FILESYS\r\n";
    for (const std::string& folder : folders) {
        inquiry += "@PJL FSDIRLIST NAME=\"" + PathForPrinter(folder) + "\" ENTRY=1 COUNT=65535\r\n";
    }
    return inquiry.append(kUniversalExit);
}
