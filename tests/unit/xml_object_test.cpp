// One document of the pool: its references, its path and its lock.

#include "store/xml_object.h"

#include "pool_fixture.h"
#include "store/document_paths.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace fs = std::filesystem;

class XmlObject : public PoolTest {
protected:
    CXmlObject m_document;
};

TEST_F(XmlObject, IsEmptyWhenItIsNew) {
    EXPECT_EQ(m_document.m_nReferences, 0);
    EXPECT_EQ(m_document.m_strPath, "");
    EXPECT_EQ(m_document.m_pDom, nullptr);
    EXPECT_EQ(m_document.m_file.m_nLoadState, LoadState::NotLoaded);
    ASSERT_NE(m_document.m_hSemaphore, nullptr);
    EXPECT_EQ(Value(m_document.m_hSemaphore), 1);
}

TEST_F(XmlObject, DoesNotOpenWithoutAPath) {
    EXPECT_EQ(m_document.Open({}), 1);
    EXPECT_EQ(m_document.m_nReferences, 0);
}

TEST_F(XmlObject, LoadsWithTheFirstOpen) {
    Install("a.xml", "<a/>");
    EXPECT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_EQ(m_document.m_nReferences, 1);
    EXPECT_EQ(m_document.m_strPath, InstallFolderPath(Relative("a.xml")));
    EXPECT_NE(m_document.m_pDom, nullptr);
    EXPECT_EQ(m_document.m_file.m_nLoadState, LoadState::FromInstallFolder);
}

TEST_F(XmlObject, SharesWithEveryFurtherOpen) {
    Install("a.xml", "<a/>");
    m_document.Open(Relative("a.xml"));
    const DomDocument* const dom = m_document.m_pDom.get();
    EXPECT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_EQ(m_document.m_nReferences, 2);
    EXPECT_EQ(m_document.m_pDom.get(), dom);
}

TEST_F(XmlObject, RefusesAnotherPath) {
    Install("a.xml", "<a/>");
    Install("b.xml", "<a/>");
    m_document.Open(Relative("a.xml"));
    EXPECT_EQ(m_document.Open(Relative("b.xml")), 1);
    EXPECT_EQ(m_document.m_nReferences, 1);
    EXPECT_TRUE(m_document.IsSamePath(Relative("a.xml")));
    EXPECT_FALSE(m_document.IsSamePath(Relative("b.xml")));
}

TEST_F(XmlObject, IsOfNoPathBeforeItsFirstOpen) {
    EXPECT_FALSE(m_document.IsSamePath(Relative("a.xml")));
    EXPECT_FALSE(m_document.IsSamePath({}));
    EXPECT_FALSE(m_document.IsSamePath(std::string(300, 'x').c_str()));
}

TEST_F(XmlObject, ForgetsThePathOfAFailedLoad) {
    EXPECT_EQ(m_document.Open(Relative("missing.xml")), 1);
    EXPECT_EQ(m_document.m_strPath, "");
    Install("b.xml", "<a/>");
    EXPECT_EQ(m_document.Open(Relative("b.xml")), 0);
}

TEST_F(XmlObject, DropsItsTreeWithTheLastReferenceAndKeepsThePath) {
    Install("a.xml", "<a/>");
    m_document.Open(Relative("a.xml"));
    m_document.Open(Relative("a.xml"));
    EXPECT_EQ(m_document.ReleaseReference(), 0);
    EXPECT_NE(m_document.m_pDom, nullptr);
    EXPECT_EQ(m_document.ReleaseReference(), 0);
    EXPECT_EQ(m_document.m_pDom, nullptr);
    EXPECT_EQ(m_document.m_pTables, nullptr);
    EXPECT_EQ(m_document.m_file.m_nLoadState, LoadState::NotLoaded);
    EXPECT_TRUE(m_document.IsSamePath(Relative("a.xml")));
}

TEST_F(XmlObject, LoadsAgainAfterItsLastRelease) {
    Install("a.xml", "<a/>");
    m_document.Open(Relative("a.xml"));
    m_document.ReleaseReference();
    Install("a.xml", "<a><b/></a>");
    EXPECT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_TRUE(m_document.m_pDom->FirstElementNamed("b"));
}

TEST_F(XmlObject, HasNoReferenceToReleaseBeforeItIsOpen) {
    EXPECT_EQ(m_document.ReleaseReference(), 1);
    EXPECT_EQ(m_document.m_nReferences, 0);
}

TEST_F(XmlObject, GivesItsSemaphoreBackAfterEveryCall) {
    Install("a.xml", "<a/>");
    m_document.Open(Relative("missing.xml"));
    EXPECT_EQ(Value(m_document.m_hSemaphore), 1);
    m_document.Open(Relative("a.xml"));
    EXPECT_EQ(Value(m_document.m_hSemaphore), 1);
    m_document.Open(Relative("b.xml"));
    EXPECT_EQ(Value(m_document.m_hSemaphore), 1);
    m_document.ReleaseReference();
    EXPECT_EQ(Value(m_document.m_hSemaphore), 1);
    m_document.ReleaseReference();
    EXPECT_EQ(Value(m_document.m_hSemaphore), 1);
}

TEST_F(XmlObject, KnowsThatItWasLoadedFromThePerUserCopy) {
    Install("a.xml", "<a/>");
    const fs::path copy = UserCopyPath(InstallFolderPath(Relative("a.xml"))).c_str();
    fs::create_directories(copy.parent_path());
    std::ofstream(copy) << "<a><mine/></a>";
    m_document.Open(Relative("a.xml"));
    EXPECT_EQ(m_document.m_file.m_nLoadState, LoadState::FromUserCopy);
    EXPECT_TRUE(m_document.m_pDom->FirstElementNamed("mine"));
}

