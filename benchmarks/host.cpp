#include "host.h"

#include <cstdio>
#include <cstdlib>
#include <fstream>

namespace fs = std::filesystem;

namespace {

fs::path HostFolder() { return fs::read_symlink("/proc/self/exe").parent_path(); }
fs::path PerUserRoot() { return HostFolder() / "per-user"; }

fs::path WriteDocument(const fs::path& folder, const std::string& name, std::string_view contents) {
    fs::create_directories(folder);
    std::ofstream(folder / name, std::ios::binary) << contents;
    return folder / name;
}

} // namespace

CHost::CHost() {
    ::setenv("XDG_CONFIG_HOME", PerUserRoot().c_str(), 1);
    fs::remove_all(PerUserRoot());
    ::sem_init(&m_semaphore, 0, 1);
    m_owner.semaphore = &m_semaphore;
    GetXmlObj(&m_owner, "");
}

CHost::~CHost() {
    ReleaseAll();
    ::sem_destroy(&m_semaphore);
}

fs::path CHost::Install(const std::string& name, std::string_view contents) {
    return WriteDocument(HostFolder() / "Cordelbox" / "xml", name, contents);
}

fs::path CHost::CopyForUser(const std::string& name, std::string_view contents) {
    return WriteDocument(PerUserRoot() / "Marvane" / "Hollivet" / "Cordelbox" / "xml", name, contents);
}

void CHost::MakeCurrent(const std::string& name) {
    if (GetPrinterXmlObj(name.c_str()) == nullptr) {
        std::fprintf(stderr, "%s cannot be opened\n", name.c_str());
        std::exit(EXIT_FAILURE);
    }
}

void CHost::Close(const std::string& name) { ReleaseXmlObj(name.c_str()); }
