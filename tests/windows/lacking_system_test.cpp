// What the library does where the system lacks something that is nearly always there: COM, a semaphore, a folder,
// memory.

#include "lacking_system.h"

#include "byte_stream.h"
#include "host_test.h"
#include "nodes/node_writers.h"
#include "platform/code_page.h"
#include "platform/document_limits.h"
#include "platform/dom.h"
#include "platform/folders.h"
#include "platform/semaphore.h"
#include "safe_save.h"
#include "store/document_pool.h"
#include "store/module_state.h"
#include "store/node_readers.h"
#include "store/xml_object.h"
#include "wide_text.h"

#include <cstdio>
#include <new>

namespace fs = std::filesystem;

class LackingSystem : public HostTest {};

TEST_F(LackingSystem, WithoutComGivesNoDocument) {
    CopyMainForUser(Document(""));
    const CLackingSystem lacking({.bCom = true});
    EXPECT_EQ(DomDocument::Create(), nullptr);
    EXPECT_EQ(Open(), nullptr);
}

TEST_F(LackingSystem, WithoutASemaphoreGivesNoDocument) {
    CopyMainForUser(Document(""));
    {
        const CLackingSystem lacking({.bSemaphores = true});
        EXPECT_EQ(platform::NewSemaphore(), nullptr);
        EXPECT_EQ(GetXmlObj(&m_owner, "English"), nullptr);
        EXPECT_EQ(State().currentDocument, nullptr);
    }
    platform::DeleteSemaphore(nullptr);
}

TEST_F(LackingSystem, WithoutAFolderForCopiesOpensNothing) {
    InstallMain(Document(""));
    const CLackingSystem lacking({.bApplicationData = true});
    EXPECT_EQ(platform::ApplicationDataFolder(), "");
    GetXmlObj(&m_owner, "English");
    EXPECT_EQ(State().currentDocument, nullptr);
}

TEST_F(LackingSystem, KnowsNoFolderOfAHostWhosePathIsTooLong) {
    for (const std::size_t length : {std::size_t{258}, std::size_t{259}, std::size_t{260}, std::size_t{300}}) {
        const CHostPath path("C:\\host\\" + std::string(length - 8, 'h'));
        EXPECT_EQ(platform::HostFolder(), length < 260 ? "C:\\host" : "") << length;
    }
    const CHostPath none("");
    EXPECT_EQ(platform::HostFolder(), "");
}

TEST_F(LackingSystem, WithoutConversionsFoldsOnlyAscii) {
    const CCodePage codePage;
    EXPECT_TRUE(platform::EqualIgnoringCase("a\xC3\xA4", "A\xC3\x84"));
    for (const int granted : {2, 3}) { // both texts are asked whether they are valid
        const CLackingSystem lacking({.nConversions = granted});
        EXPECT_FALSE(platform::EqualIgnoringCase("a\xC3\xA4", "A\xC3\x84"));
    }
    const CLackingSystem lacking({.nConversions = 0});
    EXPECT_TRUE(platform::EqualIgnoringCase("a", "A"));
}

TEST_F(LackingSystem, RefusesTextThatCannotBeCounted) {
    // Nothing is read of it.
    constexpr std::size_t kLength = std::numeric_limits<int>::max() / 3 + 1;
    EXPECT_THROW(platform::ToWideText(std::string_view("a", kLength)), std::bad_alloc);
    EXPECT_THROW(platform::ToAnsi(std::wstring_view(L"a", kLength)), std::bad_alloc);
}

