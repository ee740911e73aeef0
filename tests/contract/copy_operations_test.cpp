// CopyProperty copies one attribute between two containers, CopyElement the first four of every child with a key.

#include "saving_host_test.h"

#include <string>

class CopyOperations : public SavingHostTest {
protected:
    void OpenWith(const std::string& source, const std::string& target) {
        OpenMain("<Source>" + source + "</Source><Target>" + target + "</Target>");
    }

    /// The children of "Target" after CopyProperty of "Value".
    Records PropertyCopied(const std::string& source, const std::string& target) {
        OpenWith(source, target);
        EXPECT_EQ(CopyProperty("Source", "Target", "Value"), 1u);
        CloseAll();
        return SavedItems("Target");
    }

    /// The children of "Target" after CopyElement by "Key".
    Records ElementsCopied(const std::string& source, const std::string& target) {
        OpenWith(source, target);
        EXPECT_EQ(CopyElement("Source", "Target", "Key"), 1u);
        CloseAll();
        return SavedItems("Target");
    }
};

TEST_F(CopyOperations, APropertyIsCopiedFromTheFirstChildThatHasItToTheFirstThatHasIt) {
    EXPECT_EQ(PropertyCopied("<Item/><Item Value=\"a\"/><Item Value=\"b\"/>",
                             "<Item ID=\"1\"/><Item Value=\"\" ID=\"2\"/><Item Value=\"c\"/>"),
              (Records{Record{{"ID", "1"}}, Record{{"Value", "a"}, {"ID", "2"}}, Record{{"Value", "c"}}}));
}

TEST_F(CopyOperations, ASourceThatDoesNotExistBlanksTheTarget) {
    EXPECT_EQ(PropertyCopied("<Item ID=\"1\"/>", "<Item Value=\"kept?\"/>"), (Records{Record{{"Value", ""}}}));
}

TEST_F(CopyOperations, ASourceContainerThatDoesNotExistBlanksTheTarget) {
    OpenWith("", "<Item Value=\"kept?\"/>");
    CopyProperty("Nowhere", "Target", "Value");
    EXPECT_EQ(SavedItems("Target"), (Records{Record{{"Value", ""}}}));
}

TEST_F(CopyOperations, ASourceBehindACommentBlanksTheTarget) {
    EXPECT_EQ(PropertyCopied("<!-- note --><Item Value=\"a\"/>", "<Item Value=\"kept?\"/>"),
              (Records{Record{{"Value", ""}}}));
}

TEST_F(CopyOperations, ATargetWithoutThePropertyStaysAsItIs) {
    EXPECT_EQ(PropertyCopied("<Item Value=\"a\"/>", "<Item ID=\"1\"/>"), (Records{Record{{"ID", "1"}}}));
    OpenWith("<Item Value=\"a\"/>", "<Item ID=\"1\"/>");
    EXPECT_TRUE(Saves([] { EXPECT_EQ(CopyProperty("Source", "Target", "Value"), 1u); }));
    EXPECT_TRUE(Saves([] { EXPECT_EQ(CopyProperty("Source", "Nowhere", "Value"), 1u); }));
}

TEST_F(CopyOperations, APropertyMayBeCopiedOntoItself) {
    OpenWith("<Item ID=\"1\"/><Item Value=\"a\"/>", "");
    EXPECT_TRUE(Saves([] { EXPECT_EQ(CopyProperty("Source", "Source", "Value"), 1u); }));
    EXPECT_EQ(SavedItems("Source"), (Records{Record{{"ID", "1"}}, Record{{"Value", "a"}}}));
}

TEST_F(CopyOperations, ThePropertyOfTheSourceStaysAsItIs) {
    PropertyCopied("<Item Value=\"a\"/>", "<Item Value=\"b\"/>");
    EXPECT_EQ(SavedItems("Source"), (Records{Record{{"Value", "a"}}}));
}

TEST_F(CopyOperations, ValuesAreCopiedWithEveryCharacter) {
    EXPECT_EQ(PropertyCopied("<Item Value=\"&lt;&amp;&quot;&#10;&#9;&#13; '\"/>", "<Item Value=\"\"/>"),
              (Records{Record{{"Value", "<&\"\n\t\r '"}}}));
}

TEST_F(CopyOperations, NullTextsOfCopyPropertyCountAsEmpty) {
    OpenWith("<Item Value=\"a\"/>", "<Item Value=\"b\"/>");
    EXPECT_TRUE(Saves([] { EXPECT_EQ(CopyProperty(nullptr, nullptr, nullptr), 1u); }));
    EXPECT_EQ(SavedItems("Target"), (Records{Record{{"Value", "b"}}}));
    CopyProperty(nullptr, "Target", "Value");
    EXPECT_EQ(SavedItems("Target"), (Records{Record{{"Value", ""}}}));
}

