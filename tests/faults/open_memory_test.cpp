// Memory fails at the n-th allocation of an open. Where the DOM's own load call fails for it, its error passes out of
// the exports that open, and the pool stays locked on purpose; everywhere else a document is not opened, and that is
// all.

#include "allocations.h"
#include "platform/dom.h"
#include "platform/semaphore.h"
#include "store/document_pool.h"
#include "store/module_state.h"
#include "store/xml_object.h"

#include <gtest/gtest.h>

#include <iconv.h>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <optional>
#include <set>
#include <sstream>
#include <string>

namespace fs = std::filesystem;

namespace {

int Value(SemaphoreHandle semaphore) {
    int value = -1;
    sem_getvalue(semaphore, &value);
    return value;
}

enum class Outcome { Opened, NotOpened, DomFailed, OtherException };

} // namespace

class OpenMemory : public ::testing::Test {
protected:
    OpenMemory() {
        fs::remove_all(m_host / "Cordelbox");
        fs::create_directories(m_host / "Cordelbox" / "xml");
        fs::create_directories(m_host / "Cordelbox" / "language" / "English");
        ::setenv("XDG_CONFIG_HOME", (m_host / "PerUser").c_str(), 1);
        std::string rows;
        for (int row = 0; row < 300; ++row) {
            rows += "<Item ID=\"" + std::to_string(row) + "\" Name=\"n\"/>text<!--c-->";
        }
        const std::string document =
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?><!DOCTYPE r [<!ENTITY e 'entity'>]><r><L>" + rows +
            "<![CDATA[x]]><?pi d?>&e;</L></r>";
        std::ofstream(m_host / "Cordelbox" / "xml" / "Cordelbox.xml") << document;
        std::ofstream(m_host / "Cordelbox" / "xml" / "Printer.xml") << document;
        std::ofstream(m_host / "Cordelbox" / "xml" / "Latin.xml")
            << "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r><L><i V=\"\xE4\"/></L></r>";
        // Each part is so long that the tree asks for memory for it alone.
        const std::string part(40000, 'p');
        std::ofstream(m_host / "Cordelbox" / "xml" / "Long.xml")
            << "<?xml version=\"1.0\"?><!DOCTYPE r [<!ENTITY e '" + part + "'>]><!--" + part + "--><?" + part + " " +
                   part + "?><r " + part + "=\"" + part + "\"><" + part + "/>" + part + "<![CDATA[" + part + "]]></r>";
        std::ofstream(m_host / "Cordelbox" / "language" / "English" / "Strings.xml") << "<r><Main/></r>";
        m_owner.semaphore = platform::NewSemaphore();
    }
    ~OpenMemory() override {
        platform::DeleteSemaphore(m_owner.semaphore);
        fs::remove_all(m_host / "Cordelbox");
    }

    template <class Open>
    Outcome Try(Open open, std::size_t allocation, bool bFurther) {
        CLibraryMemory::Reset();
        try {
            const CLibraryMemory memory(allocation, bFurther);
            return open() != nullptr ? Outcome::Opened : Outcome::NotOpened;
        } catch (const DomError& error) {
            EXPECT_STREQ(error.what(), "out of memory while loading a document");
            return Outcome::DomFailed;
        } catch (const std::exception&) {
            return Outcome::OtherException;
        }
    }

    /// Gives back the pool, which a failed load keeps, and releases all documents.
    void ReleaseEverything() {
        if (Value(m_owner.semaphore) == 0) {
            platform::Signal(m_owner.semaphore);
        }
        const CLibraryMemory memory;
        State().currentDocument = nullptr;
        State().stringsDocument = nullptr;
        while (m_owner.head != nullptr) {
            PoolNode* const node = m_owner.head;
            m_owner.head = node->next;
            delete node->document;
            delete node;
        }
        State().stringsPath = {};
    }

    /// The trees of the documents in the list.
    std::set<std::string> Trees() const {
        std::set<std::string> trees;
        for (const PoolNode* node = m_owner.head; node != nullptr; node = node->next) {
            std::ostringstream text;
            node->document->m_pDom->DocumentElement().root().print(text, "", pugi::format_raw);
            trees.insert(text.str());
        }
        return trees;
    }

