// What a host saved opens again, at the limits of what a document may be: whatever is refused, on either target.

#include "host_test.h"

#include <string>

namespace {

std::string Repeated(const std::string& text, int times) {
    std::string repeated;
    for (int time = 0; time < times; ++time) {
        repeated += text;
    }
    return repeated;
}

} // namespace

class SavedAndLoaded : public HostTest {
protected:
    /// Opens the text as the main document, with a per-user copy. Whether it is a document.
    bool OpenText(const std::string& xml) {
        CloseAll();
        CopyMainForUser(xml);
        InstallStrings("English", "<Cordelbox/>");
        return Open() != nullptr && !std::string(GetAttrValue("Info", "Name").c_str()).empty();
    }

    /// Opens anew what was saved, and expects a document with the same value.
    void ExpectSame(const char* element, const char* attribute) {
        const std::string before = GetAttrValue(element, attribute).c_str();
        CloseAll();
        Open();
        ASSERT_NE(std::string(GetAttrValue("Info", "Name").c_str()), "") << "the document does not open again";
        EXPECT_EQ(std::string(GetAttrValue(element, attribute).c_str()), before);
    }
};

TEST_F(SavedAndLoaded, AnItemInTheDeepestContainer) {
    int opened = 0;
    for (const int depth : {100, 254, 255, 256, 257, 998, 999, 1000}) {
        if (OpenText("<Cordelbox><Info><Item Name=\"deep\"/></Info>" + Repeated("<a>", depth - 2) + "<List/>" +
                     Repeated("</a>", depth - 2) + "</Cordelbox>")) {
            ++opened;
            WriteTestFileName("List", "1", "2"); // written or not, later changes are saved
            WriteAttr("Info", "Name", "saved");
            ASSERT_NO_FATAL_FAILURE(ExpectSame("Info", "Name")) << depth;
        }
    }
    EXPECT_GE(opened, 3);
}

TEST_F(SavedAndLoaded, AValueOfManyMegabytes) {
    for (const int megabytes : {1, 9, 12}) {
        ASSERT_TRUE(OpenText(Document("<Info><Item Name=\"first\"/></Info><Long><Item Text=\"\"/></Long>")));
        WriteAttr("Long", "Text", std::string(static_cast<std::size_t>(megabytes) << 20, 'v').c_str());
        CloseAll();
        Open();
        EXPECT_EQ(GetAttrValue("Info", "Name"), "first") << megabytes;
        WriteAttr("Info", "Name", "second");
        ExpectSame("Info", "Name");
    }
}

TEST_F(SavedAndLoaded, BlanksInAnAttributeThatIsDeclaredToHoldTokens) {
    for (const char* const value : {" a", "a ", "a  b", " ", "a b", "ab"}) {
        ASSERT_TRUE(OpenText("<!DOCTYPE Cordelbox [<!ATTLIST Item Name NMTOKENS #IMPLIED>]>"
                             "<Cordelbox><Info><Item Name=\"first\"/></Info></Cordelbox>"));
        WriteAttr("Info", "Name", value);
        ExpectSame("Info", "Name");
    }
}

TEST_F(SavedAndLoaded, AnItemWhereADefaultNamespaceIsDeclared) {
    ASSERT_TRUE(OpenText("<Cordelbox xmlns=\"u\"><Info><Item Name=\"first\"/></Info><List/></Cordelbox>"));
    WriteTestFileName("List", "1", "2");
    EXPECT_EQ(GetAttrValue("List", "Value"), "2");
    ExpectSame("List", "Value");
}

TEST_F(SavedAndLoaded, ADeclarationOfANamespaceThatAHostOverwrites) {
    for (const char* const value : {"", "v", "w", "http://www.w3.org/2000/xmlns/"}) {
        ASSERT_TRUE(OpenText("<Cordelbox xmlns:q=\"v\"><Info><Item Name=\"first\"/></Info>"
                             "<List><Item xmlns:p=\"u\" p:a=\"1\" q:a=\"2\"/></List></Cordelbox>"));
        WriteAttr("List", "p", value);
        ExpectSame("List", "a");
    }
}

TEST_F(SavedAndLoaded, ReferencesThatAreNotReadStayOrKeepTheDocumentClosed) {
    for (const char* const type : {"[<!ENTITY out SYSTEM \"out.xml\">]", "SYSTEM \"out.dtd\""}) {
        if (OpenText("<!DOCTYPE Cordelbox " + std::string(type) +
                     "><Cordelbox><Info><Item Name=\"first\"/></Info><Text>before&out;behind</Text></Cordelbox>")) {
            WriteAttr("Info", "Name", "second");
            ExpectSame("Info", "Name");
            EXPECT_NE(ReadFile(UserMainPath()).find("before&out;behind"), std::string::npos);
        }
    }
}
