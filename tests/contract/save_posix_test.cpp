// Links, permissions and open files as a save leaves them: Windows has its own, other ways with each.

#include "saved_info.h"
#include "unprivileged_posix.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <fstream>
#include <iterator>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

std::set<std::string> NamesIn(const fs::path& folder) {
    std::set<std::string> names;
    for (const auto& entry : fs::directory_iterator(folder)) {
        names.insert(entry.path().filename().string());
    }
    return names;
}

} // namespace

class SavePosix : public HostTest {
protected:
    /// Opens the main document, whose per-user copy is a link, and saves a change.
    void SaveThroughLink(const fs::path& target) {
        InstallMain(Document(kInfo));
        fs::create_directories(UserMainPath().parent_path());
        fs::create_symlink(target, UserMainPath());
        Open();
        EXPECT_EQ(GetAttrValue("Info", "Name"), "mine");
        WriteAttr("Info", "Name", "after");
    }

    fs::path Elsewhere() const { return PerUserRoot() / "Marvane" / "Hollivet" / "elsewhere"; }
    static std::string Mine() { return Document("<Info><Item Name=\"mine\"/></Info>"); }
};

TEST_F(SavePosix, ThePermissionsOfTheCopyAreKept) {
    OpenMain(kInfo);
    for (const unsigned nMode : {0600u, 0640u, 0664u, 0666u, 0604u, 0755u}) {
        fs::permissions(UserMainPath(), static_cast<fs::perms>(nMode));
        WriteAttr("Info", "Name", std::to_string(nMode).c_str());
        EXPECT_EQ(static_cast<unsigned>(fs::status(UserMainPath()).permissions()), nMode);
        EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", std::to_string(nMode)}}}));
    }
}

TEST_F(SavePosix, ThePermissionsAreKeptWhateverTheMaskOfTheProcess) {
    OpenMain(kInfo);
    fs::permissions(UserMainPath(), static_cast<fs::perms>(0666));
    const mode_t before = ::umask(0077);
    WriteAttr("Info", "Name", "after");
    ::umask(before);
    EXPECT_EQ(static_cast<unsigned>(fs::status(UserMainPath()).permissions()), 0666u);
}

TEST_F(SavePosix, ALinkStaysALinkAndItsTargetIsReplaced) {
    WriteFile(Elsewhere() / "real.xml", Mine());
    SaveThroughLink(Elsewhere() / "real.xml");
    EXPECT_TRUE(fs::is_symlink(UserMainPath()));
    EXPECT_FALSE(fs::is_symlink(Elsewhere() / "real.xml"));
    EXPECT_EQ(RecordsBelow(ReadSavedDocument(ReadFile(Elsewhere() / "real.xml")), "Info"), kAfter);
}

TEST_F(SavePosix, ARelativeLinkIsFollowedFromItsOwnFolder) {
    WriteFile(Elsewhere() / "real.xml", Mine());
    SaveThroughLink("../../elsewhere/real.xml");
    EXPECT_EQ(fs::read_symlink(UserMainPath()), "../../elsewhere/real.xml");
    EXPECT_EQ(RecordsBelow(ReadSavedDocument(ReadFile(Elsewhere() / "real.xml")), "Info"), kAfter);
}

TEST_F(SavePosix, ALinkToALinkKeepsBoth) {
    WriteFile(Elsewhere() / "real.xml", Mine());
    fs::create_symlink("real.xml", Elsewhere() / "link.xml");
    SaveThroughLink(Elsewhere() / "link.xml");
    EXPECT_TRUE(fs::is_symlink(UserMainPath()));
    EXPECT_TRUE(fs::is_symlink(Elsewhere() / "link.xml"));
    EXPECT_EQ(RecordsBelow(ReadSavedDocument(ReadFile(Elsewhere() / "real.xml")), "Info"), kAfter);
}

TEST_F(SavePosix, SavingThroughALinkLeavesNoOtherFileBehind) {
    WriteFile(Elsewhere() / "real.xml", Mine());
    SaveThroughLink(Elsewhere() / "real.xml");
    EXPECT_EQ(NamesIn(Elsewhere()), std::set<std::string>{"real.xml"});
    EXPECT_EQ(NamesIn(UserMainPath().parent_path()), std::set<std::string>{"Cordelbox.xml"});
}

