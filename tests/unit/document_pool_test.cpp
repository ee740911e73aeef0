// The list of open documents.

#include "store/document_pool.h"

#include "pool_fixture.h"
#include "store/xml_object.h"

#include <vector>

class DocumentPool : public PoolTest {
protected:
    CXmlObject* Open(const std::string& name) { return OpenDocument(&m_owner, Relative(name)); }
    int32_t Release(const std::string& name) { return ReleaseDocument(&m_owner, Relative(name)); }

    std::vector<CXmlObject*> Listed() const {
        std::vector<CXmlObject*> documents;
        for (const PoolNode* node = m_owner.head; node != nullptr; node = node->next) {
            documents.push_back(node->document);
        }
        return documents;
    }
};

TEST_F(DocumentPool, OpensNothingWithoutAnOwner) {
    EXPECT_EQ(OpenDocument(nullptr, Relative("a.xml")), nullptr);
    EXPECT_EQ(ReleaseDocument(nullptr, Relative("a.xml")), 1);
}

TEST_F(DocumentPool, OpensNothingWithoutASemaphore) {
    Install("a.xml", "<a/>");
    PoolOwner owner{};
    EXPECT_EQ(OpenDocument(&owner, Relative("a.xml")), nullptr);
    EXPECT_EQ(ReleaseDocument(&owner, Relative("a.xml")), 1);
}

TEST_F(DocumentPool, OpensNothingWithoutAPath) {
    EXPECT_EQ(OpenDocument(&m_owner, {}), nullptr);
    EXPECT_EQ(ReleaseDocument(&m_owner, {}), 1);
    EXPECT_EQ(Value(m_owner.semaphore), 1);
}

TEST_F(DocumentPool, KeepsTheOrderOfFirstOpens) {
    for (const char* const name : {"a.xml", "b.xml", "c.xml"}) {
        Install(name, "<a/>");
    }
    CXmlObject* const a = Open("a.xml");
    CXmlObject* const b = Open("b.xml");
    CXmlObject* const c = Open("c.xml");
    EXPECT_EQ(Open("a.xml"), a);
    EXPECT_EQ(Listed(), (std::vector{a, b, c}));
    Release("a.xml");
    EXPECT_EQ(Listed(), (std::vector{a, b, c}));
    Release("b.xml");
    EXPECT_EQ(Listed(), (std::vector{a, c}));
    Release("a.xml");
    EXPECT_EQ(Listed(), (std::vector{c}));
    Release("c.xml");
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(DocumentPool, CountsTheOpensOfADocument) {
    Install("a.xml", "<a/>");
    CXmlObject* const document = Open("a.xml");
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->m_nReferences, 1);
    Open("a.xml");
    EXPECT_EQ(document->m_nReferences, 2);
    EXPECT_EQ(Release("a.xml"), 0);
    EXPECT_EQ(document->m_nReferences, 1);
    EXPECT_EQ(Release("a.xml"), 0);
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(DocumentPool, ReleasingWhatIsNotOpenIsNoError) {
    EXPECT_EQ(Release("a.xml"), 0);
    Install("b.xml", "<a/>");
    Open("b.xml");
    EXPECT_EQ(Release("a.xml"), 0);
    EXPECT_EQ(Listed().size(), 1u);
    Release("b.xml");
}

TEST_F(DocumentPool, PathsThatResolveToOneFileNameShareADocument) {
    Install("a.xml", "<a/>");
    CXmlObject* const document = Open("a.xml");
    EXPECT_EQ(OpenDocument(&m_owner, "\\documents/a.xml"), document);
    EXPECT_EQ(ReleaseDocument(&m_owner, "/documents\\a.xml"), 0);
    EXPECT_EQ(document->m_nReferences, 1);
    Release("a.xml");
}

TEST_F(DocumentPool, PathsAreComparedAsTextAndNotAsFiles) {
    Install("a.xml", "<a/>");
    CXmlObject* const document = Open("a.xml");
    CXmlObject* const other = OpenDocument(&m_owner, "documents\\.\\a.xml");
    EXPECT_NE(other, document);
    EXPECT_EQ(Listed().size(), 2u);
    Release("a.xml");
    ReleaseDocument(&m_owner, "documents\\.\\a.xml");
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(DocumentPool, ADocumentThatCannotBeLoadedIsNotListed) {
    Install("bad.xml", "<a>");
    Install("good.xml", "<a/>");
    EXPECT_EQ(Open("bad.xml"), nullptr);
    EXPECT_EQ(m_owner.head, nullptr);
    CXmlObject* const good = Open("good.xml");
    EXPECT_EQ(Open("bad.xml"), nullptr);
    EXPECT_EQ(Listed(), (std::vector{good}));
    EXPECT_EQ(good->m_nReferences, 1);
    Release("good.xml");
}

TEST_F(DocumentPool, APathThatIsTooLongOpensNothingAndReleasesNothing) {
    EXPECT_EQ(Open(std::string(300, 'x')), nullptr);
    EXPECT_EQ(Release(std::string(300, 'x')), 0);
    EXPECT_EQ(m_owner.head, nullptr);
    EXPECT_EQ(Value(m_owner.semaphore), 1);
}

TEST_F(DocumentPool, GivesItsSemaphoreBackAfterEveryCall) {
    Install("a.xml", "<a/>");
    Install("bad.xml", "<a>");
    Open("a.xml");
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    Open("a.xml");
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    Open("bad.xml");
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    Open("missing.xml");
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    Release("missing.xml");
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    Release("a.xml");
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    Release("a.xml");
    EXPECT_EQ(Value(m_owner.semaphore), 1);
}

TEST_F(DocumentPool, LeavesTheHostsFieldAlone) {
    int host = 0;
    m_owner.host = &host;
    Install("a.xml", "<a/>");
    Open("a.xml");
    Release("a.xml");
    EXPECT_EQ(m_owner.host, &host);
}
