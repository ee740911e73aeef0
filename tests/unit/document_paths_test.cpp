// Where a document's two files are, relative to the folder of this very program.

#include "store/document_paths.h"

#include "platform/folders.h"

#include <gtest/gtest.h>

#include <cctype>
#include <cstdlib>
#include <string>

namespace {

std::string Host() { return platform::HostFolder().c_str(); }

std::string InstallPath(const std::string& relative) { return InstallFolderPath(relative.c_str()).c_str(); }

std::string UserPath(const std::string& installed) { return UserCopyPath(installed.c_str()).c_str(); }

} // namespace

class DocumentPaths : public ::testing::Test {
protected:
    void SetUp() override { SetRoot("/root of users"); }
    static void SetRoot(const std::string& root) { ::setenv("XDG_CONFIG_HOME", root.c_str(), 1); }

    /// An install-folder path whose remainder, with its separator, has that many bytes.
    static std::string WithRemainder(std::size_t bytes) { return Host() + "/" + std::string(bytes - 1, 'x'); }
};

TEST_F(DocumentPaths, AnInstalledDocumentLiesInTheHostsFolder) { EXPECT_EQ(InstallPath("a.xml"), Host() + "/a.xml"); }

TEST_F(DocumentPaths, EveryBackslashOfARelativePathSeparates) {
    EXPECT_EQ(InstallPath("Cordelbox\\xml\\Cordelbox.xml"), Host() + "/Cordelbox/xml/Cordelbox.xml");
}

TEST_F(DocumentPaths, OneLeadingSeparatorIsDropped) {
    EXPECT_EQ(InstallPath("\\a.xml"), Host() + "/a.xml");
    EXPECT_EQ(InstallPath("/a.xml"), Host() + "/a.xml");
}

TEST_F(DocumentPaths, NoMoreThanOneLeadingSeparatorIsDropped) {
    EXPECT_EQ(InstallPath("\\\\a.xml"), Host() + "//a.xml");
}

TEST_F(DocumentPaths, AnInstalledPathMayHave259Bytes) {
    const std::size_t room = 259 - Host().size() - 1;
    EXPECT_EQ(InstallPath(std::string(room, 'x')).size(), 259u);
    EXPECT_EQ(InstallPath("\\" + std::string(room, 'x')).size(), 259u);
}

TEST_F(DocumentPaths, AnInstalledPathOf260BytesFails) {
    const std::size_t room = 260 - Host().size() - 1;
    EXPECT_EQ(InstallPath(std::string(room, 'x')), "");
    EXPECT_EQ(InstallPath("\\" + std::string(room, 'x')), "");
    EXPECT_EQ(InstallPath(std::string(100000, 'x')), "");
}

TEST_F(DocumentPaths, LettersKeepTheirCase) { EXPECT_EQ(InstallPath("ReadMe.XML"), Host() + "/ReadMe.XML"); }

TEST_F(DocumentPaths, APerUserCopyLiesAtTheSamePlaceBelowTheRoot) {
    EXPECT_EQ(UserPath(InstallPath("Cordelbox\\xml\\a.xml")), "/root of users/Marvane/Hollivet/Cordelbox/xml/a.xml");
}

TEST_F(DocumentPaths, ARootThatEndsInASeparatorGetsNoSecondOne) {
    SetRoot("/users/");
    EXPECT_EQ(UserPath(InstallPath("a.xml")), "/users/Marvane/Hollivet/a.xml");
    SetRoot("/");
    EXPECT_EQ(UserPath(InstallPath("a.xml")), "/Marvane/Hollivet/a.xml");
}

TEST_F(DocumentPaths, ADocumentOutsideTheHostsFolderHasNoPerUserCopy) {
    EXPECT_EQ(UserPath("/elsewhere/a.xml"), "");
    EXPECT_EQ(UserPath(""), "");
    EXPECT_EQ(UserPath(Host().substr(0, Host().size() - 1)), "");
}

TEST_F(DocumentPaths, TheHostsFolderIsComparedWithoutRegardToCase) {
    std::string installed = Host();
    for (char& character : installed) {
        character = static_cast<char>(std::toupper(static_cast<unsigned char>(character)));
    }
    ASSERT_NE(installed, Host());
    EXPECT_EQ(UserPath(installed + "/ReadMe.xml"), "/root of users/Marvane/Hollivet/ReadMe.xml");
}

TEST_F(DocumentPaths, ARemainderWithoutSeparatorGetsOne) {
    EXPECT_EQ(UserPath(Host() + "-old/a.xml"), "/root of users/Marvane/Hollivet/-old/a.xml");
    EXPECT_EQ(UserPath(Host()), "/root of users/Marvane/Hollivet/");
}

TEST_F(DocumentPaths, RootAndRemainderLeaveTwentyEightBytesFree) {
    const std::string root = "/" + std::string(99, 'r');
    SetRoot(root);
    const std::size_t longest = 259 - 28 - root.size();
    EXPECT_EQ(UserPath(WithRemainder(longest)).size(), root.size() + 17 + longest);
    EXPECT_EQ(UserPath(WithRemainder(longest + 1)), "") << "although the path itself would fit";
}

TEST_F(DocumentPaths, TheReserveDoesNotCountASeparatorThatTheRootLacks) {
    const std::string root = "/" + std::string(98, 'r') + "/";
    SetRoot(root);
    const std::size_t longest = 259 - 28 - root.size();
    EXPECT_EQ(UserPath(WithRemainder(longest)).size(), root.size() + 16 + longest);
    EXPECT_EQ(UserPath(WithRemainder(longest + 1)), "");
}

TEST_F(DocumentPaths, ARootOfAnyLengthFailsCleanly) {
    SetRoot("/" + std::string(100000, 'r'));
    EXPECT_EQ(UserPath(InstallPath("a.xml")), "");
}

TEST_F(DocumentPaths, NoFileNeedExist) {
    SetRoot("/no such folder");
    EXPECT_EQ(UserPath(InstallPath("no such folder\\a.xml")), "/no such folder/Marvane/Hollivet/no such folder/a.xml");
}
