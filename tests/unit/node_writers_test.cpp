// The writers of the node engine, where no exported function reaches them.

#include "nodes/node_writers.h"

#include "engine_document.h"
#include "extreme_counts.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <gtest/gtest.h>

namespace {

const char* const kThreeRows = "<List><i A=\"1\" B=\"1\"/><i A=\"2\" B=\"1\"/><i A=\"3\" B=\"1\"/></List>";

std::string In(const std::string& containers) { return "<r xmlns:m=\"1\" xmlns:n=\"2\">" + containers + "</r>"; }

} // namespace

TEST(WritingAnItem, WithANegativeCountChangesNothing) {
    CEngineDocument document(In(kThreeRows));
    for (const int32_t count : {-1, kLeast}) {
        const CRequest query = CRequest("List", "").With("A", "new").Counting(count);
        EXPECT_EQ(WriteItem(State().currentDocument, &query), 1);
        EXPECT_EQ(document.Text("List"), kThreeRows);
    }
}

TEST(WritingAnItem, WithFewerPairsThanThereAreWritesTheFirstOnes) {
    CEngineDocument document(In("<List/>"));
    const CRequest query = CRequest("List", "").With("A", "1").With("B", "2").Counting(1);
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><Item A=\"1\"/></List>");
}

TEST(WritingAnItem, WithMorePairsThanThereAreWritesNothing) {
    CEngineDocument document(In("<List/>"));
    for (const int32_t count : {3, kMost}) {
        const CRequest query = CRequest("List", "").With("A", "1").With("B", "2").Counting(count);
        EXPECT_EQ(WriteItem(State().currentDocument, &query), 1);
        EXPECT_EQ(document.Text("List"), "<List/>");
    }
}

TEST(WritingAnItem, WithARepeatedNameKeepsTheLastValueAtTheFirstPlace) {
    CEngineDocument document(In("<List/>"));
    const CRequest query = CRequest("List", "").With("A", "1").With("B", "2").With("A", "3");
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><Item A=\"3\" B=\"2\"/></List>");
}

TEST(WritingAnItem, WithARepeatedNameIsNeverEqualToWhatItWrote) {
    CEngineDocument document(In("<List/>"));
    const CRequest query = CRequest("List", "").With("A", "1").With("A", "3");
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0);
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0) << "one attribute counts once";
    EXPECT_EQ(document.Text("List"), "<List><Item A=\"3\"/><Item A=\"3\"/></List>");
}

TEST(WritingAnItem, TakesPrefixedNamesAsTheyStand) {
    CEngineDocument document(In("<List/>"));
    const CRequest query = CRequest("List", "").With("n:A", "1").With("m:A", "2");
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><Item n:A=\"1\" m:A=\"2\"/></List>");
    CRequest read = CRequest("List", "A").With("A", "2");
    EXPECT_EQ(ReadAttribute(&document.Object(), &read), 0) << "the other of the two passes the filter";
    EXPECT_EQ(PairsOf(read), (TextPairs{{"A", "1"}}));
}

TEST(WritingAnItem, OfNamesOrValuesThatXmlCannotHoldChangesNothing) {
    CEngineDocument document(In("<List/>"));
    for (const auto& [name, value] :
         TextPairs{{"", "v"}, {"1a", "v"}, {"a b", "v"}, {"a", "\x01"}, {"a", "\xEF\xBF\xBF"}}) {
        const CRequest query = CRequest("List", "").With("good", "1").With(name.c_str(), value.c_str());
        EXPECT_EQ(WriteItem(State().currentDocument, &query), 1);
        EXPECT_EQ(document.Text("List"), "<List/>");
    }
}

TEST(WritingAnItem, BesideACommentFailsWhereverThatStands) {
    CEngineDocument document(In("<First><!--c--><i/></First><Last><i/>text</Last>"));
    for (const char* const container : {"First", "Last"}) {
        const std::string before = document.Text(container);
        const CRequest query = CRequest(container, "").With("A", "1");
        EXPECT_EQ(WriteItem(State().currentDocument, &query), 1);
        EXPECT_EQ(document.Text(container), before);
    }
}

