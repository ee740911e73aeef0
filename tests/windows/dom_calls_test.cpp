// Every call to the DOM fails in turn, in every way. Whatever fails, an operation is done or not done, as its status
// says; what is in memory is what a save writes; and the next operation works.

#include "dom_calls_windows.h"

#include "host_test.h"
#include "nodes/node_writers.h"
#include "platform/dom.h"
#include "store/module_state.h"
#include "store/node_readers.h"
#include "store/xml_object.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <utility>

namespace {

const char* const kContainers = "<?first?><Files><Item ID=\"1\" Name=\"one\"/><Item ID=\"2\" Name=\"two\"/></Files>"
                                "<p:Files xmlns:p=\"urn:p\"><Item ID=\"3\"/></p:Files>";

// The load declares UTF-8 then.
std::string DocumentInLatin1() {
    std::string document = Document(kContainers);
    const std::size_t end = document.find("?>");
    return "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"" + document.substr(end);
}

} // namespace

class DomCalls : public HostTest {
protected:
    using Operation = std::function<int32_t()>;

    void SetUp() override {
        HostTest::SetUp();
        Start();
    }

    /// The document as it was, open.
    void Start() {
        CloseAll();
        InstallMain(DocumentInLatin1());
        CopyMainForUser(DocumentInLatin1());
        Open();
    }

    /// The attributes of every item, one after the other.
    static Record InMemory(const char* container = "Files") {
        CXmlQuery query(container, "");
        ListAllAttributes(State().currentDocument, &query);
        Record attributes;
        for (const CXmlAttribute::Pair* pair = query.m_attrs.Head(); pair != nullptr; pair = pair->next) {
            attributes.emplace_back(pair->name.c_str(), pair->value.c_str());
        }
        return attributes;
    }

    Record OnDisk() const {
        Record attributes;
        for (const Record& item : SavedItems("Files")) {
            attributes.insert(attributes.end(), item.begin(), item.end());
        }
        return attributes;
    }

    static int32_t Save() { return State().currentDocument->Save() ? 0 : 1; }

    /// Answers one call of the operation otherwise, in turn, in a document that was never asked for anything and in one
    /// that was. Where the DOM says that it failed, the operation is not done.
    void FailEachCallOf(const Operation& operation) {
        Start();
        const Record before = InMemory();
        ASSERT_EQ(operation(), 0);
        const Record after = InMemory();
        for (const bool bKnown : {false, true}) {
            for (const DomAnswer answer : {DomAnswer::Failure, DomAnswer::Nothing, DomAnswer::Success}) {
                for (std::size_t failing = 0;; ++failing) {
                    Start();
                    if (bKnown) {
                        InMemory();
                    }
                    int32_t status = 0;
                    std::string failed;
                    {
                        CDomCallWatch watch([&](std::size_t number, const std::string& name) {
                            failed = number == failing ? name : failed;
                            return number == failing ? answer : DomAnswer::ItsOwn;
                        });
                        status = operation();
                    }
                    if (failed.empty()) {
                        break;
                    }
                    SCOPED_TRACE(failed + ", call " + std::to_string(failing));
                    if (answer == DomAnswer::Failure) {
                        ASSERT_EQ(InMemory(), status == 0 ? after : before);
                        ASSERT_EQ(Save(), 0);
                        ASSERT_EQ(OnDisk(), status == 0 ? after : before);
                    }
                    CXmlQuery query("Files", "Name", "next");
                    WriteAttribute(State().currentDocument, &query);
                    ASSERT_EQ(Save(), 0);
                    ++m_nFailures;
                }
            }
        }
    }

    int m_nFailures = 0;
};

