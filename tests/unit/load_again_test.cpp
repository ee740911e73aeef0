// What was saved can be loaded again, and holds the same: at each limit of a load from both sides, and for random
// documents and edits that come near to them.

#include "engine_document.h"
#include "file_bytes.h"
#include "nodes/node_writers.h"
#include "nodes/row_access.h"
#include "platform/document_limits.h"
#include "repeated.h"
#include "scratch_folder.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

class LoadAgain : public ::testing::Test {
protected:
    LoadAgain() { std::ofstream(m_file) << "<old/>"; }

    /// What saving the document says.
    static CReason Save(DomDocument& document, const fs::path& file) {
        try {
            document.Save(file.c_str());
        } catch (const DomError& error) {
            return error.Reason();
        }
        return {};
    }
    CReason Save(CEngineDocument& document) { return Save(*document.Object().m_pDom, m_file); }

    /// The text of the first attribute of that name in a container's rows, in the saved document.
    std::string SavedText(const char* container, const char* attribute) {
        CXmlObject object;
        object.m_pDom = DomDocument::Create();
        EXPECT_TRUE(object.m_pDom->Load(m_file.c_str()));
        object.m_pTables = std::make_unique<CDocumentTables>(*object.m_pDom);
        CRequest query(container, attribute);
        return ReadAttribute(&object, &query) == 0 ? query.FirstValue().c_str() : "(none)";
    }

    bool OldCopyStays() { return ReadBytes(m_file) == "<old/>"; }

    const CScratchFolder m_folder;
    const fs::path m_file = m_folder.Path() / "document.xml";
};

int32_t ChangeAll(const char* container, const char* attribute, const std::string& text) {
    const CRequest query(container, attribute, text.c_str());
    return WriteAttribute(State().currentDocument, &query);
}

int32_t AppendWith(const char* container, const char* attribute, const char* text) {
    const CRequest query = CRequest(container, "").With(attribute, text);
    return WriteItem(State().currentDocument, &query);
}

} // namespace

TEST_F(LoadAgain, AValueWhoseEscapesAreTooLargeKeepsTheOldCopy) {
    CEngineDocument document("<r><List><i a=''/></List></r>");
    ASSERT_EQ(ChangeAll("List", "a", std::string(45 << 20, '"')), 0);
    EXPECT_EQ(Save(document).m_kind, ReasonKind::TooLarge);
    EXPECT_TRUE(OldCopyStays());
    ASSERT_EQ(ChangeAll("List", "a", "small again"), 0);
    EXPECT_FALSE(Save(document));
    EXPECT_EQ(SavedText("List", "a"), "small again");
}

TEST_F(LoadAgain, TheLargestDocumentLoadsAndOneByteMoreKeepsTheOldCopy) {
    CEngineDocument document("<r><List><i a=''/></List></r>");
    ASSERT_FALSE(Save(document));
    const std::size_t rest = fs::file_size(m_file);
    ASSERT_EQ(ChangeAll("List", "a", std::string(kMaxDocumentBytes - rest, 'v')), 0);
    ASSERT_FALSE(Save(document));
    EXPECT_EQ(fs::file_size(m_file), kMaxDocumentBytes);
    EXPECT_EQ(SavedText("List", "a").size(), kMaxDocumentBytes - rest);
    // One byte more fits without the indentation, which then goes.
    ASSERT_EQ(ChangeAll("List", "a", std::string(kMaxDocumentBytes - rest + 1, 'v')), 0);
    EXPECT_FALSE(Save(document));
    EXPECT_LT(fs::file_size(m_file), kMaxDocumentBytes);
    std::ofstream(m_file) << "<old/>";
    ASSERT_EQ(ChangeAll("List", "a", std::string(kMaxDocumentBytes, 'v')), 0);
    EXPECT_EQ(Save(document).m_kind, ReasonKind::TooLarge);
    EXPECT_TRUE(OldCopyStays());
}

TEST_F(LoadAgain, ADeepDocumentThatBlanksWouldMakeTooLargeIsSavedWithoutThem) {
    const std::size_t depth = kMaxElementDepth - 3;
    const std::string row = "<i/>";
    CEngineDocument document("<r>" + Repeated("<a>", depth) + Repeated(row, 140000) + "<List><i b=''/></List>" +
                             Repeated("</a>", depth) + "</r>");
    ASSERT_EQ(ChangeAll("List", "b", "kept"), 0);
    EXPECT_FALSE(Save(document));
    EXPECT_LT(fs::file_size(m_file), std::size_t{1} << 20);
    EXPECT_EQ(SavedText("List", "b"), "kept");
}

