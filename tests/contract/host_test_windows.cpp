// The host's surroundings on Windows: the per-user root is the user's own roaming application-data folder.

#include "host_test.h"

#include <shlobj.h>

#include <array>
#include <stdexcept>

namespace fs = std::filesystem;

fs::path InstallFolder() {
    std::array<wchar_t, 1024> path;
    const DWORD length = ::GetModuleFileNameW(nullptr, path.data(), static_cast<DWORD>(path.size()));
    if (length == 0 || length == path.size()) {
        throw std::runtime_error("no path of the test program");
    }
    return fs::path(path.data()).parent_path();
}

fs::path PreparePerUserRoot() {
    std::array<wchar_t, MAX_PATH> path;
    if (::SHGetSpecialFolderPathW(nullptr, path.data(), CSIDL_APPDATA, FALSE) == FALSE) {
        throw std::runtime_error("no folder for application data");
    }
    return path.data();
}

bool HasDomOfWine() { return ::GetProcAddress(::GetModuleHandleA("ntdll.dll"), "wine_get_version") != nullptr; }

SemaphoreHandle NewHostSemaphore() {
    const SemaphoreHandle semaphore = ::CreateSemaphoreA(nullptr, 1, 1, nullptr);
    if (semaphore == nullptr) {
        throw std::runtime_error("no semaphore");
    }
    return semaphore;
}

void DeleteHostSemaphore(SemaphoreHandle semaphore) {
    if (semaphore != nullptr) {
        ::CloseHandle(semaphore);
    }
}

void TakeHostSemaphore(SemaphoreHandle semaphore) { ::WaitForSingleObject(semaphore, INFINITE); }

void GiveHostSemaphore(SemaphoreHandle semaphore) { ::ReleaseSemaphore(semaphore, 1, nullptr); }

struct CReadOnlyFile::State {
    fs::path path;
    DWORD attributes;
};

CReadOnlyFile::CReadOnlyFile(const fs::path& path)
    : m_pState(std::make_unique<State>(State{path, ::GetFileAttributesW(path.c_str())})) {
    ::SetFileAttributesW(path.c_str(), m_pState->attributes | FILE_ATTRIBUTE_READONLY);
}

CReadOnlyFile::~CReadOnlyFile() { ::SetFileAttributesW(m_pState->path.c_str(), m_pState->attributes); }

struct CLockedFile::State {
    HANDLE hFile;
};

CLockedFile::CLockedFile(const fs::path& path)
    : m_pState(std::make_unique<State>(State{::CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr,
                                                           OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr)})) {
    if (m_pState->hFile == INVALID_HANDLE_VALUE) {
        throw std::runtime_error("no lock");
    }
}

CLockedFile::~CLockedFile() { ::CloseHandle(m_pState->hFile); }