TEST_F(DomCalls, OfALoadFailingOneByOneGiveNoDocument) {
    for (const DomAnswer answer : {DomAnswer::Failure, DomAnswer::Nothing, DomAnswer::Success}) {
        for (std::size_t failing = 0;; ++failing) {
            std::string failed;
            std::string error;
            bool bLoaded = false;
            {
                CDomCallWatch watch([&](std::size_t number, const std::string& name) {
                    failed = number == failing ? name : failed;
                    return number == failing ? answer : DomAnswer::ItsOwn;
                });
                const auto dom = DomDocument::Create();
                try {
                    bLoaded = dom != nullptr && dom->Load(UserMainPath().string().c_str());
                } catch (const DomError& thrown) {
                    error = thrown.what();
                }
            }
            if (failed.empty()) {
                EXPECT_TRUE(bLoaded);
                break;
            }
            SCOPED_TRACE(failed + ", call " + std::to_string(failing));
            if (answer == DomAnswer::Failure) {
                // A first node that has not the interface of a declaration is none.
                EXPECT_EQ(bLoaded, failed == "QueryInterface");
            }
            EXPECT_EQ(!error.empty(), answer == DomAnswer::Failure && failed == "load") << error;
        }
    }
}

TEST_F(DomCalls, OfASaveThatWritesNothingLeaveTheCopy) {
    const std::string before = UserMainText();
    for (const DomAnswer answer : {DomAnswer::Failure, DomAnswer::Nothing, DomAnswer::Success}) {
        CDomCallWatch watch([&](std::size_t, const std::string&) { return answer; });
        EXPECT_EQ(Save(), 1);
        EXPECT_EQ(watch.Calls(), std::vector<std::string>{"save"});
        EXPECT_EQ(UserMainText(), before);
    }
}

TEST_F(DomCalls, OfReadersFailingOneByOneGiveNothing) {
    for (std::size_t failing = 0;; ++failing) {
        Start();
        CXmlQuery query("Files", "Name");
        query.AddPair("ID", "2");
        int32_t status = 0;
        std::size_t count = 0;
        {
            CDomCallWatch watch([&](std::size_t number, const std::string&) {
                return number == failing ? DomAnswer::Failure : DomAnswer::ItsOwn;
            });
            status = ReadAttribute(State().currentDocument, &query);
            count = watch.Calls().size();
        }
        if (count <= failing) {
            EXPECT_EQ(status, 0);
            break;
        }
        EXPECT_EQ(status, 1) << "call " << failing;
        EXPECT_EQ(InMemory(), (Record{{"ID", "1"}, {"Name", "one"}, {"ID", "2"}, {"Name", "two"}}));
    }
}

TEST_F(DomCalls, OfWritersFailingOneByOneDoAllOrNothing) {
    const std::pair<const char*, Operation> operations[] = {
        {"overwriting",
         [] {
             CXmlQuery query("Files", "Name", "changed");
             return WriteAttribute(State().currentDocument, &query);
         }},
        {"updating",
         [] {
             CXmlQuery query("Files", "ID", "2");
             query.AddPair("Name", "updated");
             return UpdateItem(State().currentDocument, &query);
         }},
        {"appending",
         [] {
             CXmlQuery query("Files", "");
             query.AddPair("ID", "4");
             query.AddPair("Name", "four");
             return WriteItem(State().currentDocument, &query);
         }},
        {"removing",
         [] {
             CXmlQuery query("Files", "");
             query.AddPair("ID", "1");
             return RemoveItems(State().currentDocument, &query);
         }},
    };
    for (const auto& [name, operation] : operations) {
        SCOPED_TRACE(name);
        FailEachCallOf(operation);
        ASSERT_FALSE(HasFailure());
    }
    std::printf("%d calls of the DOM failed, one by one\n", m_nFailures);
}

TEST_F(DomCalls, OfRemovingAllKeepWhatIsNotRemoved) {
    CXmlQuery query("Files", "");
    {
        int removals = 0;
        CDomCallWatch watch([&](std::size_t, const std::string& name) {
            return name == "removeChild" && ++removals == 2 ? DomAnswer::Failure : DomAnswer::ItsOwn;
        });
        EXPECT_EQ(RemoveItems(State().currentDocument, &query), 1);
    }
    const Record left = InMemory();
    EXPECT_EQ(left.size(), 2u);
    EXPECT_EQ(Save(), 0);
    EXPECT_EQ(OnDisk(), left);
}