TEST_F(SavePosix, ALinkedFolderIsFollowed) {
    WriteFile(Elsewhere() / "Cordelbox.xml", Mine());
    fs::create_directories(UserMainPath().parent_path().parent_path());
    fs::create_directory_symlink(Elsewhere(), UserMainPath().parent_path());
    InstallMain(Document(kInfo));
    Open();
    WriteAttr("Info", "Name", "after");
    EXPECT_TRUE(fs::is_symlink(UserMainPath().parent_path()));
    EXPECT_EQ(RecordsBelow(ReadSavedDocument(ReadFile(Elsewhere() / "Cordelbox.xml")), "Info"), kAfter);
}

TEST_F(SavePosix, AReaderOfTheOldDocumentKeepsItWhole) {
    OpenMain(kInfo);
    std::ifstream reader(UserMainPath(), std::ios::binary);
    WriteAttr("Info", "Name", "after");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(reader), {}), Document(kInfo));
    EXPECT_EQ(SavedItems("Info"), kAfter);
}

TEST_F(SavePosix, WhereTheFolderTakesNoFileTheCopyIsWrittenInPlace) {
    OpenMain(kInfo);
    const fs::path folder = UserMainPath().parent_path();
    fs::permissions(UserMainPath(), static_cast<fs::perms>(0666));
    fs::permissions(folder, static_cast<fs::perms>(0555));
    {
        const CUnprivileged nobody;
        WriteAttr("Info", "Name", "after");
    }
    fs::permissions(folder, static_cast<fs::perms>(0755));
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(NamesIn(folder), std::set<std::string>{"Cordelbox.xml"});
}

TEST_F(SavePosix, WrittenInPlaceAShorterDocumentLeavesNothingOfTheLongerOne) {
    OpenMain("<Info><Item Name=\"before\"/></Info><List><Item Long=\"" + std::string(10000, 'l') + "\"/></List>");
    const fs::path folder = UserMainPath().parent_path();
    fs::permissions(UserMainPath(), static_cast<fs::perms>(0666));
    fs::permissions(folder, static_cast<fs::perms>(0555));
    {
        const CUnprivileged nobody;
        DelAllElem("List");
    }
    fs::permissions(folder, static_cast<fs::perms>(0755));
    EXPECT_EQ(SavedItems("List"), Records{});
}

TEST_F(SavePosix, SavedXmlIsIndentedByTwoBlanks) {
    OpenMain("<List><Item ID=\"1\"/></List>");
    DelAllElem("NoSuchContainer");
    EXPECT_NE(UserMainText().find("<Cordelbox>\n  <List>\n    <Item ID=\"1\""), std::string::npos) << UserMainText();
}

TEST_F(SavePosix, ACarriageReturnInTextBetweenElementsSurvivesEverySave) {
    OpenMain("<Info><Item Name=\"before\"/></Info><Note>a&#13;b&#13;&#10;c</Note>");
    WriteAttr("Info", "Name", "after");
    EXPECT_THAT(UserMainText(), ::testing::HasSubstr("<Note>a&#13;b&#13;\nc</Note>"));
}

TEST_F(SavePosix, EveryCharacterSurvivesWhereverInALargeDocumentItStands) {
    // A large document is written in pieces of a mebibyte: the note is moved over the end of the first, byte by byte.
    constexpr std::size_t kPieceBytes = std::size_t{1} << 20;
    const std::string end = "  <Note Name=\"&lt;&amp;&quot;&#10;\">a&#13;b\u00e9\u20ac</Note>\n</Cordelbox>\n";
    OpenMain("<Info><Item Name=\"\"/></Info><Note Name=\"&lt;&amp;&quot;&#10;\">a&#13;b\u00e9\u20ac</Note>");
    WriteAttr("Info", "Name", "");
    const std::size_t before = UserMainText().size() - end.size();
    for (std::size_t shift = 0; shift <= end.size(); ++shift) {
        const std::string padding(kPieceBytes - before - shift, 'p');
        EXPECT_EQ(WriteAttr("Info", "Name", padding.c_str()), 1);
        const std::string saved = UserMainText();
        ASSERT_EQ(saved.size(), kPieceBytes - shift + end.size());
        ASSERT_EQ(saved.substr(kPieceBytes - shift), end) << shift;
    }
}

TEST_F(SavePosix, LineEndsOfADocumentTypeDeclarationAreLineFeedsInWhatIsSaved) {
    const std::string document = "<!DOCTYPE Cordelbox [\r\n<!ENTITY e \"x\">\r]>\r\n<Cordelbox><Info><Item "
                                 "Name=\"&e;\"/></Info></Cordelbox>";
    InstallMain(document);
    CopyMainForUser(document);
    Open();
    WriteAttr("Info", "Name", "after");
    EXPECT_THAT(UserMainText(), ::testing::HasSubstr("<!DOCTYPE Cordelbox [\n<!ENTITY e \"x\">\n]>\n"));
}