TEST_F(LoadAgain, AnItemMayLieAtTheGreatestDepthAndNotBelow) {
    for (const std::size_t depth : {kMaxElementDepth - 1, kMaxElementDepth}) {
        CEngineDocument document(Repeated("<a>", depth - 1) + "<List/>" + Repeated("</a>", depth - 1));
        const bool bFits = depth < kMaxElementDepth;
        EXPECT_EQ(AppendWith("List", "b", "1"), bFits ? 0 : 1) << depth;
        EXPECT_FALSE(Save(document));
        EXPECT_EQ(SavedText("List", "b"), bFits ? "1" : "(none)");
    }
}

TEST_F(LoadAgain, BlanksThatAReaderCutsFromTokensAreRefused) {
    for (const char* const type : {"NMTOKENS", "NMTOKEN", "ID", "IDREFS", "ENTITY", "(x|y)"}) {
        CEngineDocument document("<!DOCTYPE r [<!ATTLIST i a " + std::string(type) +
                                 " #IMPLIED><!ATTLIST Item a NMTOKENS #IMPLIED>]><r><List><i a=' x  y '/></List></r>");
        for (const char* const text : {" x", "x ", "x  y", " ", "  "}) {
            EXPECT_EQ(ChangeAll("List", "a", text), 1) << type << " \"" << text << '"';
            EXPECT_EQ(AppendWith("List", "a", text), 1) << type << " \"" << text << '"';
        }
        for (const char* const text : {"", "x y z", "x\ty", "x\n", "\t\t"}) {
            EXPECT_EQ(ChangeAll("List", "a", text), 0) << type << " \"" << text << '"';
            EXPECT_FALSE(Save(document));
            EXPECT_EQ(SavedText("List", "a"), text) << type;
        }
    }
}

TEST_F(LoadAgain, BlanksThatAReaderCutsAreRefusedInAnAttributeThatARowGains) {
    CEngineDocument document("<!DOCTYPE r [<!ATTLIST i a NMTOKENS #IMPLIED>]><r><List><i/></List></r>");
    EXPECT_FALSE(AddCell(&document.Object(), "List", 0, "a", " x"));
    EXPECT_EQ(document.Text("List"), "<List><i/></List>");
    EXPECT_TRUE(AddCell(&document.Object(), "List", 0, "a", "x y"));
    EXPECT_FALSE(Save(document));
    EXPECT_EQ(SavedText("List", "a"), "x y");
}

TEST_F(LoadAgain, BlanksOfOtherAttributesStay) {
    CEngineDocument document("<!DOCTYPE r [<!ATTLIST i a CDATA #IMPLIED b NMTOKENS #IMPLIED>"
                             "<!ATTLIST i a NMTOKENS #IMPLIED>]><r><List><i a='' c=''/></List></r>");
    for (const char* const attribute : {"a", "c"}) {
        EXPECT_EQ(ChangeAll("List", attribute, "  x  y "), 0);
        EXPECT_FALSE(Save(document));
        EXPECT_EQ(SavedText("List", attribute), "  x  y ");
    }
}

TEST_F(LoadAgain, ANameThatBreaksTheRulesOfNamespacesIsRefused) {
    CEngineDocument document("<r xmlns:p='u' xmlns:q='v'><List/></r>");
    for (const char* const name : {"x:a", "p:a:b", ":a", "p:", "xmlns:xml", "xmlns:"}) {
        EXPECT_EQ(AppendWith("List", name, "w"), 1) << name;
    }
    EXPECT_EQ(AppendWith("List", "xmlns:s", ""), 1) << "a prefix without a namespace";
    const CRequest twice = CRequest("List", "").With("p:a", "1").With("xmlns:s", "u").With("s:a", "2");
    EXPECT_EQ(WriteItem(&document.Object(), &twice), 1);
    for (const char* const name : {"p:a", "xml:lang", "xmlns:s", "xmlns"}) {
        EXPECT_EQ(AppendWith("List", name, "w"), 0) << name;
        EXPECT_FALSE(Save(document));
        EXPECT_NE(SavedText("List", "a"), "(none)");
    }
}