TEST(WritingAnItem, WithoutPairsRemovesCommentsAndTextToo) {
    CEngineDocument document(In("<List><!--c--><i/>text<?pi d?><![CDATA[x]]></List>"));
    const CRequest query("List", "");
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List/>");
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0) << "an empty container is done too";
}

TEST(WritingAnItem, WorksAgainAfterTheCommentIsGone) {
    CEngineDocument document(In("<List><!--c--></List>"));
    const CRequest query = CRequest("List", "").With("A", "1");
    ASSERT_EQ(WriteItem(State().currentDocument, &query), 1);
    const CRequest clear("List", "");
    ASSERT_EQ(WriteItem(State().currentDocument, &clear), 0);
    EXPECT_EQ(WriteItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><Item A=\"1\"/></List>");
}

TEST(RemovingItems, ByAFilterRemovesTheFirstThatPasses) {
    CEngineDocument document(In(kThreeRows));
    const CRequest query = CRequest("List", "").With("B", "1");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"2\" B=\"1\"/><i A=\"3\" B=\"1\"/></List>");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 0);
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List/>");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 1);
}

TEST(RemovingItems, ByAFilterInTheMiddle) {
    CEngineDocument document(In(kThreeRows));
    const CRequest query = CRequest("List", "").With("B", "1").With("A", "2");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"1\"/><i A=\"3\" B=\"1\"/></List>");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 1);
}

TEST(RemovingItems, ByAFilterThatNothingPassesChangesNothing) {
    CEngineDocument document(In(kThreeRows));
    for (const int32_t count : {-1, kLeast, 2, kMost}) {
        const CRequest query = CRequest("List", "").With("A", "1").Counting(count);
        EXPECT_EQ(RemoveItems(State().currentDocument, &query), 1) << count;
    }
    EXPECT_EQ(document.Text("List"), kThreeRows);
}

TEST(RemovingItems, ByAFilterTakesWhatIsNestedInTheItem) {
    CEngineDocument document(In("<List><i A=\"1\"><Inner><j C=\"1\"/></Inner></i><i A=\"2\"/></List>"));
    CRequest inner("Inner", "C");
    ASSERT_EQ(ReadAttribute(&document.Object(), &inner), 0);
    const CRequest query = CRequest("List", "").With("A", "1");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 0);
    CRequest gone("Inner", "C");
    EXPECT_EQ(ReadAttribute(&document.Object(), &gone), 1);
}

TEST(RemovingItems, BehindACommentFails) {
    CEngineDocument document(In("<List><!--c--><i A=\"1\"/></List>"));
    const CRequest query = CRequest("List", "").With("A", "1");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 1);
    EXPECT_EQ(document.Text("List"), "<List><!--c--><i A=\"1\"/></List>");
}

TEST(RemovingItems, BeforeACommentWorks) {
    CEngineDocument document(In("<List><i A=\"1\"/><!--c--></List>"));
    const CRequest query = CRequest("List", "").With("A", "1");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><!--c--></List>");
}

TEST(RemovingItems, WithoutFilterTellsAnEmptyContainerFromAFullOne) {
    CEngineDocument document(In("<List><!--c--><i/></List>"));
    const CRequest query("List", "");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List/>");
    EXPECT_EQ(RemoveItems(State().currentDocument, &query), 1);
}

TEST(OverwritingAnAttribute, ByAFilterChangesThatOneOnly) {
    CEngineDocument document(In(kThreeRows));
    const CRequest query = CRequest("List", "B", "new").With("A", "2");
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"1\"/><i A=\"2\" B=\"new\"/><i A=\"3\" B=\"1\"/></List>");
}

