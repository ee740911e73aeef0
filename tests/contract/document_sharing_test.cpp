// One loaded copy of each document for all who open it, for as long as one of them holds it.

#include "named_document.h"

#include <atomic>
#include <chrono>
#include <string>
#include <thread>

class DocumentSharing : public HostTest {
protected:
    void OpenEmptyMain() { OpenMain(""); }
};

TEST_F(DocumentSharing, AnOpenDocumentIsNotReadAgain) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("before"));
    CXmlObject* const printer = OpenPrinter("printer.xml");
    InstallPrinter("printer.xml", Named("after"));
    EXPECT_EQ(OpenPrinter("printer.xml"), printer);
    EXPECT_EQ(CurrentName(), "before");
}

TEST_F(DocumentSharing, AnOpenDocumentIsSharedAlsoWhenItsFileIsGone) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("before"));
    CXmlObject* const printer = OpenPrinter("printer.xml");
    std::filesystem::remove(InstalledPrinterPath("printer.xml"));
    EXPECT_EQ(OpenPrinter("printer.xml"), printer);
    EXPECT_EQ(CurrentName(), "before");
}

TEST_F(DocumentSharing, ADocumentIsReadAgainAfterItsLastRelease) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("before"));
    OpenPrinter("printer.xml");
    OpenPrinter("printer.xml");
    InstallPrinter("printer.xml", Named("after"));
    ReleaseXmlObj("printer.xml");
    OpenPrinter("printer.xml");
    EXPECT_EQ(CurrentName(), "before") << "a reference was left";
    ReleaseXmlObj("printer.xml");
    ReleaseXmlObj("printer.xml");
    OpenPrinter("printer.xml");
    EXPECT_EQ(CurrentName(), "after");
}

TEST_F(DocumentSharing, ChangesAreSharedByAllWhoHoldTheDocument) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("before"));
    OpenPrinter("printer.xml");
    WriteAttr("Info", "Name", "changed");
    OpenPrinter("printer.xml");
    EXPECT_EQ(CurrentName(), "changed");
}

TEST_F(DocumentSharing, ChangesThatWereNotSavedGoWithTheLastRelease) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("before"));
    OpenPrinter("printer.xml");
    WriteAttr("Info", "Name", "changed");
    ReleaseXmlObj("printer.xml");
    OpenPrinter("printer.xml");
    EXPECT_EQ(CurrentName(), "before");
}

TEST_F(DocumentSharing, ReleasingADocumentOnceTooOftenChangesNothing) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("printer"));
    OpenPrinter("printer.xml");
    EXPECT_EQ(ReleaseXmlObj("printer.xml"), 0);
    EXPECT_EQ(ReleaseXmlObj("printer.xml"), 0);
    EXPECT_NE(OpenPrinter("printer.xml"), nullptr);
    EXPECT_EQ(CurrentName(), "printer");
    EXPECT_EQ(ReleaseXmlObj("printer.xml"), 0);
    EXPECT_NE(m_owner.head, nullptr) << "main and strings documents are still open";
}

TEST_F(DocumentSharing, AFailedOpenLeavesNothingInThePool) {
    InstallMain("<Cordelbox>");
    InstallStrings("English", "");
    EXPECT_EQ(Open(), nullptr);
    EXPECT_EQ(m_owner.head, nullptr);
}

TEST_F(DocumentSharing, AFailedOpenIsTriedAgain) {
    OpenEmptyMain();
    EXPECT_EQ(OpenPrinter("printer.xml"), nullptr);
    InstallPrinter("printer.xml", "<Cordelbox>");
    EXPECT_EQ(OpenPrinter("printer.xml"), nullptr);
    InstallPrinter("printer.xml", Named("printer"));
    EXPECT_NE(OpenPrinter("printer.xml"), nullptr);
    EXPECT_EQ(CurrentName(), "printer");
}

TEST_F(DocumentSharing, AFailedOpenAmongOthersLeavesThemOpen) {
    OpenMain("<Info><Item Name=\"main\"/></Info>");
    InstallPrinter("first.xml", Named("first"));
    CXmlObject* const first = OpenPrinter("first.xml");
    EXPECT_EQ(OpenPrinter("missing.xml"), nullptr);
    InstallPrinter("first.xml", Named("another"));
    EXPECT_EQ(OpenPrinter("first.xml"), first);
    EXPECT_EQ(CurrentName(), "first");
}

