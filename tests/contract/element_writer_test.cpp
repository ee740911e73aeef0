// Adding items to a container (WriteTestFileName writes the pairs "ID" and "Value", WriteFreeVolume four pairs).

#include "saving_host_test.h"

#include <string>

class ElementWriter : public SavingHostTest {
protected:
    /// The children of "List" after an item with ID "1" and this value was written.
    Records Written(const std::string& children, const char* value = "a") {
        OpenMain("<List>" + children + "</List>");
        WriteTestFileName("List", "1", value);
        CloseAll();
        return SavedItems("List");
    }

    const Record m_item{{"ID", "1"}, {"Value", "a"}};
};

TEST_F(ElementWriter, AnItemIsAddedToAnEmptyContainer) { EXPECT_EQ(Written(""), Records{m_item}); }

TEST_F(ElementWriter, TheNewChildIsNamedItemAndHasNoChildren) {
    Written("");
    const SavedElement document = SavedMain();
    const SavedElement* const list = FindBelow(document, "List");
    ASSERT_NE(list, nullptr);
    ASSERT_EQ(list->children.size(), 1u);
    EXPECT_EQ(list->children[0].name, "Item");
    EXPECT_TRUE(list->children[0].children.empty());
}

TEST_F(ElementWriter, TheNewChildIsTheLastOne) {
    EXPECT_EQ(Written("<Item ID=\"5\"/><Other/>"), (Records{Record{{"ID", "5"}}, Record{}, m_item}));
}

TEST_F(ElementWriter, AttributesAreWrittenInTheOrderOfThePairs) {
    OpenMain("<SendProject/>");
    const SendSpaceRecord record{"Disk", "10", "100", "90"};
    WriteFreeVolume(&record, 1);
    EXPECT_EQ(
        SavedItems("SendProject"),
        (Records{Record{{"Volume", "Disk"}, {"FilesSize", "10"}, {"FreeSpace", "100"}, {"FreeSpaceAfterSend", "90"}}}));
}

TEST_F(ElementWriter, AnEqualItemIsNotAddedAgain) {
    OpenMain("<List/>");
    WriteTestFileName("List", "1", "a");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("List"), Records{m_item});
}

TEST_F(ElementWriter, AChildWithMoreAttributesIsEqual) {
    const Records children{Record{{"Path", "p"}, {"ID", "1"}, {"Size", "2"}, {"Value", "a"}}};
    EXPECT_EQ(Written("<Item Path=\"p\" ID=\"1\" Size=\"2\" Value=\"a\"/>"), children);
}

TEST_F(ElementWriter, AChildOfAnotherNameIsEqual) {
    EXPECT_EQ(Written("<Font Value=\"a\" ID=\"1\"/>"), (Records{Record{{"Value", "a"}, {"ID", "1"}}}));
}

TEST_F(ElementWriter, AnEqualChildAmongOthersIsEnough) {
    EXPECT_EQ(Written("<Item ID=\"0\"/><Item ID=\"1\" Value=\"a\"/><Item ID=\"2\"/>").size(), 3u);
}

TEST_F(ElementWriter, AChildWithAnotherValueIsNotEqual) {
    EXPECT_EQ(Written("<Item ID=\"1\" Value=\"b\"/>"), (Records{Record{{"ID", "1"}, {"Value", "b"}}, m_item}));
}

TEST_F(ElementWriter, AChildWithOnlyOneOfThePairsIsNotEqual) {
    EXPECT_EQ(Written("<Item ID=\"1\"/><Item Value=\"a\"/>").size(), 3u);
}

TEST_F(ElementWriter, LetterCaseCounts) {
    EXPECT_EQ(Written("<Item ID=\"1\" Value=\"A\"/><Item id=\"1\" Value=\"a\"/>").size(), 3u);
}

TEST_F(ElementWriter, ValuesAreNotComparedAsNumbers) {
    EXPECT_EQ(Written("<Item ID=\"01\" Value=\"a\"/><Item ID=\" 1\" Value=\"a\"/>").size(), 3u);
}

