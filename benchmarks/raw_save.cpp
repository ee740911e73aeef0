#include "raw_save.h"

#include <fcntl.h>
#include <unistd.h>

#include <cstdio>

namespace {

std::filesystem::path BesideIt(std::filesystem::path file) { return file += ".new"; }

bool Flush(const std::filesystem::path& file) {
    const int descriptor = open(file.c_str(), O_RDWR | O_CLOEXEC);
    const bool bFlushed = descriptor >= 0 && fsync(descriptor) == 0;
    close(descriptor);
    return bFlushed;
}

} // namespace

bool ReplaceByBytes(const std::filesystem::path& file, std::string_view bytes) {
    const std::filesystem::path beside = BesideIt(file);
    const int descriptor = open(beside.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    const bool bWritten = descriptor >= 0 &&
                          write(descriptor, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()) &&
                          fsync(descriptor) == 0;
    close(descriptor);
    return bWritten && std::rename(beside.c_str(), file.c_str()) == 0;
}

bool ReplaceByTree(const std::filesystem::path& file, const pugi::xml_document& tree) {
    const std::filesystem::path beside = BesideIt(file);
    return tree.save_file(beside.c_str(), "  ") && Flush(beside) && std::rename(beside.c_str(), file.c_str()) == 0;
}
