// Overwriting one attribute of one child: unfiltered through WriteAttr, filtered by "Partition" through CopyPatition.

#include "saving_host_test.h"

#include <string>

class AttributeWriter : public SavingHostTest {
protected:
    /// The children of "List" after "Value" was overwritten by "new".
    Records Overwritten(const std::string& children) {
        OpenMain("<List>" + children + "</List>");
        EXPECT_EQ(WriteAttr("List", "Value", "new"), 1u);
        CloseAll();
        return SavedItems("List");
    }

    /// The children of "DefaultDisk" after the image of partition P1, "new", was copied there.
    Records ImageCopied(const std::string& defaults) {
        OpenMain("<CurrentChosePartition><Item Name=\"P1\"/></CurrentChosePartition>"
                 "<CurrentDisk><Item Image=\"new\" Partition=\"P1\"/></CurrentDisk>"
                 "<DefaultDisk>" +
                 defaults + "</DefaultDisk>");
        CopyPatition(0);
        CloseAll();
        return SavedItems("DefaultDisk");
    }
};

TEST_F(AttributeWriter, TheFirstChildThatHasTheAttributeIsChanged) {
    EXPECT_EQ(
        Overwritten("<Item ID=\"1\"/><Item ID=\"2\" Value=\"a\"/><Item ID=\"3\" Value=\"b\"/>"),
        (Records{Record{{"ID", "1"}}, Record{{"ID", "2"}, {"Value", "new"}}, Record{{"ID", "3"}, {"Value", "b"}}}));
}

TEST_F(AttributeWriter, TheAttributeKeepsItsPlace) {
    EXPECT_EQ(Overwritten("<Item B=\"1\" Value=\"a\" A=\"2\"/>"),
              (Records{Record{{"B", "1"}, {"Value", "new"}, {"A", "2"}}}));
}

TEST_F(AttributeWriter, AnAttributeIsNeverCreated) {
    EXPECT_EQ(Overwritten("<Item ID=\"1\"/><Item/>"), (Records{Record{{"ID", "1"}}, Record{}}));
    EXPECT_EQ(Overwritten(""), Records{});
}

TEST_F(AttributeWriter, LetterCaseCounts) {
    EXPECT_EQ(Overwritten("<Item value=\"a\" VALUE=\"b\"/>"), (Records{Record{{"value", "a"}, {"VALUE", "b"}}}));
}

TEST_F(AttributeWriter, ThePrefixOfTheAttributeIsIgnoredAndKept) {
    OpenMain("<List xmlns:x=\"urn:x\"><Item x:Value=\"a\" Value=\"b\"/></List>");
    WriteAttr("List", "Value", "new");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"x:Value", "new"}, {"Value", "b"}}}));
}

TEST_F(AttributeWriter, AnEmptyValueIsWritten) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    WriteAttr("List", "Value", "");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Value", ""}}}));
}

TEST_F(AttributeWriter, TheSameValueMayBeWrittenAgain) {
    OpenMain("<List><Item Value=\"a\"/></List>");
    EXPECT_TRUE(Saves([] { EXPECT_EQ(WriteAttr("List", "Value", "a"), 1u); }));
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Value", "a"}}}));
}

TEST_F(AttributeWriter, OnlyTheFirstContainerOfTheNameIsWritten) {
    OpenMain("<List><Item ID=\"1\"/></List><Second><List><Item Value=\"a\"/></List></Second>");
    WriteAttr("List", "Value", "new");
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"ID", "1"}}}));
    EXPECT_EQ(RecordsBelow(*FindBelow(SavedMain(), "Second"), "List"), (Records{Record{{"Value", "a"}}}));
}

TEST_F(AttributeWriter, TheContainersOwnAttributesAreNotWritten) {
    OpenMain("<List Value=\"own\"><Item/></List>");
    WriteAttr("List", "Value", "new");
    EXPECT_EQ(FindBelow(SavedMain(), "List")->attributes, (Record{{"Value", "own"}}));
}

TEST_F(AttributeWriter, ACommentBeforeTheChildKeepsTheValueOut) {
    EXPECT_EQ(Overwritten("<!-- note --><Item Value=\"a\"/>"), (Records{Record{{"Value", "a"}}}));
}

TEST_F(AttributeWriter, ACommentBehindTheChildDoesNotMatter) {
    EXPECT_EQ(Overwritten("<Item Value=\"a\"/><!-- note -->"), (Records{Record{{"Value", "new"}}}));
}

TEST_F(AttributeWriter, AnAttributeByDefaultOfTheDocumentCanBeOverwritten) {
    if (HasDomOfWine()) {
        GTEST_SKIP() << "Wine's DOM knows no defaults of attributes";
    }
    CopyMainForUser("<!DOCTYPE Cordelbox [<!ATTLIST Item Value CDATA \"default\">]>"
                    "<Cordelbox><List><Item/></List></Cordelbox>");
    Open();
    WriteAttr("List", "Value", "new");
    CloseAll();
    Open();
    EXPECT_EQ(GetAttrValue("List", "Value"), "new");
}

TEST_F(AttributeWriter, AValueThatXmlCannotHoldLeavesTheOldOne) {
    OpenMain("<List><Item Value=\"a\"/><Item Value=\"b\"/></List>");
    EXPECT_EQ(WriteAttr("List", "Value", "\x1F"), 1u);
    EXPECT_EQ(SavedItems("List"), (Records{Record{{"Value", "a"}}, Record{{"Value", "b"}}}));
}

// With a filter.

TEST_F(AttributeWriter, OnlyTheFirstOfTwoChildrenThatPassIsChanged) {
    EXPECT_EQ(ImageCopied("<Item Image=\"1\" Partition=\"P1\"/><Item Image=\"2\" Partition=\"P1\"/>"),
              (Records{Record{{"Image", "new"}, {"Partition", "P1"}}, Record{{"Image", "2"}, {"Partition", "P1"}}}));
}

TEST_F(AttributeWriter, AChildThatPassesWithoutTheAttributeIsPassedOver) {
    EXPECT_EQ(ImageCopied("<Item Partition=\"P1\"/><Item Image=\"2\" Partition=\"P1\"/>"),
              (Records{Record{{"Partition", "P1"}}, Record{{"Image", "new"}, {"Partition", "P1"}}}));
}

TEST_F(AttributeWriter, AChildThatDoesNotPassIsNeverChanged) {
    const Records unchanged{Record{{"Image", "1"}, {"Partition", "P2"}}, Record{{"Image", "2"}, {"Partition", "p1"}},
                            Record{{"Image", "3"}}};
    EXPECT_EQ(
        ImageCopied("<Item Image=\"1\" Partition=\"P2\"/><Item Image=\"2\" Partition=\"p1\"/><Item Image=\"3\"/>"),
        unchanged);
}

TEST_F(AttributeWriter, AChildBehindOthersThatDoNotPassIsChanged) {
    EXPECT_EQ(ImageCopied("<Item Image=\"1\" Partition=\"P2\"/><Item/><Item Image=\"2\" Partition=\"P1\"/>"),
              (Records{Record{{"Image", "1"}, {"Partition", "P2"}}, Record{},
                       Record{{"Image", "new"}, {"Partition", "P1"}}}));
}

TEST_F(AttributeWriter, ACommentBeforeTheChildThatPassesKeepsTheValueOut) {
    EXPECT_EQ(ImageCopied("<Item Image=\"1\" Partition=\"P2\"/><!-- note --><Item Image=\"2\" Partition=\"P1\"/>"),
              (Records{Record{{"Image", "1"}, {"Partition", "P2"}}, Record{{"Image", "2"}, {"Partition", "P1"}}}));
}