TEST_F(ElementWriter, PrefixesDoNotCountInTheComparison) {
    EXPECT_EQ(Written("<Item xmlns:x=\"urn:x\" x:ID=\"1\" x:Value=\"a\"/>").size(), 1u);
}

TEST_F(ElementWriter, AttributesAreCountedNotPairs) {
    EXPECT_EQ(Written("<Item xmlns:x=\"urn:x\" x:ID=\"1\" ID=\"1\"/>").size(), 1u)
        << "two attributes equal one pair each, which makes as many hits as there are pairs";
}

TEST_F(ElementWriter, TheValueOfOnePairDoesNotEqualTheNameOfAnother) {
    EXPECT_EQ(Written("<Item ID=\"a\" Value=\"1\"/>").size(), 2u);
}

TEST_F(ElementWriter, EmptyValuesAreWritten) {
    OpenMain("<List/>");
    WriteTestFileName("List", "", "");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"ID", ""}, {"Value", ""}}}));
    WriteTestFileName("List", nullptr, nullptr);
    EXPECT_EQ(SavedItems("List").size(), 1u) << "a null text is the empty one";
}

TEST_F(ElementWriter, AnItemWithSpecialCharactersIsNotAddedAgainAfterReopening) {
    const char* const value = "<\"a\" & 'b'>\t\r\n ]]>";
    OpenMain("<List/>");
    WriteTestFileName("List", "1", value);
    WriteTestFileName("List", "1", value);
    CloseAll();
    Open();
    WriteTestFileName("List", "1", value);
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"ID", "1"}, {"Value", value}}}));
}

TEST_F(ElementWriter, OnlyTheFirstContainerOfTheNameIsWritten) {
    OpenMain("<List><Item ID=\"5\"/></List><Second><List/></Second>");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"ID", "5"}}, m_item}));
    EXPECT_EQ(RecordsBelow(*FindBelow(SavedMain(), "Second"), "List"), Records{});
}

TEST_F(ElementWriter, AnEqualItemInTheSecondContainerDoesNotCount) {
    OpenMain("<List/><Second><List><Item ID=\"1\" Value=\"a\"/></List></Second>");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("List"), Records{m_item});
}

TEST_F(ElementWriter, AContainerInAnItemIsWrittenWhenItComesFirst) {
    OpenMain("<Outer><Item Name=\"o\"><List/></Item></Outer><Second><List/></Second>");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(RecordsBelow(*FindBelow(SavedMain(), "Outer"), "List"), Records{m_item});
    EXPECT_EQ(RecordsBelow(*FindBelow(SavedMain(), "Second"), "List"), Records{});
}

TEST_F(ElementWriter, TheDocumentElementIsNotItsOwnContainer) {
    OpenMain("<List/>");
    EXPECT_TRUE(Saves([] { WriteTestFileName("Cordelbox", "1", "a"); }));
    ASSERT_EQ(SavedMain().children.size(), 1u);
    EXPECT_EQ(SavedMain().children[0].name, "List");
}

TEST_F(ElementWriter, WithoutTheContainerNothingIsWrittenButSaved) {
    OpenMain("<List/>");
    EXPECT_TRUE(Saves([] { WriteTestFileName("Nowhere", "1", "a"); }));
    EXPECT_TRUE(Saves([] { WriteTestFileName("", "1", "a"); }));
    EXPECT_TRUE(Saves([] { WriteTestFileName("*", "1", "a"); }));
    EXPECT_EQ(SavedItems("List"), Records{});
    EXPECT_EQ(SavedMain().children.size(), 1u);
}

TEST_F(ElementWriter, AnEqualItemIsSavedAllTheSame) {
    OpenMain("<List><Item ID=\"1\" Value=\"a\"/></List>");
    EXPECT_TRUE(Saves([] { WriteTestFileName("List", "1", "a"); }));
}