TEST_F(DomCalls, ThatFindNoEndOfLevelsGiveNoDocument) {
    CDomCallWatch watch([](std::size_t, const std::string& name) {
        return name == "get_firstChild" ? DomAnswer::Itself : DomAnswer::ItsOwn;
    });
    EXPECT_FALSE(DomDocument::Create()->Load(UserMainPath().string().c_str()));
}

TEST_F(DomCalls, FindNothingInADocumentWithoutAnElement) {
    const auto dom = DomDocument::Create();
    EXPECT_FALSE(dom->DocumentElement());
    EXPECT_FALSE(dom->FirstElementNamed(L"Files"));
}

TEST_F(DomCalls, AppendAContainerToTheDocumentElement) {
    const auto dom = DomDocument::Create();
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    const DomNode documentElement = dom->DocumentElement();
    ASSERT_TRUE(documentElement);
    EXPECT_TRUE(dom->AppendElement(documentElement, L"New", {}));
    EXPECT_TRUE(dom->FirstElementNamed(L"New"));
}

TEST_F(DomCalls, SetNoTextOfANodeThatHasNoAttributes) {
    const auto dom = DomDocument::Create();
    CopyMainForUser(Document("<Files>text</Files>"));
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    const DomNode text = dom->FirstChild(dom->FirstElementNamed(L"Files"));
    ASSERT_TRUE(text);
    EXPECT_THROW(dom->SetAttributeText(text, 0, L"new"), DomError);
}

TEST_F(DomCalls, ReadAnAppendedAttributeWithoutItsPrefix) {
    CXmlQuery query("p:Files", "");
    query.AddPair("p:Kind", "new");
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0);
    EXPECT_EQ(InMemory("p:Files").back(), (std::pair<std::string, std::string>("Kind", "new")));
    query.m_strElement = "Files";
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 1) << "where the prefix is not declared";
}

TEST_F(DomCalls, MakeADocumentInAnyContextThatRunsHere) {
    ASSERT_TRUE(DomDocument::Create());
    EXPECT_EQ(ClassContext(), DWORD{CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER | CLSCTX_LOCAL_SERVER});
}

TEST_F(DomCalls, TakeAThousandLevelsOfElementsAndNoMore) {
    CopyMainForUser("<Cordelbox>text</Cordelbox>");
    const std::string path = UserMainPath().string();
    for (const std::size_t levels : {1000, 1001}) {
        const auto dom = DomDocument::Create();
        std::size_t deeper = 0;
        CDomCallWatch watch([&](std::size_t, const std::string& name) { // the document element within itself
            return name == "get_firstChild" && ++deeper < levels ? DomAnswer::Itself : DomAnswer::ItsOwn;
        });
        CReason reason;
        EXPECT_EQ(dom->Load(path.c_str(), &reason), levels == 1000) << levels;
        EXPECT_EQ(reason.m_kind, levels == 1000 ? ReasonKind::None : ReasonKind::TooDeep) << levels;
    }
}

TEST_F(DomCalls, AppendAtTheDeepestLevelAndNoDeeper) {
    const auto dom = DomDocument::Create();
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    const DomNode files = dom->FirstElementNamed(L"Files");
    for (const std::size_t level : {1000, 1001}) {
        std::size_t above = 0;
        ReasonKind kind = ReasonKind::None;
        {
            CDomCallWatch watch([&](std::size_t, const std::string& name) { // the container within itself
                return name == "get_parentNode" && ++above < level - 2 ? DomAnswer::Itself : DomAnswer::ItsOwn;
            });
            try {
                dom->AppendElement(files, L"Item", {});
            } catch (const DomError& error) {
                kind = error.Reason().m_kind;
            }
        }
        EXPECT_EQ(kind, level == 1000 ? ReasonKind::None : ReasonKind::TooDeep) << level;
    }
}

