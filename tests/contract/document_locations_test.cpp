// Where the two files of a document lie, and how long their paths may be.

#include "saving_host_test.h"

#include <algorithm>
#include <string>

namespace fs = std::filesystem;

class DocumentLocations : public SavingHostTest {
protected:
    /// The longest file name of a printer document whose paths are both short enough: 259 bytes for the installed
    /// document; for the per-user copy, root, relative path and a reserve of 28 bytes must stay below 260.
    std::size_t LongestName() const {
        const std::size_t nRelative = std::string("\\Cordelbox\\xml\\").size();
        const std::size_t nInstalled = 259 - InstallFolder().string().size() - nRelative;
        const std::size_t nPerUser = 259 - 28 - PerUserRoot().string().size() - nRelative;
        return std::min(nInstalled, nPerUser);
    }
};

TEST_F(DocumentLocations, DocumentsLieBesideTheExecutable) {
    WriteFile(InstallFolder() / "Cordelbox" / "xml" / "Cordelbox.xml", Document("<Info><Item Name=\"main\"/></Info>"));
    WriteFile(InstallFolder() / "Cordelbox" / "xml" / "office.xml", Document("<Info><Item Name=\"office\"/></Info>"));
    WriteFile(InstallFolder() / "Cordelbox" / "language" / "English" / "Strings.xml",
              Document("<Info><Item Name=\"strings\"/></Info>"));
    Open("English");
    EXPECT_EQ(GetAttrValue("Info", "Name"), "main");
    EXPECT_EQ(GetXMLString("Info", "Name"), "strings");
    OpenPrinter("office.xml");
    EXPECT_EQ(GetAttrValue("Info", "Name"), "office");
}

TEST_F(DocumentLocations, PerUserCopiesLieBelowThePerUserRoot) {
    const fs::path folder = PerUserRoot() / "Marvane" / "Hollivet" / "Cordelbox";
    WriteFile(folder / "xml" / "Cordelbox.xml", Document("<Info><Item Name=\"my main\"/></Info>"));
    WriteFile(folder / "xml" / "office.xml", Document("<Info><Item Name=\"my office\"/></Info>"));
    WriteFile(folder / "language" / "English" / "Strings.xml", Document("<Info><Item Name=\"my strings\"/></Info>"));
    Open("English");
    EXPECT_EQ(GetAttrValue("Info", "Name"), "my main");
    EXPECT_EQ(GetXMLString("Info", "Name"), "my strings");
    OpenPrinter("office.xml");
    EXPECT_EQ(GetAttrValue("Info", "Name"), "my office");
}

TEST_F(DocumentLocations, TheWorkingFolderDoesNotMatter) {
    OpenMain("<Info><Item Name=\"main\"/></Info>");
    CloseAll();
    const fs::path before = fs::current_path();
    fs::current_path(fs::temp_directory_path());
    Open();
    EXPECT_EQ(GetAttrValue("Info", "Name"), "main");
    EXPECT_TRUE(Saves([] { WriteAttr("Info", "Name", "changed"); }));
    fs::current_path(before);
}

TEST_F(DocumentLocations, ADocumentLoadsAlthoughTheUserHasNoFolderYet) {
    InstallMain(Document("<Info><Item Name=\"main\"/></Info>"));
    fs::remove_all(PerUserRoot() / "Marvane");
    Open();
    EXPECT_EQ(GetAttrValue("Info", "Name"), "main");
    EXPECT_FALSE(fs::exists(PerUserRoot() / "Marvane")) << "no folder is ever created";
}

TEST_F(DocumentLocations, TheLongestNameOpensAndSaves) {
    const std::string name(LongestName(), 'p');
    OpenMain("");
    OpenPrinterWith(name.c_str(), "<Info><Item Name=\"long\"/></Info>");
    EXPECT_EQ(GetAttrValue("Info", "Name"), "long");
    WriteAttr("Info", "Name", "saved");
    EXPECT_EQ(SavedPrinterItems(name, "Info"), (Records{Record{{"Name", "saved"}}}));
}

TEST_F(DocumentLocations, TheLongestNameOpensWithoutAPerUserCopy) {
    const std::string name(LongestName(), 'p');
    OpenMain("");
    InstallPrinter(name, Document("<Info><Item Name=\"long\"/></Info>"));
    EXPECT_NE(OpenPrinter(name.c_str()), nullptr);
    EXPECT_EQ(GetAttrValue("Info", "Name"), "long");
}

TEST_F(DocumentLocations, OneByteMoreThanTheReserveLeavesIsNotLoadedAlthoughBothPathsWouldFit) {
    const std::string name(LongestName() + 1, 'p');
    ASSERT_LE(UserPrinterPath(name).string().size(), 259u);
    OpenMain("");
    InstallPrinter(name, Document("<Info><Item Name=\"long\"/></Info>"));
    CopyPrinterForUser(name, Document("<Info><Item Name=\"long\"/></Info>"));
    EXPECT_EQ(OpenPrinter(name.c_str()), nullptr);
    EXPECT_EQ(GetAttrValue("Info", "Name"), "");
    EXPECT_EQ(ReleaseXmlObj(name.c_str()), 0);
}