TEST_F(ElementWriter, ACommentAmongTheChildrenKeepsTheItemOut) {
    EXPECT_EQ(Written("<!-- first --><Item ID=\"5\"/>"), (Records{Record{{"ID", "5"}}}));
    EXPECT_EQ(Written("<Item ID=\"5\"/><!-- last -->"), (Records{Record{{"ID", "5"}}}));
    EXPECT_EQ(Written("<!-- alone -->"), Records{});
}

TEST_F(ElementWriter, TextAmongTheChildrenKeepsTheItemOut) { EXPECT_EQ(Written("text"), Records{}); }

TEST_F(ElementWriter, AProcessingInstructionAmongTheChildrenKeepsTheItemOut) {
    EXPECT_EQ(Written("<?p i?>"), Records{});
}

TEST_F(ElementWriter, ACdataSectionAmongTheChildrenKeepsTheItemOut) { EXPECT_EQ(Written("<![CDATA[a]]>"), Records{}); }

TEST_F(ElementWriter, BlanksInTheContainerDoNotKeepTheItemOut) { EXPECT_EQ(Written(" \n\t "), Records{m_item}); }

TEST_F(ElementWriter, AValueThatXmlCannotHoldKeepsTheWholeItemOut) { EXPECT_EQ(Written("", "a\x02"), Records{}); }

TEST_F(ElementWriter, TheItemIsWrittenToTheCurrentDocumentOnly) {
    OpenMain("<List/>");
    OpenPrinterWith("printer.xml", "<List/>");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedPrinterItems("printer.xml", "List"), Records{m_item});
    EXPECT_EQ(UserMainText(), Document("<List/>"));
}

TEST_F(ElementWriter, WithoutACurrentDocumentNothingIsWritten) {
    OpenMain("<List/>");
    OpenPrinter("missing.xml");
    EXPECT_FALSE(Saves([] { WriteTestFileName("List", "1", "a"); }));
}

// What other writers changed is what the next item is compared with.

TEST_F(ElementWriter, AnItemWhoseValueWasChangedIsAddedAgain) {
    OpenMain("<List/>");
    WriteTestFileName("List", "1", "a");
    WriteAttr("List", "Value", "b");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"ID", "1"}, {"Value", "b"}}, m_item}));
}

TEST_F(ElementWriter, AnItemThatWasChangedToTheSameValuesIsEqual) {
    OpenMain("<List/>");
    WriteTestFileName("List", "1", "b");
    WriteAttr("List", "Value", "a");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("List"), Records{m_item});
}

TEST_F(ElementWriter, AnItemIsAddedAgainAfterItsRemoval) {
    OpenMain("<List/>");
    WriteTestFileName("List", "1", "a");
    DelAllElem("List");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("List"), Records{m_item});
}

TEST_F(ElementWriter, AContainerThatWentWithItsItemIsNoLongerWritten) {
    OpenMain("<Outer><Item><List/></Item></Outer><List/>");
    WriteTestFileName("List", "1", "inner");
    DelAllElem("Outer");
    WriteTestFileName("List", "1", "a");
    EXPECT_EQ(SavedItems("Outer"), Records{});
    EXPECT_EQ(SavedItems("List"), Records{m_item});
}

TEST_F(ElementWriter, AContainerNamedItemTakesItsOwnItems) {
    OpenMain("<Item/><Other/>");
    WriteTestFileName("Item", "1", "a");
    WriteTestFileName("Item", "2", "b");
    EXPECT_EQ(SavedItems("Item"), (Records{m_item, Record{{"ID", "2"}, {"Value", "b"}}}));
}

TEST_F(ElementWriter, HundredsOfItemsKeepTheirOrder) {
    OpenMain("<List/>");
    Records expected;
    for (int i = 0; i < 200; ++i) {
        const std::string id = std::to_string(i);
        WriteTestFileName("List", id.c_str(), "v");
        expected.push_back(Record{{"ID", id}, {"Value", "v"}});
    }
    EXPECT_EQ(SavedItems("List"), expected);
}
