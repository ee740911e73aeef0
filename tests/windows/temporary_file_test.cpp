// The temporary file of a save, and what is kept of the file that it replaces.

#include "host_test.h"

namespace fs = std::filesystem;

namespace {

const char* const kInfo = "<Info><Item Name=\"before\"/></Info>";

} // namespace

class TemporaryFile : public HostTest {
protected:
    fs::path Beside(const char* name) const { return UserMainPath().parent_path() / name; }
};

TEST_F(TemporaryFile, OfAKilledProcessGoesWithTheNextSave) {
    OpenMain(kInfo);
    WriteFile(Beside("~cordelbox-1-1.tmp"), "half a document");
    WriteAttr("Info", "Name", "after");
    EXPECT_FALSE(fs::exists(Beside("~cordelbox-1-1.tmp")));
}

TEST_F(TemporaryFile, OfALivingProcessStays) {
    OpenMain(kInfo);
    WriteFile(Beside("~cordelbox-1-1.tmp"), "half a document");
    const HANDLE hWriter =
        ::CreateFileW(Beside("~cordelbox-1-1.tmp").c_str(), GENERIC_WRITE,
                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(hWriter, INVALID_HANDLE_VALUE);
    WriteAttr("Info", "Name", "after");
    EXPECT_TRUE(fs::exists(Beside("~cordelbox-1-1.tmp")));
    ::CloseHandle(hWriter);
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "after"}}}));
}

TEST_F(TemporaryFile, AHardLinkToAnotherFileIsNoLeftover) {
    OpenMain(kInfo);
    WriteFile(PerUserRoot() / "letter.txt", "a letter");
    if (::CreateHardLinkW(Beside("~cordelbox-1-1.tmp").c_str(), (PerUserRoot() / "letter.txt").c_str(), nullptr) ==
        FALSE) {
        GTEST_SKIP() << "no hard links here";
    }
    WriteAttr("Info", "Name", "after");
    EXPECT_EQ(ReadFile(PerUserRoot() / "letter.txt"), "a letter");
    EXPECT_TRUE(fs::exists(Beside("~cordelbox-1-1.tmp")));
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "after"}}}));
}

TEST_F(TemporaryFile, WhatALinkOfItsNameLeadsToStays) {
    OpenMain(kInfo);
    WriteFile(PerUserRoot() / "letter.txt", "a letter");
    if (::CreateSymbolicLinkW(Beside("~cordelbox-1-1.tmp").c_str(), (PerUserRoot() / "letter.txt").c_str(), 0) == 0) {
        GTEST_SKIP() << "no symbolic links here";
    }
    WriteAttr("Info", "Name", "after");
    EXPECT_EQ(ReadFile(PerUserRoot() / "letter.txt"), "a letter");
}

TEST_F(TemporaryFile, AFolderOfItsNameHoldsNoSaveUp) {
    OpenMain(kInfo);
    fs::create_directory(Beside("~cordelbox-1-1.tmp"));
    WriteAttr("Info", "Name", "after");
    EXPECT_TRUE(fs::exists(Beside("~cordelbox-1-1.tmp")));
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "after"}}}));
}

TEST_F(TemporaryFile, OtherFilesInTheFolderStay) {
    OpenMain(kInfo);
    for (const char* const name : {"cordelbox-1-1.tmp", "~cordelbox-1-1.tmpx", "~cordelbox-1-1", "notes.tmp"}) {
        WriteFile(Beside(name), "somebody's");
    }
    WriteAttr("Info", "Name", "after");
    for (const char* const name : {"cordelbox-1-1.tmp", "~cordelbox-1-1.tmpx", "~cordelbox-1-1", "notes.tmp"}) {
        EXPECT_TRUE(fs::exists(Beside(name))) << name;
    }
}

TEST_F(TemporaryFile, IsNotLeftWhenTheFileCannotBeReplaced) {
    OpenMain(kInfo);
    // Held as a program does that reads it: the existence test fails, so nothing may be written at all.
    const HANDLE hReader =
        ::CreateFileW(UserMainPath().c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING, 0, nullptr);
    ASSERT_NE(hReader, INVALID_HANDLE_VALUE);
    WriteAttr("Info", "Name", "after");
    ::CloseHandle(hReader);
    EXPECT_EQ(UserMainText(), Document(kInfo));
    EXPECT_EQ(std::distance(fs::directory_iterator(UserMainPath().parent_path()), fs::directory_iterator()), 1);
}

TEST_F(TemporaryFile, TakesTheHiddenAttributeOver) {
    OpenMain(kInfo);
    ::SetFileAttributesW(UserMainPath().c_str(), FILE_ATTRIBUTE_HIDDEN);
    WriteAttr("Info", "Name", "after");
    EXPECT_NE(::GetFileAttributesW(UserMainPath().c_str()) & FILE_ATTRIBUTE_HIDDEN, 0u);
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "after"}}}));
}