TEST(OverwritingAnAttribute, OfTheFilterItselfMovesTheFilter) {
    CEngineDocument document(In(kThreeRows));
    const CRequest query = CRequest("List", "B", "new").With("B", "1");
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 0);
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 0);
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 0);
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 1);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"new\"/><i A=\"2\" B=\"new\"/><i A=\"3\" B=\"new\"/></List>");
}

TEST(OverwritingAnAttribute, WithANegativeOrOversizedCountChangesNothing) {
    CEngineDocument document(In(kThreeRows));
    for (const int32_t count : {-1, kLeast, 2, kMost}) {
        const CRequest query = CRequest("List", "B", "new").With("A", "1").Counting(count);
        EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 1) << count;
    }
    EXPECT_EQ(document.Text("List"), kThreeRows);
}

TEST(OverwritingAnAttribute, OfTwoWithOneBaseNameTakesTheFirst) {
    CEngineDocument document(In("<List><i n:A=\"1\" m:A=\"2\"/></List>"));
    const CRequest query = CRequest("List", "A", "new").With("A", "2");
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><i n:A=\"new\" m:A=\"2\"/></List>");
}

TEST(OverwritingAnAttribute, WithAValueThatXmlCannotHoldChangesNothing) {
    CEngineDocument document(In(kThreeRows));
    const CRequest query = CRequest("List", "B", "a\x02z").With("A", "2");
    EXPECT_EQ(WriteAttribute(State().currentDocument, &query), 1);
    EXPECT_EQ(document.Text("List"), kThreeRows);
    CRequest read = CRequest("List", "A").With("B", "1").With("A", "2");
    EXPECT_EQ(ReadAttribute(&document.Object(), &read), 0) << "the row is still found by what it holds";
}

TEST(UpdatingAnItem, TakesTheFirstPairOfAName) {
    CEngineDocument document(In(kThreeRows));
    const CRequest query = CRequest("List", "A", "2").With("B", "10").With("B", "20");
    EXPECT_EQ(UpdateItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"1\"/><i A=\"2\" B=\"10\"/><i A=\"3\" B=\"1\"/></List>");
}

TEST(UpdatingAnItem, OverwritesItsKeyToo) {
    CEngineDocument document(In(kThreeRows));
    const CRequest query = CRequest("List", "A", "2").With("A", "9").With("B", "10");
    EXPECT_EQ(UpdateItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"1\"/><i A=\"9\" B=\"10\"/><i A=\"3\" B=\"1\"/></List>");
    EXPECT_EQ(UpdateItem(State().currentDocument, &query), 1);
}

TEST(UpdatingAnItem, IsKeyedByItsPairAndNotByTheCount) {
    CEngineDocument document(In(kThreeRows));
    for (const int32_t count : {0, -1, kLeast}) {
        const CRequest query = CRequest("List", "A", "2").With("B", "10").Counting(count);
        EXPECT_EQ(UpdateItem(State().currentDocument, &query), 0) << "found, and nothing to apply";
    }
    EXPECT_EQ(document.Text("List"), kThreeRows);
}

TEST(UpdatingAnItem, AppliesNoPairBeyondTheCountAndAllOfASurplusOne) {
    CEngineDocument document(In("<List><i A=\"1\" B=\"1\" C=\"1\"/></List>"));
    const CRequest one = CRequest("List", "A", "1").With("B", "2").With("C", "2").Counting(1);
    EXPECT_EQ(UpdateItem(State().currentDocument, &one), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"2\" C=\"1\"/></List>");
    const CRequest surplus = CRequest("List", "A", "1").With("B", "3").With("C", "3").Counting(kMost);
    EXPECT_EQ(UpdateItem(State().currentDocument, &surplus), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"3\" C=\"3\"/></List>");
}

TEST(UpdatingAnItem, GivesEveryAttributeOfABaseNameThePairsValue) {
    CEngineDocument document(In("<List><i A=\"1\" n:B=\"1\" m:B=\"2\"/></List>"));
    const CRequest query = CRequest("List", "A", "1").With("B", "new");
    EXPECT_EQ(UpdateItem(State().currentDocument, &query), 0);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" n:B=\"new\" m:B=\"new\"/></List>");
}