    /// Lets every allocation of an open fail and looks at what each failure leaves.
    template <class Open>
    void TryAll(Open open, bool bFurther, int& domFailures, int& refused) {
        ASSERT_EQ(Try(open, 0, false), Outcome::Opened);
        const std::set<std::string> whole = Trees();
        ReleaseEverything();
        for (std::size_t allocation = 1;; ++allocation) {
            const Outcome outcome = Try(open, allocation, bFurther);
            const bool bRefused = CLibraryMemory::HasFailed();
            if (outcome == Outcome::DomFailed) {
                ++domFailures;
                ASSERT_EQ(Value(m_owner.semaphore), 0) << "the pool stays locked";
            } else {
                ASSERT_EQ(Value(m_owner.semaphore), 1) << "allocation " << allocation;
            }
            for (const PoolNode* node = m_owner.head; node != nullptr; node = node->next) {
                EXPECT_EQ(Value(node->document->m_hSemaphore), 1);
                EXPECT_EQ(node->document->m_nReferences, 1) << "what is in the list is open";
            }
            for (const std::string& tree : Trees()) {
                EXPECT_TRUE(whole.contains(tree)) << "in part, after allocation " << allocation;
            }
            ReleaseEverything();
            ASSERT_EQ(CLibraryMemory::Outstanding(), 0u) << "leaked at allocation " << allocation;
            if (!bRefused) {
                EXPECT_EQ(outcome, Outcome::Opened);
                return;
            }
            ++refused;
            ASSERT_EQ(Try(open, 0, false), Outcome::Opened) << "after allocation " << allocation;
            ReleaseEverything();
        }
    }

    template <class Open>
    void TryAll(Open open) {
        int domFailures = 0;
        int refused = 0;
        TryAll(open, false, domFailures, refused);
        TryAll(open, true, domFailures, refused);
        EXPECT_GT(domFailures, 5) << "no allocation of the load was hit";
        EXPECT_GT(refused, domFailures);
        std::printf("%d allocations refused, %d of them in the DOM's load call\n", refused, domFailures);
    }

    const fs::path m_host = fs::read_symlink("/proc/self/exe").parent_path();
    PoolOwner m_owner{};
};

TEST_F(OpenMemory, FailingInGetXmlObjKeepsThePoolOnlyWhereTheLoadFails) {
    TryAll([&] { return GetXmlObj(&m_owner, "English"); });
}

TEST_F(OpenMemory, FailingInGetPrinterXmlObjKeepsThePoolOnlyWhereTheLoadFails) {
    State().poolOwner = &m_owner;
    TryAll([] { return GetPrinterXmlObj("Printer.xml"); });
}

TEST_F(OpenMemory, FailingInADocumentOfLongPartsKeepsThePoolOnlyWhereTheLoadFails) {
    State().poolOwner = &m_owner;
    TryAll([] { return GetPrinterXmlObj("Long.xml"); });
}

TEST_F(OpenMemory, FailingInALoadLeavesNothingInTheListSoThatTheNextOpenTriesAgain) {
    State().poolOwner = &m_owner;
    std::size_t allocation = 1;
    while (Try([] { return GetPrinterXmlObj("Printer.xml"); }, allocation, false) != Outcome::DomFailed) {
        ReleaseEverything();
        ++allocation;
    }
    EXPECT_EQ(m_owner.head, nullptr);
    platform::Signal(m_owner.semaphore); // the host gives the pool back
    CXmlObject* const document = GetPrinterXmlObj("Printer.xml");
    ASSERT_NE(document, nullptr);
    EXPECT_EQ(document->m_nReferences, 1);
    EXPECT_EQ(Value(document->m_hSemaphore), 1);
    EXPECT_EQ(Value(m_owner.semaphore), 1);
    ReleaseEverything();
}

