// The error of the DOM's own load call reaches the host as an exception, across the border between two modules that
// each have a C++ run-time of their own, and the pool stays locked, without the document.

#include "host_test.h"

#include <exception>
#include <string>

namespace {

bool IsTaken(SemaphoreHandle semaphore) {
    if (::WaitForSingleObject(semaphore, 0) == WAIT_TIMEOUT) {
        return true;
    }
    ::ReleaseSemaphore(semaphore, 1, nullptr);
    return false;
}

} // namespace

class LoadError : public HostTest {
protected:
    /// What GetXmlObj throws; "nothing" when it returns.
    std::string ThrownByGetXmlObj() {
        try {
            GetXmlObj(&m_owner, "English");
        } catch (const std::exception& error) {
            return error.what();
        }
        return "nothing";
    }

    void TearDown() override {} // what is open stays locked for ever
};

TEST_F(LoadError, ReachesTheHostAsAStandardException) {
    InstallMain(Document(""));
    EXPECT_EQ(ThrownByGetXmlObj(), "the load call fails");
}

TEST_F(LoadError, UnwindsTheHostsOwnFrames) {
    InstallMain(Document(""));
    bool destroyed = false;
    struct Guard {
        bool& flag;
        ~Guard() { flag = true; }
    };
    try {
        const Guard guard{destroyed};
        GetXmlObj(&m_owner, "English");
        FAIL();
    } catch (const std::exception&) {
        EXPECT_TRUE(destroyed);
    }
}

TEST_F(LoadError, LeavesThePoolLocked) {
    InstallMain(Document(""));
    EXPECT_FALSE(IsTaken(m_owner.semaphore));
    ThrownByGetXmlObj();
    EXPECT_TRUE(IsTaken(m_owner.semaphore));
}

TEST_F(LoadError, LeavesNoDocumentInTheList) {
    InstallMain(Document(""));
    ThrownByGetXmlObj();
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(LoadError, ComesAgainAtTheNextOpenOnceTheHostGaveThePoolBack) {
    InstallMain(Document(""));
    ThrownByGetXmlObj();
    GiveHostSemaphore(m_owner.semaphore);
    EXPECT_EQ(ThrownByGetXmlObj(), "the load call fails");
}

TEST_F(LoadError, PassesOutOfGetPrinterXmlObjToo) {
    ThrownByGetXmlObj();
    GiveHostSemaphore(m_owner.semaphore); // as no host does: the list is usable again
    InstallPrinter("printer.xml", Document(""));
    EXPECT_THROW(GetPrinterXmlObj("printer.xml"), std::exception);
    EXPECT_TRUE(IsTaken(m_owner.semaphore));
}