TEST_F(DomCalls, ReadEveryKindOfNode) {
    CopyMainForUser(
        "<Cordelbox><Files a=\"1\">text<![CDATA[data]]><!--words--><?target words?><i/></Files></Cordelbox>");
    const auto dom = DomDocument::Create();
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    const DomNode files = dom->FirstElementNamed(L"Files");
    EXPECT_EQ(dom->TagName(files).View(), L"Files");
    EXPECT_TRUE(dom->HasChildren(files));
    EXPECT_EQ(dom->AttributePosition(files, 0).line, 0u) << "this DOM does not say";
    const std::pair<DomKind, DomView> nodes[] = {{DomKind::Text, L"text"},
                                                 {DomKind::Cdata, L"data"},
                                                 {DomKind::Comment, L"words"},
                                                 {DomKind::Instruction, L"words"}};
    DomNode node = dom->FirstChild(files);
    for (const auto& [kind, text] : nodes) {
        EXPECT_EQ(dom->Kind(node), kind);
        EXPECT_EQ(dom->Text(node).View(), text);
        EXPECT_EQ(dom->TagName(node).View(), L"");
        EXPECT_FALSE(dom->HasChildren(node));
        std::vector<DomAttribute> attributes;
        dom->ListAttributes(node, attributes);
        EXPECT_TRUE(attributes.empty());
        node = dom->NextSibling(node);
    }
    EXPECT_EQ(dom->Kind(node), DomKind::Element);
    EXPECT_FALSE(dom->HasChildren(node));
    EXPECT_THROW(dom->Text(node), DomError) << "an element has none of its own";
    EXPECT_FALSE(dom->NextSibling(node));
}

TEST_F(DomCalls, SayWhatTheyCouldNotGive) {
    const auto dom = DomDocument::Create();
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    const DomNode item = dom->FirstChild(dom->FirstElementNamed(L"Files"));
    const std::pair<const char*, const char*> calls[] = {
        {"get_nodeValue", "the DOM cannot give an attribute's text"},
        {"get_attributes", "the DOM cannot give a node's attributes"},
        {"get_baseName", "the DOM cannot give an attribute's base name"}};
    for (const auto& [failing, words] : calls) {
        const CDomCallWatch watch([&, name = std::string(failing)](std::size_t, const std::string& call) {
            return call == name ? DomAnswer::Failure : DomAnswer::ItsOwn;
        });
        std::vector<DomAttribute> attributes;
        try {
            dom->ListAttributes(item, attributes);
            ADD_FAILURE() << failing;
        } catch (const DomError& error) {
            EXPECT_STREQ(error.what(), words);
        }
    }
    for (const DomAnswer answer : {DomAnswer::Failure, DomAnswer::Nothing}) {
        const CDomCallWatch watch([&](std::size_t, const std::string& call) {
            return call == "QueryInterface" ? answer : DomAnswer::ItsOwn;
        });
        EXPECT_THROW(dom->DocumentElement(), DomError);
        EXPECT_THROW(dom->AddAttribute(item, {L"New", L"text"}), DomError);
    }
}

TEST_F(DomCalls, LookForANameWithAPrefixAmongAllElementsAndForOneWithoutOnce) {
    const auto dom = DomDocument::Create();
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    {
        bool bFirst = true;
        const CDomCallWatch watch([&](std::size_t, const std::string& name) {
            return name == "nextNode" && std::exchange(bFirst, false) ? DomAnswer::Nothing : DomAnswer::ItsOwn;
        });
        EXPECT_TRUE(dom->FirstElementNamed(L"p:Files")) << "as by a DOM that searches without prefixes";
    }
    const CDomCallWatch watch;
    EXPECT_FALSE(dom->FirstElementNamed(L"None"));
    EXPECT_EQ(std::count(watch.Calls().begin(), watch.Calls().end(), "getElementsByTagName"), 1);
}

TEST_F(DomCalls, AddAnAttributeAndGiveItsText) {
    const auto dom = DomDocument::Create();
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    const DomNode item = dom->FirstChild(dom->FirstElementNamed(L"Files"));
    EXPECT_EQ(dom->AddAttribute(item, {L"New", L"text"}).View(), L"text");
    EXPECT_EQ(dom->SetAttributeText(item, 0, L"other").View(), L"other");
    EXPECT_THROW(dom->AddAttribute(item, {L"p:New", L"text"}), DomError) << "under a prefix";
    EXPECT_THROW(dom->AddAttribute(item, {L"xmlns", L"text"}), DomError);
    {
        const CDomCallWatch watch([](std::size_t, const std::string& name) {
            return name == "setAttribute" ? DomAnswer::Failure : DomAnswer::ItsOwn;
        });
        EXPECT_THROW(dom->AddAttribute(item, {L"Another", L"text"}), DomError);
    }
    std::vector<DomAttribute> attributes;
    dom->ListAttributes(item, attributes);
    EXPECT_EQ(attributes.size(), 3u);
}

