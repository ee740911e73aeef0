// One document of the pool: its references, its path and its lock.

#include "store/xml_object.h"

#include "pool_fixture.h"
#include "store/document_paths.h"

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