TEST_F(LoadAgain, AChangedNamespaceDeclarationIsRefusedWhereNamesBreak) {
    CEngineDocument document(
        "<r xmlns:q='v'><List><i xmlns:p='u' p:a='1' q:a='2'><b><c p:d='' q:d=''/></b></i></List></r>");
    for (const char* const text : {"", "v", "http://www.w3.org/2000/xmlns/", "http://www.w3.org/XML/1998/namespace"}) {
        EXPECT_EQ(ChangeAll("List", "p", text), 1) << text;
    }
    EXPECT_EQ(ChangeAll("List", "p", "w"), 0);
    EXPECT_FALSE(Save(document));
    EXPECT_EQ(SavedText("List", "p"), "w");
}

TEST_F(LoadAgain, AnItemIsInNoNamespaceWhereADefaultOneIsDeclared) {
    CEngineDocument document("<r xmlns='u'><List/><Other xmlns=''/></r>");
    ASSERT_EQ(AppendWith("List", "a", "1"), 0);
    ASSERT_EQ(AppendWith("Other", "a", "1"), 0);
    ASSERT_EQ(AppendWith("List", "xmlns", "own"), 0);
    EXPECT_EQ(document.Text("List"), "<List><Item a=\"1\"/><Item xmlns=\"own\"/></List>") << "nothing but the pairs";
    for (int save = 0; save < 2; ++save) {
        EXPECT_FALSE(Save(document));
        pugi::xml_document saved;
        ASSERT_TRUE(saved.load_file(m_file.c_str()));
        const pugi::xml_node first = saved.document_element().child("List").first_child();
        EXPECT_STREQ(first.attribute("a").value(), "1");
        EXPECT_STREQ(first.attribute("xmlns").as_string("(none)"), "");
        EXPECT_STREQ(first.next_sibling().attribute("xmlns").value(), "own");
        EXPECT_TRUE(saved.document_element().child("Other").first_child().attribute("xmlns").empty());
        EXPECT_EQ(document.Text("List"), "<List><Item a=\"1\"/><Item xmlns=\"own\"/></List>");
    }
    const CRequest all("List", "");
    EXPECT_EQ(RemoveItems(&document.Object(), &all), 0);
    EXPECT_FALSE(Save(document));
}

TEST_F(LoadAgain, ItemsThatAreGoneSayNothingWhereADefaultNamespaceIsDeclared) {
    const std::string text(1000, 't');
    CEngineDocument document("<r xmlns='u'><List/><Other/></r>");
    for (int row = 0; row < 200; ++row) {
        ASSERT_EQ(AppendWith("List", "a", (text + std::to_string(row)).c_str()), 0);
    }
    const CRequest all("List", "");
    ASSERT_EQ(RemoveItems(&document.Object(), &all), 0);
    for (int row = 0; row < 200; ++row) { // in the same memory
        ASSERT_EQ(AppendWith("Other", "xmlns", ("own" + std::to_string(row)).c_str()), 0);
    }
    EXPECT_FALSE(Save(document));
    pugi::xml_document saved;
    ASSERT_TRUE(saved.load_file(m_file.c_str()));
    EXPECT_TRUE(saved.document_element().child("List").first_child().empty());
    int row = 0;
    for (const pugi::xml_node item : saved.document_element().child("Other").children()) {
        EXPECT_EQ(std::distance(item.attributes_begin(), item.attributes_end()), 1);
        EXPECT_EQ(item.attribute("xmlns").value(), "own" + std::to_string(row++));
    }
    EXPECT_EQ(row, 200);
}

TEST_F(LoadAgain, ADeclarationHoldsWithinItsElementOnlyWhenAnotherIsChanged) {
    CEngineDocument document(
        "<r xmlns:q='v'><List><i xmlns:p='u'><b xmlns:q='w' q:a=''/><c p:a='' q:a=''/></i></List></r>");
    EXPECT_EQ(ChangeAll("List", "p", "v"), 1) << "both attributes of the last element would be one";
    EXPECT_EQ(ChangeAll("List", "p", "w"), 0);
}

TEST_F(LoadAgain, AnItemIsInNoNamespaceWhereTheTypeDeclarationWouldPutItInOne) {
    CEngineDocument document("<!DOCTYPE r [<!ATTLIST Item xmlns CDATA 'u'>]><r><List/></r>");
    ASSERT_EQ(AppendWith("List", "a", "1"), 0);
    ASSERT_EQ(AppendWith("List", "xmlns", "own"), 0);
    EXPECT_FALSE(Save(document));
    pugi::xml_document saved;
    ASSERT_TRUE(saved.load_file(m_file.c_str()));
    const pugi::xml_node item = saved.document_element().child("List").first_child();
    EXPECT_STREQ(item.attribute("xmlns").as_string("(none)"), "");
    EXPECT_STREQ(item.next_sibling().attribute("xmlns").value(), "own");
}