TEST_F(DomCalls, TakeNoBlanksThatAreLostWhereAttributesAreDeclared) {
    for (const bool bDeclared : {false, true}) {
        CopyMainForUser("<!DOCTYPE Cordelbox [" +
                        std::string(bDeclared ? "<!ATTLIST Item Name NMTOKENS #IMPLIED>" : "<!ELEMENT Item EMPTY>") +
                        "]><Cordelbox><Files><Item ID=\"1\"/></Files></Cordelbox>");
        const auto dom = DomDocument::Create();
        ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
        const DomNode files = dom->FirstElementNamed(L"Files");
        const DomNode item = dom->FirstChild(files);
        int refused = 0;
        const auto count = [&](const auto& change) {
            try {
                change();
            } catch (const DomError&) {
                ++refused;
            }
        };
        int name = 0;
        for (const DomView text : {L"a", L"a b", L"", L" a", L"a ", L"a  b", L" "}) {
            count([&] { dom->SetAttributeText(item, 0, text); });
            count([&] { dom->AddAttribute(item, {L"A" + std::to_wstring(++name), text}); });
            count([&] { dom->AppendElement(files, L"Item", {{L"ID", text}}); });
        }
        EXPECT_EQ(refused, bDeclared ? 12 : 0) << "four texts, in three ways";
    }
}

TEST_F(DomCalls, KeepToTheRulesOfNamespacesInWhatTheyAppend) {
    CopyMainForUser("<Cordelbox xmlns:p=\"u\" xmlns:q=\"u\"><a xmlns:r=\"v\"><Files xmlns:s=\"w\"/></a></Cordelbox>");
    const auto dom = DomDocument::Create();
    ASSERT_TRUE(dom->Load(UserMainPath().string().c_str()));
    const DomNode files = dom->FirstElementNamed(L"Files");
    const auto takes = [&](DomView name, const std::vector<DomPair>& attributes) {
        try {
            dom->AppendElement(files, name, attributes);
            return true;
        } catch (const DomError&) {
            return false;
        }
    };
    EXPECT_TRUE(takes(L"Item", {{L"p:a", L"1"}, {L"r:a", L"2"}, {L"s:a", L"3"}, {L"a", L"4"}}));
    EXPECT_TRUE(takes(L"Item", {{L"p:a", L"1"}, {L"p:a", L"2"}})) << "the last of a name counts";
    EXPECT_FALSE(takes(L"Item", {{L"p:a", L"1"}, {L"q:a", L"2"}})) << "one name in one namespace";
    EXPECT_FALSE(takes(L"Item", {{L"t:a", L"1"}, {L"b", L"2"}}));
    EXPECT_FALSE(takes(L"Item", {{L"b", L"2"}, {L"t:a", L"1"}}));
    EXPECT_FALSE(takes(L"t:Item", {}));
    const DomNode item = dom->FirstChild(files);
    EXPECT_THROW(dom->SetAttributeText(files, 0, L"x"), DomError) << "a declaration";
    EXPECT_EQ(dom->SetAttributeText(files, 0, L"w").View(), L"w");
    // While the attributes of what lies around cannot be read, nothing is appended.
    for (const char* const failing : {"get_attributes", "get_length", "get_item", "get_nodeName", "get_nodeValue"}) {
        const CDomCallWatch watch([&](std::size_t, const std::string& name) {
            return name == failing ? DomAnswer::Failure : DomAnswer::ItsOwn;
        });
        EXPECT_FALSE(takes(L"Item", {{L"p:a", L"1"}})) << failing;
    }
    EXPECT_FALSE(dom->NextSibling(dom->NextSibling(item)));
}
