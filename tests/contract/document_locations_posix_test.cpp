// The per-user root as the environment gives it: on Windows the system knows the folder, and no variable moves it.

#include "host_test.h"

#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>

namespace fs = std::filesystem;

namespace {

/// Sets a variable of the environment, or takes it away, for a scope.
class CVariable {
public:
    CVariable(const char* name, std::optional<std::string> value) : m_pName(name) {
        if (const char* const before = std::getenv(name); before != nullptr) {
            m_before = before;
        }
        Put(value);
    }
    ~CVariable() { Put(m_before); }
    CVariable(const CVariable&) = delete;
    CVariable& operator=(const CVariable&) = delete;

private:
    void Put(const std::optional<std::string>& value) {
        if (value) {
            ::setenv(m_pName, value->c_str(), 1);
        } else {
            ::unsetenv(m_pName);
        }
    }

    const char* const m_pName;
    std::optional<std::string> m_before;
};

} // namespace

class PerUserRoots : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        InstallMain(Document("<Info><Item Name=\"installed\"/></Info>"));
        fs::remove_all(Home());
        PutCopy(Home() / ".config", "in the home");
        PutCopy(PerUserRoot(), "in the configuration folder");
    }

    void TearDown() override {
        HostTest::TearDown();
        fs::remove_all(Home());
    }

    static fs::path Home() { return InstallFolder() / "Home"; }

    static void PutCopy(const fs::path& root, const std::string& name) {
        WriteFile(root / "Marvane" / "Hollivet" / "Cordelbox" / "xml" / "Cordelbox.xml",
                  Document("<Info><Item Name=\"" + name + "\"/></Info>"));
    }

    AnsiString OpenedName() {
        Open();
        const AnsiString name = GetAttrValue("Info", "Name");
        CloseAll();
        return name;
    }
};

TEST_F(PerUserRoots, TheConfigurationFolderGoesBeforeTheHome) {
    const CVariable home("HOME", Home().string());
    EXPECT_EQ(OpenedName(), "in the configuration folder");
}

TEST_F(PerUserRoots, WithoutAConfigurationFolderTheHomeCounts) {
    const CVariable home("HOME", Home().string());
    const CVariable root("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(OpenedName(), "in the home");
}

TEST_F(PerUserRoots, AnEmptyConfigurationFolderDoesNotCount) {
    const CVariable home("HOME", Home().string());
    const CVariable root("XDG_CONFIG_HOME", "");
    EXPECT_EQ(OpenedName(), "in the home");
}

TEST_F(PerUserRoots, ARelativeConfigurationFolderDoesNotCount) {
    const CVariable home("HOME", Home().string());
    const fs::path before = fs::current_path();
    fs::current_path(InstallFolder());
    const CVariable root("XDG_CONFIG_HOME", "PerUser");
    EXPECT_EQ(OpenedName(), "in the home");
    fs::current_path(before);
}

TEST_F(PerUserRoots, ARelativeHomeDoesNotCount) {
    // From another folder a save would write another document.
    const fs::path before = fs::current_path();
    fs::current_path(InstallFolder());
    const CVariable home("HOME", fs::relative(Home(), InstallFolder()).string());
    const CVariable root("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(OpenedName(), "");
    fs::current_path(before);
}

TEST_F(PerUserRoots, WithoutAnyRootNotEvenTheInstalledDocumentLoads) {
    InstallStrings("English", Document(""));
    const CVariable home("HOME", std::nullopt);
    const CVariable root("XDG_CONFIG_HOME", std::nullopt);
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(GetAttrValue("Info", "Name"), "");
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(PerUserRoots, ASeparatorAtTheEndOfTheRootIsNotDoubled) {
    const CVariable root("XDG_CONFIG_HOME", PerUserRoot().string() + "/");
    EXPECT_EQ(OpenedName(), "in the configuration folder");
}

TEST_F(PerUserRoots, ARootThatDoesNotExistLeavesTheInstalledDocument) {
    const CVariable root("XDG_CONFIG_HOME", (Home() / "nowhere").string());
    EXPECT_EQ(OpenedName(), "installed");
    EXPECT_FALSE(fs::exists(Home() / "nowhere"));
}

TEST_F(PerUserRoots, ARootThatIsTooLongLeavesNothing) {
    const CVariable root("XDG_CONFIG_HOME", "/" + std::string(300, 'r'));
    EXPECT_EQ(OpenedName(), "");
}

TEST_F(PerUserRoots, TheRootIsAskedAnewForEverySave) {
    Open();
    const CVariable home("HOME", Home().string());
    const CVariable root("XDG_CONFIG_HOME", std::nullopt);
    WriteAttr("Info", "Name", "changed");
    const SavedElement saved =
        ReadSavedDocument(ReadFile(Home() / ".config/Marvane/Hollivet/Cordelbox/xml/Cordelbox.xml"));
    EXPECT_EQ(RecordsBelow(saved, "Info"), (Records{Record{{"Name", "changed"}}}));
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "in the configuration folder"}}}));
}

TEST_F(PerUserRoots, TheInstalledPathMayTakeTheFullLength) {
    const CVariable root("XDG_CONFIG_HOME", "/");
    const std::size_t nRelative = std::string("/Cordelbox/xml/").size();
    const std::size_t nInstalled = 259 - InstallFolder().string().size() - nRelative;
    const std::size_t nPerUser = 259 - 28 - 1 - nRelative;
    const std::size_t nLongest = std::min(nInstalled, nPerUser);
    Open();
    for (const std::size_t nLength : {nLongest, nLongest + 1}) {
        const std::string name(nLength, 'p');
        InstallPrinter(name, Document("<Info><Item Name=\"printer\"/></Info>"));
        EXPECT_EQ(OpenPrinter(name.c_str()) != nullptr, nLength == nLongest) << nLength;
    }
}

/// A copy that nobody may write, and a process that may be privileged: nothing here gives up its rights.
class ReadOnlyCopies : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        InstallMain(Document("<Info><Item Name='installed'/></Info>"));
        CopyMainForUser(Document("<Info><Item Name='mine'/></Info>"));
        SetMode(0444);
    }

    void TearDown() override {
        SetMode(0644);
        HostTest::TearDown();
    }

    void SetMode(unsigned int mode) const { fs::permissions(UserMainPath(), static_cast<fs::perms>(mode)); }
};

TEST_F(ReadOnlyCopies, AreAbsentToALoad) {
    Open();
    EXPECT_EQ(GetAttrValue("Info", "Name"), "installed");
}

TEST_F(ReadOnlyCopies, AreAbsentToASave) {
    SetMode(0644);
    Open();
    SetMode(0444);
    const std::string before = UserMainText();
    WriteAttr("Info", "Name", "changed");
    EXPECT_EQ(UserMainText(), before);
    SetMode(0644);
    WriteAttr("Info", "Name", "changed");
    EXPECT_NE(UserMainText(), before);
}

TEST_F(ReadOnlyCopies, ArePresentToAPrivilegedProcessWhenAnybodyMayWriteThem) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs a privileged process";
    }
    for (const unsigned int mode : {0464u, 0446u, 0644u}) {
        SetMode(mode);
        Open();
        EXPECT_EQ(GetAttrValue("Info", "Name"), "mine") << std::oct << mode;
        CloseAll();
    }
}
