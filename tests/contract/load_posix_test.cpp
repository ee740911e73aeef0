// Loading where the file system has more kinds of files than Windows, and where the parser's limits are our own.

#include "named_document.h"
#include "unprivileged_posix.h"

#include <sys/file.h>
#include <sys/stat.h>

#include <fcntl.h>

#include <string>

namespace fs = std::filesystem;

namespace {

std::string Nested(int nElements) {
    std::string xml = "<Cordelbox><Info><Item Name=\"deep\"/></Info>";
    for (int i = 1; i < nElements; ++i) {
        xml += "<a>";
    }
    for (int i = 1; i < nElements; ++i) {
        xml += "</a>";
    }
    return xml + "</Cordelbox>";
}

} // namespace

class LoadPosix : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        InstallMain(Named("installed"));
    }

    void LinkMainForUser(const fs::path& target) {
        fs::create_directories(UserMainPath().parent_path());
        fs::create_symlink(target, UserMainPath());
    }
};

TEST_F(LoadPosix, AnUnreadableInstalledDocumentIsNotLoaded) {
    fs::permissions(InstalledMainPath(), fs::perms::none);
    {
        const CUnprivileged nobody;
        Open();
    }
    EXPECT_EQ(CurrentName(), "");
}

TEST_F(LoadPosix, AnUnreadablePerUserCopyCountsAsAbsent) {
    CopyMainForUser(Named("mine"));
    fs::permissions(UserMainPath(), fs::perms::all);
    fs::permissions(UserMainPath(), fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read,
                    fs::perm_options::remove);
    {
        const CUnprivileged nobody;
        Open();
    }
    EXPECT_EQ(CurrentName(), "installed");
}

TEST_F(LoadPosix, ALinkToThePerUserCopyIsFollowed) {
    const fs::path target = PerUserRoot() / "Marvane" / "Hollivet" / "elsewhere.xml";
    WriteFile(target, Named("linked"));
    LinkMainForUser(target);
    Open();
    EXPECT_EQ(CurrentName(), "linked");
}

TEST_F(LoadPosix, ALinkThatLeadsNowhereCountsAsAbsent) {
    LinkMainForUser("nowhere.xml");
    Open();
    EXPECT_EQ(CurrentName(), "installed");
}

TEST_F(LoadPosix, ALinkToItselfCountsAsAbsent) {
    LinkMainForUser(UserMainPath());
    Open();
    EXPECT_EQ(CurrentName(), "installed");
}

TEST_F(LoadPosix, APipeInThePlaceOfThePerUserCopyCountsAsAbsent) {
    fs::create_directories(UserMainPath().parent_path());
    ASSERT_EQ(::mkfifo(UserMainPath().c_str(), 0600), 0);
    Open();
    EXPECT_EQ(CurrentName(), "installed");
    WriteAttr("Info", "Name", "changed");
    EXPECT_TRUE(fs::is_fifo(UserMainPath()));
}

TEST_F(LoadPosix, ALinkToADeviceCountsAsAbsent) {
    LinkMainForUser("/dev/null");
    Open();
    EXPECT_EQ(CurrentName(), "installed");
}

TEST_F(LoadPosix, ASharedLockOfAnotherDoesNotHideThePerUserCopy) {
    CopyMainForUser(Named("mine"));
    const int nFile = ::open(UserMainPath().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(nFile, LOCK_SH | LOCK_NB), 0);
    Open();
    ::close(nFile);
    EXPECT_EQ(CurrentName(), "mine");
}

TEST_F(LoadPosix, NoLockIsHeldWhileADocumentIsOpen) {
    CopyMainForUser(Named("mine"));
    Open();
    EXPECT_NO_THROW(CLockedFile copy(UserMainPath()));
    WriteAttr("Info", "Name", "changed");
    EXPECT_NO_THROW(CLockedFile copy(UserMainPath()));
}

TEST_F(LoadPosix, AThousandElementsMayLieWithinEachOther) {
    InstallMain(Nested(1000));
    Open();
    EXPECT_EQ(CurrentName(), "deep");
    CopyMainForUser("<Other/>");
    WriteAttr("Info", "Name", "saved");
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "saved"}}}));
}

TEST_F(LoadPosix, ADocumentDeeperThanAThousandElementsIsNotLoaded) {
    InstallMain(Nested(1001));
    Open();
    EXPECT_EQ(CurrentName(), "");
}

TEST_F(LoadPosix, AMillionElementsWithinEachOtherAreNotLoaded) {
    InstallMain(Nested(1000000));
    Open();
    EXPECT_EQ(CurrentName(), "");
}
