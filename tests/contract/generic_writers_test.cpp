// WriteAttr and DelAllElem: what they answer, what they remove, and that they save whatever happened.

#include "saving_host_test.h"

#include <string>

class GenericWriters : public SavingHostTest {};

TEST_F(GenericWriters, WriteAttrAlwaysReturns1) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    EXPECT_EQ(WriteAttr("List", "Value", "b"), 1u);
    EXPECT_EQ(WriteAttr("List", "Missing", "b"), 1u);
    EXPECT_EQ(WriteAttr("Nowhere", "Value", "b"), 1u);
    EXPECT_EQ(WriteAttr("", "", ""), 1u);
    EXPECT_EQ(WriteAttr(nullptr, nullptr, nullptr), 1u);
}

TEST_F(GenericWriters, WriteAttrSavesWhatItWrote) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    WriteAttr("List", "Value", "b");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Value", "b"}}}));
}

TEST_F(GenericWriters, WriteAttrSavesAlsoWhenNothingWasWritten) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    EXPECT_TRUE(Saves([] { WriteAttr("List", "Missing", "b"); }));
    EXPECT_TRUE(Saves([] { WriteAttr("Nowhere", "Value", "b"); }));
    EXPECT_TRUE(Saves([] { WriteAttr("List", "Value", "\x01"); }));
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Value", "a"}}}));
}

TEST_F(GenericWriters, NamesThatAreNoNamesWriteNothing) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    for (const char* const name : {"*", "Li st", "Value=\"b\"", "<Value/>", "x:", "1", "V\x01"}) {
        EXPECT_TRUE(Saves([name] { EXPECT_EQ(WriteAttr("List", name, "b"), 1u); })) << name;
        EXPECT_TRUE(Saves([name] { EXPECT_EQ(WriteAttr(name, "Value", "b"), 1u); })) << name;
        EXPECT_TRUE(Saves([name] { EXPECT_EQ(DelAllElem(name), 0u); })) << name;
    }
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Value", "a"}}}));
}

TEST_F(GenericWriters, DelAllElemRemovesEveryChild) {
    OpenMain("<List><Item ID=\"1\"/><Other/><Item ID=\"2\"><Deep/></Item></List>");
    EXPECT_EQ(DelAllElem("List"), 1u);
    EXPECT_EQ(GetAttrValue("List", "ID"), "");
    EXPECT_EQ(SavedItems("List"), Records{});
}

TEST_F(GenericWriters, DelAllElemKeepsTheContainerAndItsAttributes) {
    OpenMain("<List Own=\"1\"><Item/></List><Next/>");
    DelAllElem("List");
    EXPECT_EQ(FindBelow(SavedMain(), "List")->attributes, (Record{{"Own", "1"}}));
    EXPECT_EQ(SavedMain().children.size(), 2u);
}

TEST_F(GenericWriters, DelAllElemRemovesWhatHasNoAttributesToo) {
    OpenMain("<List><!-- note --><Item ID=\"1\"/>text<?p i?><![CDATA[a]]></List>");
    EXPECT_EQ(DelAllElem("List"), 1u);
    const std::string saved = UserMainText();
    for (const char* const part : {"note", "text", "<?p", "CDATA", "Item"}) {
        EXPECT_EQ(saved.find(part), std::string::npos) << part;
    }
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"ID", "1"}, {"Value", "a"}}})) << "nothing is in the way any more";
}

TEST_F(GenericWriters, DelAllElemCountsACommentAsRemoved) {
    OpenMain("<List><!-- note --></List>");
    EXPECT_EQ(DelAllElem("List"), 1u);
    EXPECT_EQ(DelAllElem("List"), 0u);
}

TEST_F(GenericWriters, DelAllElemReturns0WhenThereIsNothingToRemove) {
    OpenMain("<Empty/><Blank> \n </Blank>");
    EXPECT_EQ(DelAllElem("Empty"), 0u);
    EXPECT_EQ(DelAllElem("Blank"), 0u);
    EXPECT_EQ(DelAllElem("Nowhere"), 0u);
    EXPECT_EQ(DelAllElem(""), 0u);
}

