// The pool's lock is taken before a document's, and never the other way round. Each of these tests would stand still
// for ever if it were; a time limit ends them then.

#include "thread_host.h"

#include "nodes/node_writers.h"
#include "store/document_pool.h"
#include "store/module_state.h"
#include "store/node_readers.h"
#include "store/xml_object.h"

#include <unistd.h>

#include <atomic>
#include <chrono>

namespace {

int Value(SemaphoreHandle semaphore) {
    int value = -1;
    sem_getvalue(semaphore, &value);
    return value;
}

/// Ends the process when the object lives longer than a minute.
class CTimeLimit {
public:
    CTimeLimit() { ::alarm(60); }
    ~CTimeLimit() { ::alarm(0); }
    CTimeLimit(const CTimeLimit&) = delete;
    CTimeLimit& operator=(const CTimeLimit&) = delete;
};

constexpr const char* kMain = "Cordelbox\\xml\\Cordelbox.xml";

} // namespace

class LockOrder : public ThreadTest {
protected:
    LockOrder() {
        WriteDocument(CopyPath("Cordelbox.xml"),
                      "<List><Item A=\"1\" B=\"2\"/></List><Other><Item A=\"1\" B=\"3\"/></Other>");
        WriteDocument(StringsPath(), "<Main><Item Title=\"T\"/></Main>");
        EXPECT_NE(GetXmlObj(&m_owner, "English"), nullptr);
    }
    ~LockOrder() override { ReleaseAll(); }

    static void UseEveryOperation() {
        CXmlQuery read("List", "A");
        ReadAttribute(State().currentDocument, &read);
        CXmlQuery list("List", {});
        ListAllAttributes(State().currentDocument, &list);
        CXmlQuery collect("List", "A");
        CollectAttribute(State().currentDocument, &collect);
        CXmlQuery child("List", "A", "1");
        ReadChild(State().currentDocument, &child);
        CXmlQuery item("List", {});
        item.AddPair("A", "9");
        WriteItem(State().currentDocument, &item);
        RemoveItems(State().currentDocument, &item);
        const CXmlQuery write("List", "B", "4");
        WriteAttribute(State().currentDocument, &write);
        CXmlQuery update("List", "A", "1");
        update.AddPair("B", "5");
        UpdateItem(State().currentDocument, &update);
        WriteAttr("List", "B", "6");
        CopyElement("List", "Other", "A");
        GetXMLString("Main", "Title");
    }

    const CTimeLimit m_limit;
};

TEST_F(LockOrder, ReadingWritingAndSavingDoWithoutThePool) {
    platform::Wait(m_owner.semaphore);
    std::thread(UseEveryOperation).join();
    platform::Signal(m_owner.semaphore);
    EXPECT_EQ(GetAttrValue("Other", "B"), "6");
}

TEST_F(LockOrder, AnOpenWaitsForTheDocumentWithThePoolInItsHands) {
    SemaphoreHandle const document = State().currentDocument->m_hSemaphore;
    platform::Wait(document);
    std::atomic<bool> bDone{false};
    std::thread opener([&] {
        OpenDocument(&m_owner, kMain);
        bDone = true;
    });
    while (Value(m_owner.semaphore) != 0) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(bDone) << "it opened a document that is locked";
    EXPECT_EQ(Value(m_owner.semaphore), 0);
    platform::Signal(document);
    opener.join();
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    EXPECT_EQ(State().currentDocument->m_nReferences, 2);
    ReleaseDocument(&m_owner, kMain);
}

TEST_F(LockOrder, AReleaseWaitsForTheDocumentWithThePoolInItsHands) {
    OpenDocument(&m_owner, kMain);
    SemaphoreHandle const document = State().currentDocument->m_hSemaphore;
    platform::Wait(document);
    std::atomic<bool> bDone{false};
    std::thread releaser([&] {
        ReleaseDocument(&m_owner, kMain);
        bDone = true;
    });
    while (Value(m_owner.semaphore) != 0) {
        std::this_thread::yield();
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(bDone) << "it released a document that is locked";
    platform::Signal(document);
    releaser.join();
    EXPECT_EQ(Value(m_owner.semaphore), 1);
}

TEST_F(LockOrder, AnOpenThatWaitsForThePoolHoldsNoDocument) {
    platform::Wait(m_owner.semaphore);
    std::thread opener([&] { OpenDocument(&m_owner, kMain); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    std::thread(UseEveryOperation).join();
    EXPECT_EQ(State().currentDocument->m_nReferences, 1);
    platform::Signal(m_owner.semaphore);
    opener.join();
    ReleaseDocument(&m_owner, kMain);
}

TEST_F(LockOrder, OpeningReleasingReadingAndSavingAtOnceComeToAnEnd) {
    std::atomic<bool> bDone{false};
    std::thread user([&] {
        for (int round = 0; round < 200; ++round) {
            UseEveryOperation();
        }
        bDone = true;
    });
    RunInThreads(3, [&](int) {
        while (!bDone) {
            ASSERT_EQ(OpenDocument(&m_owner, kMain), State().currentDocument);
            ASSERT_EQ(ReleaseDocument(&m_owner, kMain), 0);
        }
    });
    user.join();
    EXPECT_EQ(State().currentDocument->m_nReferences, 1);
}
