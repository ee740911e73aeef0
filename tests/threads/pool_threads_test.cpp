// Threads that open and release documents at once.

#include "thread_host.h"

#include "store/document_pool.h"
#include "store/node_readers.h"
#include "store/xml_object.h"

namespace {

constexpr int kOpeners = 6;
constexpr int kOpenings = 200;

AnsiString Relative(int number) { return ("Cordelbox\\xml\\P" + std::to_string(number) + ".xml").c_str(); }

} // namespace

class PoolThreads : public ThreadTest {
protected:
    PoolThreads() {
        for (int number = 0; number < 3; ++number) {
            WriteDocument(CopyPath("P" + std::to_string(number) + ".xml"),
                          "<List><Item A=\"" + std::to_string(number) + "\"/></List>");
        }
    }
};

TEST_F(PoolThreads, ShareOneDocumentAndCountEveryReference) {
    CXmlObject* const document = OpenDocument(&m_owner, Relative(0));
    ASSERT_NE(document, nullptr);
    RunInThreads(kOpeners, [&](int) {
        for (int round = 0; round < kOpenings; ++round) {
            ASSERT_EQ(OpenDocument(&m_owner, Relative(0)), document);
        }
    });
    EXPECT_EQ(document->m_nReferences, 1 + kOpeners * kOpenings);
    RunInThreads(kOpeners, [&](int) {
        for (int round = 0; round < kOpenings; ++round) {
            ASSERT_EQ(ReleaseDocument(&m_owner, Relative(0)), 0);
        }
    });
    EXPECT_EQ(document->m_nReferences, 1);
    ReleaseDocument(&m_owner, Relative(0));
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(PoolThreads, OpenUseAndCloseDocumentsThatComeAndGo) {
    RunInThreads(kOpeners, [&](int thread) {
        for (int round = 0; round < kOpenings; ++round) {
            const int number = (thread + round) % 3;
            CXmlObject* const document = OpenDocument(&m_owner, Relative(number));
            ASSERT_NE(document, nullptr);
            CXmlQuery query("List", "A");
            EXPECT_EQ(ReadAttribute(document, &query), 0);
            EXPECT_EQ(query.FirstValue(), std::to_string(number).c_str());
            ASSERT_EQ(ReleaseDocument(&m_owner, Relative(number)), 0);
        }
    });
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(PoolThreads, TryDocumentsThatDoNotExistWithoutHarm) {
    RunInThreads(kOpeners, [&](int thread) {
        for (int round = 0; round < kOpenings; ++round) {
            EXPECT_EQ(OpenDocument(&m_owner, Relative(10 + thread % 2)), nullptr);
            CXmlObject* const document = OpenDocument(&m_owner, Relative(1));
            ASSERT_NE(document, nullptr);
            EXPECT_EQ(ReleaseDocument(&m_owner, Relative(10 + thread % 2)), 0);
            EXPECT_EQ(ReleaseDocument(&m_owner, Relative(1)), 0);
        }
    });
    EXPECT_EQ(m_owner.head, nullptr);
}