TEST_F(GenericWriters, DelAllElemSavesAlsoWhenNothingWasRemoved) {
    OpenMain("<Empty/>");
    EXPECT_TRUE(Saves([] { DelAllElem("Empty"); }));
    EXPECT_TRUE(Saves([] { DelAllElem("Nowhere"); }));
}

TEST_F(GenericWriters, DelAllElemEmptiesOnlyTheFirstContainerOfTheName) {
    OpenMain("<List><Item ID=\"1\"/></List><Second><List><Item ID=\"2\"/></List></Second>");
    EXPECT_EQ(DelAllElem("List"), 1u);
    EXPECT_EQ(SavedItems("List"), Records{});
    EXPECT_EQ(RecordsBelow(*FindBelow(SavedMain(), "Second"), "List"), (Records{Record{{"ID", "2"}}}));
    EXPECT_EQ(DelAllElem("List"), 0u) << "the empty first container still comes first";
}

TEST_F(GenericWriters, DelAllElemDoesNotTakeTheDocumentElement) {
    OpenMain("<List><Item/></List>");
    EXPECT_EQ(DelAllElem("Cordelbox"), 0u);
    EXPECT_EQ(SavedMain().children.size(), 1u);
}

TEST_F(GenericWriters, DelAllElemTakesAContainerOfTheSameNameWithin) {
    OpenMain("<List><List><Item ID=\"1\"/></List></List>");
    EXPECT_EQ(DelAllElem("List"), 1u);
    EXPECT_EQ(SavedItems("List"), Records{});
    EXPECT_EQ(DelAllElem("List"), 0u);
}

TEST_F(GenericWriters, AContainerThatWasRemovedIsNotTheFirstOfItsNameAnyMore) {
    // With children of its own and without; it was looked at before it went.
    for (const char* const first : {"<List/>", "<List></List>", "<List><Item Value='a'/></List>"}) {
        OpenMain("<Outer><Other/>" + std::string(first) + "</Outer><List><Item Value='b'/></List>");
        EXPECT_NE(GetAttrValue("List", "Value"), "b");
        DelAllElem("Outer");
        EXPECT_EQ(GetAttrValue("List", "Value"), "b") << first;
        WriteTestFileName("List", "1", "added");
        EXPECT_EQ(SavedItems("List").size(), 2u) << first;
        CloseAll();
    }
}

TEST_F(GenericWriters, AContainerThatWasRemovedAndHasNoOtherOfItsNameIsGone) {
    OpenMain("<Outer><List/></Outer>");
    EXPECT_EQ(GetAttrValue("List", "Value"), "");
    DelAllElem("Outer");
    WriteTestFileName("List", "1", "lost");
    EXPECT_EQ(GetAttrValue("List", "Value"), "");
    EXPECT_EQ(DelAllElem("List"), 0u);
}

TEST_F(GenericWriters, WithoutACurrentDocumentNothingIsWrittenOrSaved) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    OpenPrinter("missing.xml");
    EXPECT_FALSE(Saves([] { EXPECT_EQ(WriteAttr("List", "Value", "b"), 1u); }));
    EXPECT_FALSE(Saves([] { EXPECT_EQ(DelAllElem("List"), 0u); }));
}

TEST_F(GenericWriters, BothWorkOnThePrinterDocumentThatIsCurrent) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    OpenPrinterWith("printer.xml", "<List><Item Value=\"a\"/></List><Other><Item/></Other>");
    WriteAttr("List", "Value", "b");
    EXPECT_EQ(DelAllElem("Other"), 1u);
    EXPECT_EQ(SavedPrinterItems("printer.xml", "List"), (Records{Record{{"Value", "b"}}}));
    EXPECT_EQ(SavedPrinterItems("printer.xml", "Other"), Records{});
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Value", "a"}}}));
}
