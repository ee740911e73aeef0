// A host for the tests of the exported functions: it installs documents beside the test program, makes per-user copies
// of them, opens and releases them, and looks at what lies on disk after a save.

#pragma once

#include "cordelbox.h"
#include "saved_document.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

using Records = std::vector<Record>;

/// A whole document with these containers below its document element "Cordelbox".
std::string Document(const std::string& containers);

std::string ReadFile(const std::filesystem::path& path);
/// Creates the folders on the way.
void WriteFile(const std::filesystem::path& path, const std::string& bytes);

inline void PrintTo(const AnsiString& text, std::ostream* stream) { *stream << '"' << text.c_str() << '"'; }

// What differs between the targets: host_test_posix.cpp.

/// The folder of the test program.
std::filesystem::path InstallFolder();
/// Sends the library to a per-user root that is the tests' own, where the target allows it, and returns the root.
std::filesystem::path PreparePerUserRoot();
/// Whether the library's DOM is that of Wine, which lacks a few things that every other DOM has.
bool HasDomOfWine();
SemaphoreHandle NewHostSemaphore();
void DeleteHostSemaphore(SemaphoreHandle semaphore);
void TakeHostSemaphore(SemaphoreHandle semaphore);
void GiveHostSemaphore(SemaphoreHandle semaphore);

/// While it lives, the file can be read and not written by this process.
class CReadOnlyFile {
public:
    explicit CReadOnlyFile(const std::filesystem::path& path);
    ~CReadOnlyFile();
    CReadOnlyFile(const CReadOnlyFile&) = delete;
    CReadOnlyFile& operator=(const CReadOnlyFile&) = delete;

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

/// While it lives, the file is open to the exclusion of others, as another program would hold it.
class CLockedFile {
public:
    explicit CLockedFile(const std::filesystem::path& path);
    ~CLockedFile();
    CLockedFile(const CLockedFile&) = delete;
    CLockedFile& operator=(const CLockedFile&) = delete;

private:
    struct State;
    std::unique_ptr<State> m_pState;
};

/// Starts each test with no documents installed, none per-user and none open, and releases what was opened.
/// Death tests run in a process of their own, which begins before the library was ever called.
class HostTest : public ::testing::Test {
protected:
    HostTest();
    ~HostTest() override;
    void SetUp() override;
    void TearDown() override;

    // Documents beside the executable.
    void InstallMain(const std::string& xml);
    void InstallPrinter(const std::string& name, const std::string& xml);
    void InstallStrings(const std::string& language, const std::string& xml);

    // Per-user copies.
    void CopyMainForUser(const std::string& xml);
    void CopyPrinterForUser(const std::string& name, const std::string& xml);
    void CopyStringsForUser(const std::string& language, const std::string& xml);

    std::filesystem::path InstalledMainPath() const;
    std::filesystem::path InstalledPrinterPath(const std::string& name) const;
    std::filesystem::path InstalledStringsPath(const std::string& language) const;
    std::filesystem::path UserMainPath() const;
    std::filesystem::path UserPrinterPath(const std::string& name) const;
    std::filesystem::path UserStringsPath(const std::string& language) const;
    std::filesystem::path PerUserRoot() const { return m_perUserRoot; }

    // The bytes of the per-user copies.
    std::string UserMainText() const;
    std::string UserPrinterText(const std::string& name) const;

    /// GetXmlObj with the fixture's pool owner; released in the end, however often it is called.
    CXmlObject* Open(const char* language = "English");
    /// GetPrinterXmlObj; released in the end, however often it is called.
    CXmlObject* OpenPrinter(const char* name);
    /// The usual arrangement: a main document, installed and as per-user copy, English strings, both open.
    void OpenMain(const std::string& containers, const std::string& stringsContainers = "");
    /// A printer document, installed and as per-user copy, open as the current document.
    void OpenPrinterWith(const char* name, const std::string& containers);
    /// Releases all that Open and OpenPrinter opened. What a test released itself may be among it.
    void CloseAll();

    /// The per-user copies as trees; an empty element, and a failure of the test, when one is not well-formed.
    SavedElement SavedMain() const;
    SavedElement SavedPrinter(const std::string& name) const;
    /// The children of the first such container in the per-user copy.
    Records SavedItems(const std::string& container) const;
    Records SavedPrinterItems(const std::string& name, const std::string& container) const;

    PoolOwner m_owner{};

private:
    std::filesystem::path m_installFolder;
    std::filesystem::path m_perUserRoot;
    std::vector<std::string> m_openLanguages;
    std::vector<std::string> m_openPrinters;
};
