// The host's files and open documents, alike on every target.

#include "host_test.h"

#include "file_bytes.h"

#include <fstream>
#include <stdexcept>

namespace fs = std::filesystem;

namespace {

fs::path PrinterPath(const std::string& name) { return fs::path("Cordelbox") / "xml" / name; }

fs::path MainPath() { return PrinterPath("Cordelbox.xml"); }

fs::path StringsPath(const std::string& language) {
    return fs::path("Cordelbox") / "language" / language / "Strings.xml";
}

SavedElement ReadTree(const std::string& bytes) {
    try {
        return ReadSavedDocument(bytes);
    } catch (const std::runtime_error& error) {
        ADD_FAILURE() << error.what() << " of\n" << bytes;
        return {};
    }
}

Records ItemsOf(const SavedElement& document, const std::string& container) {
    try {
        return RecordsBelow(document, container);
    } catch (const std::runtime_error& error) {
        ADD_FAILURE() << error.what();
        return {};
    }
}

} // namespace

std::string Document(const std::string& containers) {
    return "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<Cordelbox>" + containers + "</Cordelbox>\n";
}

std::string ReadFile(const fs::path& path) {
    EXPECT_TRUE(std::ifstream(path).is_open()) << path;
    return ReadBytes(path);
}

void WriteFile(const fs::path& path, const std::string& bytes) {
    fs::create_directories(path.parent_path());
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    file.close();
    ASSERT_TRUE(file.good()) << path;
}

HostTest::HostTest() : m_installFolder(InstallFolder()), m_perUserRoot(PreparePerUserRoot()) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    m_owner.semaphore = NewHostSemaphore();
}

HostTest::~HostTest() { DeleteHostSemaphore(m_owner.semaphore); }

void HostTest::SetUp() {
    fs::remove_all(m_installFolder / "Cordelbox");
    fs::remove_all(m_perUserRoot / "Marvane" / "Hollivet");
}

void HostTest::TearDown() {
    CloseAll();
    EXPECT_EQ(m_owner.head, nullptr) << "a document is still open";
}

void HostTest::InstallMain(const std::string& xml) { WriteFile(InstalledMainPath(), xml); }

void HostTest::InstallPrinter(const std::string& name, const std::string& xml) {
    WriteFile(InstalledPrinterPath(name), xml);
}

void HostTest::InstallStrings(const std::string& language, const std::string& xml) {
    WriteFile(InstalledStringsPath(language), xml);
}

void HostTest::CopyMainForUser(const std::string& xml) { WriteFile(UserMainPath(), xml); }

void HostTest::CopyPrinterForUser(const std::string& name, const std::string& xml) {
    WriteFile(UserPrinterPath(name), xml);
}

void HostTest::CopyStringsForUser(const std::string& language, const std::string& xml) {
    WriteFile(UserStringsPath(language), xml);
}

fs::path HostTest::InstalledMainPath() const { return m_installFolder / MainPath(); }

fs::path HostTest::InstalledPrinterPath(const std::string& name) const { return m_installFolder / PrinterPath(name); }

fs::path HostTest::InstalledStringsPath(const std::string& language) const {
    return m_installFolder / StringsPath(language);
}

fs::path HostTest::UserMainPath() const { return m_perUserRoot / "Marvane" / "Hollivet" / MainPath(); }

fs::path HostTest::UserPrinterPath(const std::string& name) const {
    return m_perUserRoot / "Marvane" / "Hollivet" / PrinterPath(name);
}

fs::path HostTest::UserStringsPath(const std::string& language) const {
    return m_perUserRoot / "Marvane" / "Hollivet" / StringsPath(language);
}

std::string HostTest::UserMainText() const { return ReadFile(UserMainPath()); }

std::string HostTest::UserPrinterText(const std::string& name) const { return ReadFile(UserPrinterPath(name)); }

CXmlObject* HostTest::Open(const char* language) {
    m_openLanguages.emplace_back(language);
    return GetXmlObj(&m_owner, language);
}

CXmlObject* HostTest::OpenPrinter(const char* name) {
    m_openPrinters.emplace_back(name);
    return GetPrinterXmlObj(name);
}

void HostTest::OpenMain(const std::string& containers, const std::string& stringsContainers) {
    InstallMain(Document(containers));
    CopyMainForUser(Document(containers));
    InstallStrings("English", Document(stringsContainers));
    ASSERT_NE(Open(), nullptr);
}

void HostTest::OpenPrinterWith(const char* name, const std::string& containers) {
    InstallPrinter(name, Document(containers));
    CopyPrinterForUser(name, Document(containers));
    ASSERT_NE(OpenPrinter(name), nullptr);
}

void HostTest::CloseAll() {
    while (!m_openPrinters.empty()) {
        ReleaseXmlObj(m_openPrinters.back().c_str());
        m_openPrinters.pop_back();
    }
    while (!m_openLanguages.empty()) {
        // ReleaseAll releases the strings of the language that was opened last: open this one once more, release twice.
        GetXmlObj(&m_owner, m_openLanguages.back().c_str());
        ReleaseAll();
        ReleaseAll();
        m_openLanguages.pop_back();
    }
}

SavedElement HostTest::SavedMain() const { return ReadTree(UserMainText()); }

SavedElement HostTest::SavedPrinter(const std::string& name) const { return ReadTree(UserPrinterText(name)); }

Records HostTest::SavedItems(const std::string& container) const { return ItemsOf(SavedMain(), container); }

Records HostTest::SavedPrinterItems(const std::string& name, const std::string& container) const {
    return ItemsOf(SavedPrinter(name), container);
}
