// Reading texts of the user's language from the strings document.

#include "host_test.h"

#include <string>

class LanguageStrings : public HostTest {
protected:
    void OpenWithStrings(const std::string& containers) {
        OpenMain("<Main><Item ID=\"1\" Title=\"of main\"/></Main>", containers);
    }
};

TEST_F(LanguageStrings, AStringIsReadFromTheStringsDocument) {
    OpenWithStrings("<Main><Item Title=\"Storage manager\"/></Main>");
    EXPECT_EQ(GetXMLString("Main", "Title"), "Storage manager");
}

TEST_F(LanguageStrings, TheMainDocumentIsNotRead) {
    OpenWithStrings("");
    EXPECT_EQ(GetXMLString("Main", "Title"), "");
    EXPECT_EQ(GetXMLString1("Main", "ID", "1", "Title"), "1");
}

TEST_F(LanguageStrings, TheFilteredGetterReadsTheChildThatPasses) {
    OpenWithStrings("<ProjectFilter><Item ID=\"2\" Value=\"Macro\"/><Item ID=\"8\" Value=\"Form\"/></ProjectFilter>");
    EXPECT_EQ(GetXMLString1("ProjectFilter", "ID", "8", "Value"), "Form");
}

TEST_F(LanguageStrings, AMissReturnsTheEmptyString) {
    OpenWithStrings("<Main><Item Title=\"a\"/></Main>");
    EXPECT_EQ(GetXMLString("Main", "Caption"), "");
    EXPECT_EQ(GetXMLString("StringTable", "Title"), "");
}

TEST_F(LanguageStrings, AMissOfTheFilteredGetterReturnsItsFilterValue) {
    OpenWithStrings("<ProjectFilter><Item ID=\"2\" Value=\"Macro\"/></ProjectFilter>");
    EXPECT_EQ(GetXMLString1("ProjectFilter", "ID", "8", "Value"), "8");
    EXPECT_EQ(GetXMLString1("ProjectFilter", "ID", "2", "Text"), "2");
    EXPECT_EQ(GetXMLString1("Nowhere", "ID", "2", "Value"), "2");
}

TEST_F(LanguageStrings, TheFirstChildThatHasTheAttributeWins) {
    OpenWithStrings("<StringTable><Item A=\"1\"/><Item B=\"2\"/><Item A=\"3\" B=\"4\"/></StringTable>");
    EXPECT_EQ(GetXMLString("StringTable", "A"), "1");
    EXPECT_EQ(GetXMLString("StringTable", "B"), "2");
}

TEST_F(LanguageStrings, ACommentBeforeTheTextMakesTheReadMiss) {
    OpenWithStrings("<StringTable><!-- texts --><Item ID=\"1\" Text=\"a\"/></StringTable>");
    EXPECT_EQ(GetXMLString("StringTable", "Text"), "");
    EXPECT_EQ(GetXMLString1("StringTable", "ID", "1", "Text"), "1");
}

TEST_F(LanguageStrings, APrinterDocumentDoesNotReplaceTheStringsDocument) {
    OpenWithStrings("<Main><Item ID=\"1\" Title=\"of strings\"/></Main>");
    OpenPrinterWith("printer.xml", "<Main><Item ID=\"1\" Title=\"of the printer\"/></Main>");
    EXPECT_EQ(GetXMLString("Main", "Title"), "of strings");
    EXPECT_EQ(GetXMLString1("Main", "ID", "1", "Title"), "of strings");
    EXPECT_EQ(GetAttrValue("Main", "Title"), "of the printer");
}

TEST_F(LanguageStrings, StringsAreReadWithoutACurrentDocument) {
    OpenWithStrings("<Main><Item Title=\"of strings\"/></Main>");
    OpenPrinter("missing.xml");
    EXPECT_EQ(GetXMLString("Main", "Title"), "of strings");
}

TEST_F(LanguageStrings, AMissingStringsDocumentMakesEveryReadMiss) {
    InstallMain(Document("<Main><Item ID=\"1\" Title=\"of main\"/></Main>"));
    Open("English");
    EXPECT_EQ(GetXMLString("Main", "Title"), "");
    EXPECT_EQ(GetXMLString1("Main", "ID", "1", "Title"), "1");
}

TEST_F(LanguageStrings, AnotherLanguageDoesNotStepIn) {
    InstallStrings("English", Document("<Main><Item Title=\"English\" Help=\"Help\"/></Main>"));
    InstallStrings("Deutsch", Document("<Main><Item Title=\"Deutsch\"/></Main>"));
    Open("English");
    EXPECT_EQ(GetXMLString("Main", "Title"), "English");
    Open("Deutsch");
    EXPECT_EQ(GetXMLString("Main", "Title"), "Deutsch");
    EXPECT_EQ(GetXMLString("Main", "Help"), "");
    EXPECT_EQ(Open("Italiano"), nullptr);
    EXPECT_EQ(GetXMLString("Main", "Title"), "");
}

TEST_F(LanguageStrings, WritersDoNotTouchTheStringsDocument) {
    OpenWithStrings("<Main><Item Title=\"of strings\"/></Main>");
    WriteAttr("Main", "Title", "written");
    DelAllElem("Main");
    EXPECT_EQ(GetXMLString("Main", "Title"), "of strings");
}