TEST_F(LackingSystem, RefusesADocumentThatIsTooLarge) {
    // The DOM would take it: it overlooks the zeros behind the document.
    CopyMainForUser(Document(""));
    fs::resize_file(UserMainPath(), kMaxDocumentBytes + 1);
    CReason reason;
    EXPECT_FALSE(DomDocument::Create()->Load(UserMainPath().string().c_str(), &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::TooLarge);
    fs::resize_file(UserMainPath(), Document("").size());
    EXPECT_TRUE(DomDocument::Create()->Load(UserMainPath().string().c_str()));
}

TEST_F(LackingSystem, WithoutMemoryForAFreshDocumentGivesNone) {
    for (int granted = 0;; ++granted) {
        bool bRefused = false;
        bool bCreated = false;
        {
            const CLackingSystem lacking({.nAllocations = granted});
            bCreated = DomDocument::Create() != nullptr;
            bRefused = lacking.HasRefused();
        }
        EXPECT_EQ(bCreated, !bRefused) << granted;
        if (!bRefused) {
            EXPECT_GE(granted, 2);
            break;
        }
    }
}

TEST_F(LackingSystem, WithoutMemoryForALoadThrowsItsError) {
    CopyMainForUser(Document("<Files/>"));
    const std::string path = UserMainPath().string();
    int refusals = 0;
    for (int granted = 0;; ++granted) {
        const auto dom = DomDocument::Create();
        bool bRefused = false;
        bool bThrown = false;
        {
            const CLackingSystem lacking({.nAllocations = granted});
            try {
                dom->Load(path.c_str());
            } catch (const DomError&) {
                bThrown = true;
            }
            bRefused = lacking.HasRefused();
        }
        EXPECT_EQ(bThrown, bRefused) << granted;
        if (!bRefused) {
            break;
        }
        ++refusals;
    }
    EXPECT_GE(refusals, 2) << "the path, and the path of the DOM";
}

TEST_F(LackingSystem, WithoutMemoryForASaveLeavesTheCopy) {
    OpenMain("<Files><Item ID=\"1\"/></Files>");
    const std::string before = UserMainText();
    CXmlQuery query("Files", "ID", "a longer one");
    ASSERT_EQ(WriteAttribute(State().currentDocument, &query), 0);
    for (int granted = 0;; ++granted) {
        bool bRefused = false;
        int32_t status = 0;
        {
            const CLackingSystem lacking({.nAllocations = granted});
            status = State().currentDocument->Save() ? 0 : 1;
            bRefused = lacking.HasRefused();
        }
        EXPECT_EQ(status, bRefused ? 1 : 0) << granted;
        if (!bRefused) {
            EXPECT_GE(granted, 3);
            break;
        }
        EXPECT_EQ(UserMainText(), before) << granted;
    }
    EXPECT_EQ(SavedItems("Files"), (Records{Record{{"ID", "a longer one"}}}));
    EXPECT_EQ(std::distance(fs::directory_iterator(UserMainPath().parent_path()), fs::directory_iterator()), 1);
}

TEST_F(LackingSystem, WithoutMemoryForASemaphoreGivesNone) {
    const CLackingSystem lacking({.nAllocations = 0});
    EXPECT_EQ(platform::NewSemaphore(), nullptr);
}

TEST_F(LackingSystem, WithoutMemoryForBytesTellsTheWriter) {
    const std::string bytes(1000, 'b');
    CByteStream stream;
    ULONG written = 7;
    HRESULT result = S_OK;
    {
        const CLackingSystem lacking({.nAllocations = 0});
        result = stream.Write(bytes.data(), 1000, &written);
    }
    EXPECT_EQ(result, STG_E_MEDIUMFULL);
    EXPECT_EQ(written, 0u);
    EXPECT_EQ(stream.View(), "");
}

TEST_F(LackingSystem, WithoutMemoryReplacesNoFile) {
    WriteFile(UserMainPath(), "old");
    bool bReplaced = true;
    CReason reason;
    {
        const std::string path = UserMainPath().string();
        const CLackingSystem lacking({.nAllocations = 0});
        bReplaced = platform::ReplaceContents(path.c_str(), "new", &reason);
    }
    EXPECT_FALSE(bReplaced);
    EXPECT_EQ(reason.m_kind, ReasonKind::OutOfMemory);
    EXPECT_EQ(UserMainText(), "old");
}