TEST(UpdatingAnItem, KeepsWhatItWroteBeforeAValueThatXmlCannotHold) {
    CEngineDocument document(In("<List><i A=\"1\" B=\"1\" C=\"1\" D=\"1\"/></List>"));
    const CRequest query = CRequest("List", "A", "1").With("D", "2").With("C", "\x01").With("B", "2");
    EXPECT_EQ(UpdateItem(State().currentDocument, &query), 1);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\" B=\"2\" C=\"1\" D=\"1\"/></List>");
}

TEST(UpdatingAnItem, CreatesNothing) {
    CEngineDocument document(In("<List><i A=\"1\"/></List>"));
    const CRequest query = CRequest("List", "A", "1").With("B", "2");
    EXPECT_EQ(UpdateItem(State().currentDocument, &query), 0);
    const CRequest none = CRequest("List", "A", "2").With("A", "3");
    EXPECT_EQ(UpdateItem(State().currentDocument, &none), 1);
    EXPECT_EQ(document.Text("List"), "<List><i A=\"1\"/></List>");
}

TEST(UpdatingAnItem, BehindACommentFails) {
    CEngineDocument document(In("<List><!--c--><i A=\"1\"/></List>"));
    const CRequest query = CRequest("List", "A", "1").With("A", "2");
    EXPECT_EQ(UpdateItem(State().currentDocument, &query), 1);
    EXPECT_EQ(document.Text("List"), "<List><!--c--><i A=\"1\"/></List>");
}

TEST(Writers, GiveOneWithoutDocumentContainerOrQuery) {
    CXmlObject empty;
    CEngineDocument document(In(kThreeRows));
    using Writer = int32_t (*)(CXmlObject*, const CXmlQuery*, COutcome*) noexcept;
    for (const Writer write : {Writer(WriteItem), Writer(WriteAttribute), Writer(RemoveItems), Writer(UpdateItem)}) {
        EXPECT_EQ(write(&document.Object(), nullptr, nullptr), 1);
        for (const char* const container : {"none", "r", "", "*", "a b"}) {
            const CRequest query(container, "A", "1");
            EXPECT_EQ(write(&document.Object(), &query, nullptr), 1) << container;
        }
        const CRequest query("List", "A", "1");
        EXPECT_EQ(write(nullptr, &query, nullptr), 1);
        EXPECT_EQ(write(&empty, &query, nullptr), 1);
    }
    EXPECT_EQ(document.Text("List"), kThreeRows);
}

TEST(Writers, GiveTheLockBack) {
    CEngineDocument document(In("<List><!--c--><i A=\"1\"/></List>"));
    using Writer = int32_t (*)(CXmlObject*, const CXmlQuery*, COutcome*) noexcept;
    for (const Writer write : {Writer(WriteAttribute), Writer(UpdateItem), Writer(RemoveItems), Writer(WriteItem)}) {
        for (const char* const container : {"none", "List"}) {
            const CRequest query = CRequest(container, "A", "1").With("A", "1");
            write(&document.Object(), &query, nullptr);
            int value = -1;
            sem_getvalue(document.Object().m_hSemaphore, &value);
            EXPECT_EQ(value, 1);
        }
    }
}

TEST(WritingAnAttribute, ThatDeclaresANamespaceLooksBeyondCommentsWithin) {
    CEngineDocument document("<r xmlns:m=\"1\"><L><i xmlns:n=\"2\"><x><!--c--><y m:a=\"\"/></x></i></L></r>");
    const CRequest query("L", "n", "3");
    EXPECT_EQ(WriteAttribute(&document.Object(), &query), 0) << "nothing within is undeclared";
    EXPECT_EQ(document.Text("L"), "<L><i xmlns:n=\"3\"><x><!--c--><y m:a=\"\"/></x></i></L>");
}