TEST_F(DocumentSharing, NamesThatDifferInLetterCaseAreTwoDocuments) {
    OpenEmptyMain();
    InstallPrinter("Printer.xml", Named("printer"));
    InstallPrinter("printer.xml", Named("printer"));
    CXmlObject* const upper = OpenPrinter("Printer.xml");
    CXmlObject* const lower = OpenPrinter("printer.xml");
    EXPECT_NE(upper, nullptr);
    EXPECT_NE(lower, nullptr);
    EXPECT_NE(upper, lower);
    WriteAttr("Info", "Name", "lower");
    OpenPrinter("Printer.xml");
    EXPECT_EQ(CurrentName(), "printer");
}

TEST_F(DocumentSharing, DocumentsCloseInAnyOrder) {
    const std::string names[] = {"1.xml", "2.xml", "3.xml"};
    const int orders[][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2}, {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
    for (const std::string& name : names) {
        InstallPrinter(name, Named(name));
    }
    for (const int(&order)[3] : orders) {
        Open();
        CXmlObject* opened[3] = {};
        for (int i = 0; i < 3; ++i) {
            opened[i] = OpenPrinter(names[i].c_str());
        }
        for (int nReleased = 0; nReleased < 3; ++nReleased) {
            EXPECT_EQ(ReleaseXmlObj(names[order[nReleased]].c_str()), 0);
            for (int nLeft = nReleased + 1; nLeft < 3; ++nLeft) {
                EXPECT_EQ(OpenPrinter(names[order[nLeft]].c_str()), opened[order[nLeft]]);
                EXPECT_EQ(CurrentName(), names[order[nLeft]].c_str());
                ReleaseXmlObj(names[order[nLeft]].c_str());
            }
        }
        CloseAll();
        EXPECT_EQ(m_owner.head, nullptr);
    }
}

TEST_F(DocumentSharing, AnOpenWaitsForThePoolSemaphore) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("printer"));
    TakeHostSemaphore(m_owner.semaphore);
    std::atomic<bool> bDone = false;
    std::thread opener([this, &bDone] {
        OpenPrinter("printer.xml");
        bDone = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(bDone);
    GiveHostSemaphore(m_owner.semaphore);
    opener.join();
    EXPECT_EQ(CurrentName(), "printer");
}

TEST_F(DocumentSharing, AReleaseWaitsForThePoolSemaphore) {
    OpenEmptyMain();
    InstallPrinter("printer.xml", Named("printer"));
    OpenPrinter("printer.xml");
    TakeHostSemaphore(m_owner.semaphore);
    std::atomic<bool> bDone = false;
    std::thread releaser([&bDone] {
        ReleaseXmlObj("printer.xml");
        bDone = true;
    });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_FALSE(bDone);
    GiveHostSemaphore(m_owner.semaphore);
    releaser.join();
}

TEST_F(DocumentSharing, ReadingAndWritingDoNotNeedThePoolSemaphore) {
    OpenMain("<Info><Item Name=\"main\"/></Info>");
    TakeHostSemaphore(m_owner.semaphore);
    WriteAttr("Info", "Name", "changed");
    EXPECT_EQ(CurrentName(), "changed");
    GiveHostSemaphore(m_owner.semaphore);
    EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "changed"}}}));
}

TEST_F(DocumentSharing, ThreadsThatAddItemsLoseNone) {
    constexpr int kThreads = 2;
    constexpr int kItems = 100;
    OpenMain("<List/>");
    std::thread threads[kThreads];
    for (int nThread = 0; nThread < kThreads; ++nThread) {
        threads[nThread] = std::thread([nThread] {
            for (int i = 0; i < kItems; ++i) {
                WriteTestFileName("List", std::to_string(nThread * kItems + i).c_str(), "value");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(SavedItems("List").size(), static_cast<std::size_t>(kThreads * kItems));
    for (int i = 0; i < kThreads * kItems; ++i) {
        EXPECT_EQ(GetAttrValue1("List", "ID", std::to_string(i).c_str(), "Value"), "value") << i;
    }
}

TEST_F(DocumentSharing, AThreadThatReadsSeesWholeValuesWhileAnotherWrites) {
    OpenMain("<Info><Item Name=\"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa\"/></Info>");
    const AnsiString values[] = {"aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa", "b"};
    std::atomic<bool> bStop = false;
    std::thread writer([&values, &bStop] {
        for (int i = 0; i < 200; ++i) {
            WriteAttr("Info", "Name", values[i % 2]);
        }
        bStop = true;
    });
    while (!bStop) {
        const AnsiString value = CurrentName();
        if (value != values[0] && value != values[1]) {
            ADD_FAILURE() << value.c_str();
            break;
        }
    }
    writer.join();
}