TEST_F(LoadAgain, DefaultsThatWouldBreakANewItemKeepItOut) {
    CEngineDocument prefixed("<!DOCTYPE r [<!ATTLIST Item p:a CDATA 'd'>]><r><List/><Own xmlns:p='u'/></r>");
    EXPECT_EQ(AppendWith("List", "b", "1"), 1);
    EXPECT_EQ(AppendWith("Own", "b", "1"), 0);
    EXPECT_FALSE(Save(prefixed));
    EXPECT_EQ(SavedText("Own", "a"), "d");

    CEngineDocument large("<!DOCTYPE r [<!ATTLIST Item d CDATA '" + std::string((128 << 20) - 1, 'd') +
                          "'>]><r><List/></r>"); // with its name half of what is allowed
    EXPECT_EQ(AppendWith("List", "b", "1"), 0);
    EXPECT_EQ(AppendWith("List", "b", "2"), 0);
    EXPECT_EQ(AppendWith("List", "b", "3"), 1) << "three defaults are more than a load takes";
    EXPECT_FALSE(Save(large));
    EXPECT_EQ(SavedText("List", "b"), "1");
}

TEST_F(LoadAgain, AnAttributeThatIsDeclaredWithoutADefaultKeepsNoItemOut) {
    CEngineDocument document("<!DOCTYPE r [<!ATTLIST Item xmlns:p CDATA #IMPLIED p:a CDATA #IMPLIED>]><r><List/></r>");
    EXPECT_EQ(AppendWith("List", "b", "1"), 0);
    EXPECT_FALSE(Save(document));
    EXPECT_EQ(SavedText("List", "b"), "1");
}

TEST_F(LoadAgain, ANameThatNotEveryEditionOfXmlHasIsRefused) {
    // U+0132, U+037F and U+10000 are letters of names in the fifth edition only, and readers keep to the fourth.
    CEngineDocument document("<r><List/></r>");
    for (const char* const name : {"\xC4\xB2", "\xCD\xBF", "\xF0\x90\x80\x80", "a\xF0\x90\x80\x80"}) {
        EXPECT_EQ(AppendWith("List", name, "1"), 1) << name;
    }
    for (const char* const name : {"\xC3\x9C"
                                   "bung",
                                   "\xE8\xA1\xA8", "\xEA\xB0\x80", "\xD0\x96",
                                   "a\xC2\xB7"
                                   "b"}) {
        EXPECT_EQ(AppendWith("List", name, "1"), 0) << name;
    }
    EXPECT_FALSE(Save(document));
    EXPECT_EQ(SavedText("List", "\xC3\x9C"
                                "bung"),
              "1");
}

namespace {

/// Random documents with everything in a type declaration that bears on attributes, and random edits of them.
class CRandomEdits {
public:
    explicit CRandomEdits(unsigned seed) : m_random(seed) {}

    std::string Document() {
        std::string xml = "<!DOCTYPE r";
        xml += OneIn(4) ? " SYSTEM 'unread.dtd'" : "";
        xml += " [<!ENTITY e 'x &#38;#38; y'><!ENTITY f '&e; \"&e;\"'>";
        for (std::size_t count = Below(4); count > 0; --count) {
            xml += "<!ATTLIST " + Of({"i", "Item", "List"}) + " " + AttributeName() + " " +
                   Of({"CDATA", "NMTOKENS", "ID", "(x|y)"}) + " " +
                   Of({"#IMPLIED", "'d'", "' d  d '", "'&e;'", "#FIXED 'v'", "''"}) + ">";
        }
        xml += OneIn(6) ? "<!ENTITY % p SYSTEM 'unread'>%p;" : "";
        xml += "]>";
        xml += "<r xmlns:p='1'" + std::string(OneIn(3) ? " xmlns='u'" : "") + ">";
        const std::size_t depth = OneIn(3) ? kMaxElementDepth - 2 - Below(3) : Below(3);
        xml += Repeated("<List>", depth) + Rows() + Repeated("</List>", depth);
        xml += "<Files>" + Rows() + "</Files></r>";
        return xml;
    }