TEST_F(CopyOperations, ChildrenAreCopiedByTheirKeys) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"one\"/><Item Key=\"2\" A=\"two\"/>",
                             "<Item Key=\"2\" A=\"\"/><Item Key=\"1\" A=\"\"/>"),
              (Records{Record{{"Key", "2"}, {"A", "two"}}, Record{{"Key", "1"}, {"A", "one"}}}));
}

TEST_F(CopyOperations, NothingIsAddedForAKeyThatTheTargetLacks) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"one\"/><Item Key=\"2\" A=\"two\"/>", "<Item Key=\"2\" A=\"\"/>"),
              (Records{Record{{"Key", "2"}, {"A", "two"}}}));
}

TEST_F(CopyOperations, OnlyTheFirstFourAttributesOfASourceChildAreCopied) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" P=\"p\" Q=\"q\" R=\"r\" S=\"s\"/>",
                             "<Item Key=\"1\" P=\"\" Q=\"\" R=\"\" S=\"old\"/>"),
              (Records{Record{{"Key", "1"}, {"P", "p"}, {"Q", "q"}, {"R", "r"}, {"S", "old"}}}));
}

TEST_F(CopyOperations, TheKeyNeedNotBeAmongTheFirstFour) {
    EXPECT_EQ(ElementsCopied("<Item P=\"p\" Q=\"q\" R=\"r\" S=\"s\" Key=\"1\"/>",
                             "<Item Key=\"1\" S=\"\" R=\"\" Q=\"\" P=\"\"/>"),
              (Records{Record{{"Key", "1"}, {"S", "s"}, {"R", "r"}, {"Q", "q"}, {"P", "p"}}}));
}

TEST_F(CopyOperations, TheOrderOfTheSourceDecidesWhichFourAreCopied) {
    EXPECT_EQ(ElementsCopied("<Item S=\"s\" Key=\"1\" R=\"r\" Q=\"q\" P=\"p\"/>",
                             "<Item Key=\"1\" P=\"old\" Q=\"\" R=\"\" S=\"\"/>"),
              (Records{Record{{"Key", "1"}, {"P", "old"}, {"Q", "q"}, {"R", "r"}, {"S", "s"}}}));
}

TEST_F(CopyOperations, AttributesThatTheTargetLacksCountAmongTheFour) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" X=\"x\" Y=\"y\" Z=\"z\" A=\"new\"/>", "<Item Key=\"1\" A=\"old\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "old"}}}));
}

TEST_F(CopyOperations, AttributesThatTheTargetLacksAreNotAdded) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"a\" B=\"b\"/>", "<Item Key=\"1\" B=\"\"/>"),
              (Records{Record{{"Key", "1"}, {"B", "b"}}}));
}

TEST_F(CopyOperations, AttributesThatTheSourceLacksStayAsTheyAre) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"a\"/>", "<Item Key=\"1\" A=\"\" B=\"old\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "a"}, {"B", "old"}}}));
}

TEST_F(CopyOperations, OnlyTheFirstTargetChildWithTheKeyIsChanged) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"a\"/>", "<Item Key=\"1\" A=\"x\"/><Item Key=\"1\" A=\"y\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "a"}}, Record{{"Key", "1"}, {"A", "y"}}}));
}

TEST_F(CopyOperations, TheFirstSourceChildWithTheKeyIsCopiedForEachOfThem) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"a\"/><Item Key=\"1\" A=\"b\"/>", "<Item Key=\"1\" A=\"\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "a"}}}));
}

TEST_F(CopyOperations, TheFirstOfTwoSourceAttributesOfOneBaseNameIsCopied) {
    OpenMain("<Source xmlns:x=\"urn:x\"><Item Key=\"1\" x:Size=\"10\" Size=\"20\"/></Source>"
             "<Target><Item Key=\"1\" Size=\"\"/></Target>");
    CopyElement("Source", "Target", "Key");
    EXPECT_EQ(SavedItems("Target"), (Records{Record{{"Key", "1"}, {"Size", "10"}}}));
}

TEST_F(CopyOperations, EachOfTwoTargetAttributesOfOneBaseNameIsOverwritten) {
    OpenMain("<Source><Item Key=\"1\" Size=\"10\"/></Source>"
             "<Target xmlns:x=\"urn:x\"><Item Key=\"1\" x:Size=\"\" Size=\"\"/></Target>");
    CopyElement("Source", "Target", "Key");
    EXPECT_EQ(SavedItems("Target"), (Records{Record{{"Key", "1"}, {"x:Size", "10"}, {"Size", "10"}}}));
}

TEST_F(CopyOperations, KeysCompareAsWholeTextsWithRegardToCase) {
    const Records unchanged{Record{{"Key", "A"}, {"V", "old"}}, Record{{"Key", "a "}, {"V", "old"}},
                            Record{{"key", "a"}, {"V", "old"}}};
    EXPECT_EQ(ElementsCopied("<Item Key=\"z\"/><Item Key=\"a\" V=\"new\"/>",
                             "<Item Key=\"A\" V=\"old\"/><Item Key=\"a \" V=\"old\"/><Item key=\"a\" V=\"old\"/>"),
              unchanged);
}