TEST_F(OpenMemory, FailingWhereAnOpenDocumentIsOpenedAgainLeavesItAsItWas) {
    State().poolOwner = &m_owner;
    for (std::size_t allocation = 1;; ++allocation) {
        CXmlObject* const document = GetPrinterXmlObj("Printer.xml");
        ASSERT_NE(document, nullptr);
        const Outcome outcome = Try([] { return GetPrinterXmlObj("Printer.xml"); }, allocation, false);
        const bool bFailed = CLibraryMemory::HasFailed();
        EXPECT_EQ(outcome == Outcome::Opened, !bFailed) << allocation;
        EXPECT_NE(outcome, Outcome::DomFailed) << allocation;
        EXPECT_EQ(m_owner.head->document, document);
        EXPECT_EQ(document->m_nReferences, bFailed ? 1 : 2) << allocation;
        EXPECT_EQ(Value(document->m_hSemaphore), 1);
        EXPECT_EQ(Value(m_owner.semaphore), 1);
        ReleaseEverything();
        if (!bFailed) {
            break;
        }
    }
}

TEST_F(OpenMemory, FailingInALoadKeepsTheLockOfTheDocumentItself) {
    for (std::size_t allocation = 1;; ++allocation) {
        CXmlObject document;
        const Outcome outcome = Try(
            [&] { return document.Open("Cordelbox\\xml\\Printer.xml") == 0 ? &document : nullptr; }, allocation, false);
        ASSERT_EQ(Value(document.m_hSemaphore), outcome == Outcome::DomFailed ? 0 : 1);
        if (outcome == Outcome::DomFailed) {
            break;
        }
    }
}

TEST_F(OpenMemory, FailingWhereAnEncodingIsConvertedKeepsThePoolOnlyWhereTheLoadFails) {
    // The C library keeps a converter for as long as someone uses it: its memory is not the library's.
    const iconv_t converter = ::iconv_open("UTF-8", "ISO-8859-1");
    State().poolOwner = &m_owner;
    TryAll([] { return GetPrinterXmlObj("Latin.xml"); });
    ::iconv_close(converter);
}

TEST_F(OpenMemory, OfEverythingThatWasOpenedIsGivenBackWithTheLastRelease) {
    CLibraryMemory::Reset();
    ASSERT_EQ(CLibraryMemory::Outstanding(), 0u);
    {
        const CLibraryMemory memory;
        ASSERT_NE(GetXmlObj(&m_owner, "English"), nullptr);
        ASSERT_NE(GetPrinterXmlObj("Printer.xml"), nullptr);
        EXPECT_EQ(GetAttrValue("L", "ID"), "0");
        EXPECT_EQ(ReleaseXmlObj("Printer.xml"), 0);
        EXPECT_EQ(ReleaseAll(), 0);
        State().stringsPath = {};
    }
    EXPECT_EQ(m_owner.head, nullptr);
    EXPECT_EQ(CLibraryMemory::Outstanding(), 0u);
}

TEST_F(OpenMemory, FailingIsTheReasonWhyADocumentIsNotOpen) {
    int refused = 0;
    for (std::size_t allocation = 1;; ++allocation) {
        CXmlObject document;
        CReason reason;
        const Outcome outcome =
            Try([&] { return document.Open("Cordelbox\\xml\\Printer.xml", &reason) == 0 ? &document : nullptr; },
                allocation, false);
        if (!CLibraryMemory::HasFailed()) {
            break;
        }
        if (outcome == Outcome::NotOpened) {
            ++refused;
            EXPECT_TRUE(reason.m_kind == ReasonKind::OutOfMemory || reason.m_strWords == "there is no DOM to be had")
                << allocation;
        }
    }
    EXPECT_GT(refused, 0);
}

TEST_F(OpenMemory, FailingForTheSemaphoreIsTheReasonWhyADocumentIsNeverOpen) {
    std::optional<CXmlObject> document;
    {
        CLibraryMemory::Reset();
        const CLibraryMemory memory(1);
        document.emplace();
    }
    CReason reason;
    EXPECT_EQ(document->Open("Cordelbox\\xml\\Printer.xml", &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::CallFailed);
    EXPECT_EQ(reason.m_strWords, "there is no semaphore to be had");
}