    void Edit(CXmlObject* document) {
        const std::string container = Of({"List", "Files", "Item", "List"});
        CRequest query(container.c_str(), AttributeName().c_str(), Text().c_str());
        for (std::size_t count = Below(4); count > 0; --count) {
            query.With(AttributeName().c_str(), Text().c_str());
        }
        switch (Below(5)) {
        case 0:
        case 1:
            if (query.m_nCount > 0) {
                WriteItem(document, &query);
            }
            break;
        case 2:
            query.Counting(0);
            WriteAttribute(document, &query);
            break;
        case 3:
            UpdateItem(document, &query);
            break;
        default:
            RemoveItems(document, &query.Counting(OneIn(8) ? 0 : query.m_nCount));
        }
    }

private:
    std::size_t Below(std::size_t count) { return m_random() % count; }
    bool OneIn(std::size_t count) { return Below(count) == 0; }
    std::string Of(std::initializer_list<const char*> texts) { return texts.begin()[Below(texts.size())]; }
    std::string AttributeName() { return Of({"a", "b", "c", "p:a", "q:a", "xmlns", "xmlns:q", "p", "q", "xml:lang"}); }
    std::string Text() { return Of({"", "1", " x", "x  y", "&", "\"", "\t", "\r\n", "x y", "u", "2", "<]]>"}); }

    std::string Rows() {
        std::string rows;
        for (std::size_t count = Below(4); count > 0; --count) {
            rows += "<" + Of({"i", "Item"}) + " a='" + Of({"", " x ", "&f;", "1"}) + "'";
            rows += OneIn(3) ? " xmlns:q='2' q:a='1'" : "";
            rows += OneIn(4) ? " p:a='2'" : "";
            rows += OneIn(5) ? "><b/></" : ">&e;</";
            const std::size_t start = rows.rfind('<', rows.rfind(" a='"));
            rows += rows.substr(start + 1, rows.find(' ', start) - start - 1) + ">";
        }
        return rows;
    }

    std::mt19937 m_random;
};

/// Compares two trees; the second may have more attributes, as the type declaration gives defaults to new items.
void ExpectSameTree(pugi::xml_node before, pugi::xml_node after, const std::string& xml) {
    std::vector<std::pair<pugi::xml_node, pugi::xml_node>> waiting{{before, after}};
    while (!waiting.empty()) {
        const auto [left, right] = waiting.back();
        waiting.pop_back();
        ASSERT_STREQ(left.name(), right.name()) << xml;
        ASSERT_STREQ(left.value(), right.value()) << xml;
        pugi::xml_attribute other = right.first_attribute();
        for (const pugi::xml_attribute attribute : left.attributes()) {
            ASSERT_STREQ(attribute.name(), other.name()) << xml;
            ASSERT_STREQ(attribute.value(), other.value()) << xml;
            other = other.next_attribute();
        }
        pugi::xml_node child = right.first_child();
        for (const pugi::xml_node leftChild : left.children()) {
            ASSERT_FALSE(child.empty()) << xml;
            waiting.emplace_back(leftChild, child);
            child = child.next_sibling();
        }
        ASSERT_TRUE(child.empty()) << xml;
    }
}

} // namespace

TEST_F(LoadAgain, RandomDocumentsHoldWhatTheyHeldWhateverWasEdited) {
    int loaded = 0;
    for (unsigned seed = 1; seed <= 2000; ++seed) {
        CRandomEdits random(seed);
        const std::string xml = random.Document();
        std::unique_ptr<CEngineDocument> document;
        try {
            document = std::make_unique<CEngineDocument>(xml);
        } catch (const std::runtime_error&) {
            continue; // not loaded, and so never saved
        }
        ++loaded;
        for (int edit = 0; edit < 12; ++edit) {
            random.Edit(&document->Object());
        }
        ASSERT_FALSE(Save(*document)) << xml;
        const auto again = DomDocument::Create();
        CReason reason;
        ASSERT_TRUE(again->Load(m_file.c_str(), &reason)) << reason.m_strWords.c_str() << "\n" << xml;
        const DomNode before = document->Object().m_pDom->FirstElementNamed("Files");
        ASSERT_NO_FATAL_FAILURE(
            ExpectSameTree(before.root().last_child(), again->FirstElementNamed("Files").root().last_child(), xml));
    }
    EXPECT_GT(loaded, 1000);
}