TEST_F(CopyOperations, SourceChildrenWithoutTheKeyAreNotCopied) {
    EXPECT_EQ(ElementsCopied("<Item A=\"x\"/><Item Key=\"1\" A=\"a\"/>", "<Item A=\"old\"/><Item Key=\"1\" A=\"\"/>"),
              (Records{Record{{"A", "old"}}, Record{{"Key", "1"}, {"A", "a"}}}));
}

TEST_F(CopyOperations, AnEmptyKeyIsAKey) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"\" A=\"a\"/>", "<Item A=\"old\"/><Item Key=\"\" A=\"\"/>"),
              (Records{Record{{"A", "old"}}, Record{{"Key", ""}, {"A", "a"}}}));
}

TEST_F(CopyOperations, WithoutASourceKeyNothingIsCopiedOrSaved) {
    OpenWith("<Item A=\"a\"/>", "<Item Key=\"1\" A=\"old\"/>");
    EXPECT_FALSE(Saves([] { EXPECT_EQ(CopyElement("Source", "Target", "Key"), 1u); }));
    EXPECT_FALSE(Saves([] { EXPECT_EQ(CopyElement("Nowhere", "Target", "Key"), 1u); }));
    EXPECT_FALSE(Saves([] { EXPECT_EQ(CopyElement("Source", "Target", ""), 1u); }));
    EXPECT_EQ(GetAttrValue("Target", "A"), "old");
}

TEST_F(CopyOperations, AKeyIsSavedAlsoWhenTheTargetLacksIt) {
    OpenWith("<Item Key=\"1\" A=\"a\"/>", "");
    EXPECT_TRUE(Saves([] { EXPECT_EQ(CopyElement("Source", "Target", "Key"), 1u); }));
    EXPECT_TRUE(Saves([] { EXPECT_EQ(CopyElement("Source", "Nowhere", "Key"), 1u); }));
}

TEST_F(CopyOperations, ACommentInTheTargetKeepsWhatComesBehindItAsItIs) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"a\"/><Item Key=\"2\" A=\"b\"/>",
                             "<Item Key=\"1\" A=\"\"/><!-- note --><Item Key=\"2\" A=\"old\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "a"}}, Record{{"Key", "2"}, {"A", "old"}}}));
}

TEST_F(CopyOperations, ACommentInTheSourceEndsTheListOfKeys) {
    EXPECT_EQ(ElementsCopied("<Item Key=\"1\" A=\"a\"/><!-- note --><Item Key=\"2\" A=\"b\"/>",
                             "<Item Key=\"1\" A=\"\"/><Item Key=\"2\" A=\"old\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "a"}}, Record{{"Key", "2"}, {"A", "old"}}}));
}

TEST_F(CopyOperations, AContainerMayBeCopiedOntoItself) {
    OpenWith("<Item Key=\"1\" A=\"a\"/><Item Key=\"1\" A=\"b\"/>", "");
    EXPECT_TRUE(Saves([] { CopyElement("Source", "Source", "Key"); }));
    EXPECT_EQ(SavedItems("Source"), (Records{Record{{"Key", "1"}, {"A", "a"}}, Record{{"Key", "1"}, {"A", "b"}}}));
}

TEST_F(CopyOperations, NullTextsOfCopyElementCountAsEmpty) {
    OpenWith("<Item Key=\"1\" A=\"a\"/>", "<Item Key=\"1\" A=\"old\"/>");
    EXPECT_FALSE(Saves([] { EXPECT_EQ(CopyElement(nullptr, nullptr, nullptr), 1u); }));
    EXPECT_TRUE(Saves([] { EXPECT_EQ(CopyElement("Source", nullptr, "Key"), 1u); }));
    EXPECT_EQ(SavedItems("Target"), (Records{Record{{"Key", "1"}, {"A", "old"}}}));
}

TEST_F(CopyOperations, WithoutACurrentDocumentNothingIsCopiedOrSaved) {
    OpenWith("<Item Key=\"1\" Value=\"a\"/>", "<Item Key=\"1\" Value=\"b\"/>");
    OpenPrinter("missing.xml");
    EXPECT_FALSE(Saves([] { EXPECT_EQ(CopyProperty("Source", "Target", "Value"), 1u); }));
    EXPECT_FALSE(Saves([] { EXPECT_EQ(CopyElement("Source", "Target", "Key"), 1u); }));
}

TEST_F(CopyOperations, CopiedValuesAreWhatIsReadAndFilteredAfterwards) {
    OpenWith("<Item Key=\"1\" A=\"new\"/>", "<Item Key=\"1\" A=\"old\" B=\"b\"/>");
    EXPECT_EQ(GetAttrValue1("Target", "A", "old", "B"), "b");
    CopyElement("Source", "Target", "Key");
    EXPECT_EQ(GetAttrValue1("Target", "A", "old", "B"), "old");
    EXPECT_EQ(GetAttrValue1("Target", "A", "new", "B"), "b");
}
