// Documents on a thread with a stack of 64 KiB, as some hosts have them: whatever a document holds, loading, searching,
// changing, saving and dropping it needs no more.

#include "engine_document.h"
#include "entity_nesting.h"
#include "nodes/node_writers.h"
#include "platform/document_limits.h"
#include "repeated.h"
#include "scratch_folder.h"
#include "store/node_readers.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

namespace {

#ifndef __has_feature
#define __has_feature(feature) 0
#endif
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__) || __has_feature(address_sanitizer) ||               \
    __has_feature(thread_sanitizer)
constexpr std::size_t kSmallStack = std::size_t{1} << 20; // a sanitizer makes every frame several times as large
#else
constexpr std::size_t kSmallStack = std::size_t{64} << 10;
#endif

/// Does the work on a thread with a small stack.
void RunOnSmallStack(std::function<void()> work) {
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    ASSERT_EQ(pthread_attr_setstacksize(&attributes, kSmallStack), 0);
    pthread_t thread{};
    const auto run = [](void* argument) -> void* {
        (*static_cast<std::function<void()>*>(argument))();
        return nullptr;
    };
    ASSERT_EQ(pthread_create(&thread, &attributes, run, &work), 0);
    pthread_join(thread, nullptr);
    pthread_attr_destroy(&attributes);
}

std::string EntityChain(std::size_t count) {
    std::string declarations;
    for (std::size_t number = 0; number < count; ++number) {
        const std::string text = number + 1 < count ? "&e" + std::to_string(number + 1) + ";" : "end";
        declarations += "<!ENTITY e" + std::to_string(number) + " '" + text + "'>";
    }
    return "<!DOCTYPE r [" + declarations + "]>";
}

class SmallStack : public ::testing::Test {
protected:
    /// Loads the document, changes, saves and drops it. `bLoads`: whether it is one.
    void Use(const std::string& xml, bool bLoads) {
        std::ofstream(m_file, std::ios::binary) << xml;
        RunOnSmallStack([&] {
            CXmlObject object;
            object.m_pDom = DomDocument::Create();
            ASSERT_EQ(object.m_pDom->Load(m_file.c_str()), bLoads);
            if (!bLoads) {
                return;
            }
            object.m_pTables = std::make_unique<CDocumentTables>(*object.m_pDom);
            CRequest missing("NoSuchContainer", "a");
            EXPECT_EQ(ReadAttribute(&object, &missing), 1);
            const CRequest item = CRequest("List", "").With("a", "1");
            EXPECT_EQ(WriteItem(&object, &item), 0);
            object.m_pDom->Save(m_file.c_str());
            const CRequest all("List", "");
            EXPECT_EQ(RemoveItems(&object, &all), 0);
            object.m_pDom->Save(m_file.c_str());
        });
    }

    const CScratchFolder m_folder;
    const std::filesystem::path m_file = m_folder.Path() / "document.xml";
};

} // namespace

TEST_F(SmallStack, IsEnoughForTheDeepestDocument) {
    const std::size_t depth = kMaxElementDepth - 2; // below <r> and <List>
    Use("<r><List>" + Repeated("<a x='1'>", depth) + Repeated("</a>", depth) + "</List></r>", true);
}

TEST_F(SmallStack, IsEnoughForElementsThatAreTooDeep) { Use(Repeated("<a>", 100000), false); }

TEST_F(SmallStack, IsEnoughForTheDeepestEntities) {
    const std::string chain = EntityChain(kMaxEntityNesting);
    Use(chain + "<r a='&e0;'><t>&e0;</t><List/></r>", true);
    Use("<!DOCTYPE r [" + chain.substr(13, chain.size() - 15) + "<!ATTLIST r a CDATA '&e0;'>]><r><List b='&e0;'/></r>",
        true);
}

TEST_F(SmallStack, IsEnoughForEntitiesThatAreTooDeep) {
    for (const std::size_t count : {std::size_t{200}, std::size_t{24000}}) {
        Use(EntityChain(count) + "<r>&e0;</r>", false);
        Use(EntityChain(count) + "<r a='&e0;'/>", false);
    }
}

TEST_F(SmallStack, IsEnoughForADeepContentModelAndManyDeclarations) {
    Use("<!DOCTYPE r [<!ELEMENT r " + Repeated("(", 50000) + "a" + Repeated(")", 50000) + ">" +
            Repeated("<!ENTITY % p ''><!ATTLIST a b CDATA 'c'>", 5000) + "]><r><List/></r>",
        true);
}

TEST_F(SmallStack, IsEnoughForEveryEncoding) {
    for (const char* const encoding : {"UTF-8", "US-ASCII", "ISO-8859-1", "ISO-8859-15", "windows-1252", "Shift_JIS",
                                       "GB2312", "GB18030", "EUC-KR", "Big5", "EUC-JP", "ISO-2022-JP", "KOI8-R"}) {
        Use("<?xml version='1.0' encoding='" + std::string(encoding) + "'?><r><t>" + std::string(100000, 'x') +
                "</t><List/></r>",
            true);
    }
    Use("<?xml version='1.0' encoding='no-such'?><r><List/></r>", false);
}