TEST_F(XmlObject, DoesNotFallBackFromAMalformedPerUserCopy) {
    Install("a.xml", "<a/>");
    const fs::path copy = UserCopyPath(InstallFolderPath(Relative("a.xml"))).c_str();
    fs::create_directories(copy.parent_path());
    std::ofstream(copy) << "<a>";
    EXPECT_EQ(m_document.Open(Relative("a.xml")), 1);
    EXPECT_EQ(m_document.m_pDom, nullptr);
}

TEST_F(XmlObject, SavesToThePerUserCopyOnlyWhenThereIsOne) {
    Install("a.xml", "<a/>");
    m_document.Open(Relative("a.xml"));
    EXPECT_FALSE(m_document.Save());
    const fs::path copy = UserCopyPath(m_document.m_strPath).c_str();
    EXPECT_FALSE(fs::exists(copy.parent_path()));
    fs::create_directories(copy.parent_path());
    std::ofstream(copy) << "anything";
    EXPECT_TRUE(m_document.Save());
    EXPECT_EQ(m_document.m_file.m_nLoadState, LoadState::FromInstallFolder);
}

TEST_F(XmlObject, SavesNothingBeforeItIsLoaded) { EXPECT_FALSE(m_document.Save()); }

TEST_F(XmlObject, SavesNothingAfterItsLastRelease) {
    Install("a.xml", "<a/>");
    m_document.Open(Relative("a.xml"));
    const fs::path copy = UserCopyPath(m_document.m_strPath).c_str();
    fs::create_directories(copy.parent_path());
    std::ofstream(copy) << "left alone";
    m_document.ReleaseReference();
    EXPECT_FALSE(m_document.Save());
    EXPECT_EQ(fs::file_size(copy), 10u);
}

TEST_F(XmlObject, SaysWhyItDoesNotOpen) {
    CReason reason;
    EXPECT_EQ(m_document.Open({}, &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::NoPath) << "no path at all";
    reason = {};
    EXPECT_EQ(m_document.Open(std::string(300, 'x').c_str(), &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::NoPath) << "one that is too long";
    EXPECT_EQ(m_document.Open(Relative("missing.xml"), &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::Absent);
    Install("a.xml", "<a>");
    EXPECT_EQ(m_document.Open(Relative("a.xml"), &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::Malformed);
    Install("a.xml", "<a/>");
    ASSERT_EQ(m_document.Open(Relative("a.xml"), &reason), 0);
    EXPECT_EQ(m_document.Open(Relative("b.xml"), &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::NoPath) << "another document's";
}

TEST_F(XmlObject, SaysWhyItDoesNotOpenWithoutAPerUserFolder) {
    Install("a.xml", "<a/>");
    ::unsetenv("XDG_CONFIG_HOME");
    const char* const set = std::getenv("HOME");
    const std::string home = set != nullptr ? set : "";
    ::unsetenv("HOME");
    CReason reason;
    EXPECT_EQ(m_document.Open(Relative("a.xml"), &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::NoPath);
    if (set != nullptr) {
        ::setenv("HOME", home.c_str(), 1);
    }
}

TEST_F(XmlObject, KnowsWhyItWasNotLoadedFromThePerUserCopy) {
    Install("a.xml", "<a/>");
    ASSERT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_EQ(m_document.m_file.m_whyNotUserCopy.m_kind, ReasonKind::Absent);
    m_document.ReleaseReference();
    const fs::path copy = UserCopyPath(InstallFolderPath(Relative("a.xml"))).c_str();
    fs::create_directories(copy);
    ASSERT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_EQ(m_document.m_file.m_whyNotUserCopy.m_kind, ReasonKind::NotRegular) << "a folder";
    m_document.ReleaseReference();
    fs::remove(copy);
    ASSERT_EQ(::mkfifo(copy.c_str(), 0600), 0);
    ASSERT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_EQ(m_document.m_file.m_whyNotUserCopy.m_kind, ReasonKind::NotRegular) << "a pipe";
    m_document.ReleaseReference();
    fs::remove(copy);
    std::ofstream(copy) << "<a/>";
    fs::permissions(copy, fs::perms::owner_read);
    ASSERT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_EQ(m_document.m_file.m_whyNotUserCopy.m_kind, ReasonKind::NotPermitted);
    m_document.ReleaseReference();
    fs::permissions(copy, fs::perms::owner_read | fs::perms::owner_write);
    const int nOther = ::open(copy.c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(nOther, LOCK_EX), 0);
    ASSERT_EQ(m_document.Open(Relative("a.xml")), 0);
    EXPECT_EQ(m_document.m_file.m_whyNotUserCopy.m_kind, ReasonKind::InUse);
    ::close(nOther);
}

TEST_F(XmlObject, SaysWhyItIsNotSaved) {
    EXPECT_EQ(m_document.Save().m_what, What::NoDocument);
    Install("a.xml", "<a/>");
    ASSERT_EQ(m_document.Open(Relative("a.xml")), 0);
    const COutcome noCopy = m_document.Save();
    EXPECT_EQ(noCopy.m_what, What::NoUserCopy);
    EXPECT_EQ(noCopy.m_reason.m_kind, ReasonKind::Absent);
    const fs::path copy = UserCopyPath(InstallFolderPath(Relative("a.xml"))).c_str();
    fs::create_directories(copy.parent_path());
    std::ofstream(copy) << "<a/>";
    EXPECT_EQ(m_document.Save().m_what, What::Done);
    ::setenv("XDG_CONFIG_HOME", std::string("/").append(300, 'x').c_str(), 1);
    const COutcome noPath = m_document.Save();
    EXPECT_EQ(noPath.m_what, What::NoUserCopy);
    EXPECT_EQ(noPath.m_reason.m_kind, ReasonKind::NoPath);
}
