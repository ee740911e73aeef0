// The readers of the node engine, where no exported function reaches them.

#include "store/node_readers.h"

#include "engine_document.h"
#include "extreme_counts.h"
#include "store/module_state.h"

#include <gtest/gtest.h>

namespace {

const char* const kTwoRows = "<r><List><i A=\"1\" B=\"2\" C=\"first\"/><i A=\"1\" B=\"3\" C=\"second\"/></List></r>";

int Value(const CXmlObject& document) {
    int value = -1;
    sem_getvalue(document.m_hSemaphore, &value);
    return value;
}

} // namespace

TEST(ReadingAnAttribute, LeavesTheAttributeAsTheOnlyPair) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "C").With("B", "3").With("A", "1");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(query.m_nCount, 1);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"C", "second"}}));
    EXPECT_EQ(query.m_attrs.GetValue(), "") << "no cursor before Rewind";
    EXPECT_EQ(query.m_strElement, "List");
    EXPECT_EQ(query.m_strAttr, "C");
}

TEST(ReadingAnAttribute, GivesItsBaseName) {
    CEngineDocument document("<r xmlns:m=\"1\" xmlns:n=\"2\"><List><i n:C=\"1\"/></List></r>");
    CRequest query("List", "C");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"C", "1"}}));
}

TEST(ReadingAnAttribute, TakesNoPrefixedName) {
    CEngineDocument document("<r xmlns:m=\"1\" xmlns:n=\"2\"><List><i n:C=\"1\"/></List></r>");
    CRequest query("List", "n:C");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1);
}

TEST(ReadingAnAttribute, LeavesTheQueryOnAMiss) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "C", "v").With("B", "4").With("A", "1");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1);
    EXPECT_EQ(query.m_nCount, 2);
    EXPECT_EQ(query.m_strValue, "v");
    EXPECT_EQ(PairsOf(query), (TextPairs{{"B", "4"}, {"A", "1"}}));
}

TEST(ReadingAnAttribute, ThatSucceededFiltersTheNextReadByItsResult) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "B").With("C", "second");
    ASSERT_EQ(ReadAttribute(&document.Object(), &query), 0);
    query.m_strAttr = "C";
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"C", "second"}})) << "by B = 3";
}

TEST(ReadingAnAttribute, OfAnEmptyNameFindsNothing) {
    CEngineDocument document(kTwoRows);
    CRequest query("List", "");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1);
    CRequest container("", "A");
    EXPECT_EQ(ReadAttribute(&document.Object(), &container), 1);
}

TEST(ReadingAnAttribute, WorksOnTheDocumentHandedIn) {
    CXmlObject other;
    CEngineDocument document(kTwoRows);
    State().currentDocument = &other;
    CRequest query("List", "C");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
}

TEST(TheFilter, OfANegativeCountNeverPasses) {
    CEngineDocument document(kTwoRows);
    for (const int32_t count : {-1, -2, kLeast}) {
        CRequest query = CRequest("List", "C").With("A", "1").Counting(count);
        EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1);
        EXPECT_EQ(query.m_nCount, count);
    }
}

TEST(TheFilter, CountsFewerPairsThanThereAre) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "C").With("A", "1").With("B", "no such").Counting(1);
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"C", "first"}}));
}

TEST(TheFilter, OfMorePairsThanThereAreFindsNothing) {
    CEngineDocument document(kTwoRows);
    for (const int32_t count : {2, 3, 1000, kMost}) {
        CRequest query = CRequest("List", "C").With("A", "1").Counting(count);
        EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1) << count;
    }
}

TEST(TheFilter, OfMorePairsThanThereArePassesWithTwoAttributesOfOneName) {
    CEngineDocument document("<r xmlns:m=\"1\" xmlns:n=\"2\"><List><i n:A=\"1\" m:A=\"1\" C=\"both\"/></List></r>");
    CRequest query = CRequest("List", "C").With("A", "1").Counting(2);
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0) << "attributes are counted, not pairs";
}

TEST(TheFilter, CountsAnAttributeOnceForTwoEqualPairs) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "C").With("A", "1").With("A", "1");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1);
}

TEST(TheFilter, TakesAnyOfTwoPairsOfOneName) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "C").With("B", "3").With("B", "2").Counting(2);
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1);
    CRequest both = CRequest("List", "C").With("B", "9").With("B", "3").With("A", "1").Counting(3);
    EXPECT_EQ(ReadAttribute(&document.Object(), &both), 1) << "two attributes equal a pair, three are asked for";
}

TEST(TheFilter, TakesTwoPairsOfOneNameForTwoAttributesOfThatName) {
    CEngineDocument document("<r xmlns:m=\"1\" xmlns:n=\"2\"><List><i n:A=\"1\" m:A=\"2\" C=\"both\"/></List></r>");
    CRequest query = CRequest("List", "C").With("A", "1").With("A", "2");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"C", "both"}}));
}

TEST(TheFilter, MayNameTheAttributeThatIsRead) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "B").With("B", "3");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"B", "3"}}));
}

TEST(TheFilter, OfAnUnknownNameFindsNothing) {
    CEngineDocument document(kTwoRows);
    for (const char* const name : {"a", "", "AA", "r"}) {
        CRequest query = CRequest("List", "C").With(name, "1");
        EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1) << name;
    }
}

TEST(TheFilter, StopsAtACommentBeforeTheChildAndNotBehindIt) {
    CEngineDocument document("<r><List><i A=\"1\"/><!--c--><i A=\"2\"/></List></r>");
    CRequest before = CRequest("List", "A").With("A", "1");
    EXPECT_EQ(ReadAttribute(&document.Object(), &before), 0);
    CRequest behind = CRequest("List", "A").With("A", "2");
    EXPECT_EQ(ReadAttribute(&document.Object(), &behind), 1);
}

TEST(Readers, GiveOneWithoutDocumentOrQuery) {
    CEngineDocument document(kTwoRows);
    CXmlObject empty;
    CRequest query("List", "A");
    EXPECT_EQ(ReadAttribute(nullptr, &query), 1);
    EXPECT_EQ(ReadAttribute(&empty, &query), 1);
    EXPECT_EQ(ReadAttribute(&document.Object(), nullptr), 1);
    EXPECT_EQ(ListAllAttributes(nullptr, &query), 1);
    EXPECT_EQ(ListAllAttributes(&empty, &query), 1);
    EXPECT_EQ(ListAllAttributes(&document.Object(), nullptr), 1);
    EXPECT_EQ(CollectAttribute(State().currentDocument, nullptr), 1);
    EXPECT_EQ(ReadChild(State().currentDocument, nullptr), 1);
    State().currentDocument = nullptr;
    EXPECT_EQ(CollectAttribute(State().currentDocument, &query), 1);
    EXPECT_EQ(ReadChild(State().currentDocument, &query), 1);
    State().currentDocument = &empty;
    EXPECT_EQ(CollectAttribute(State().currentDocument, &query), 1);
    EXPECT_EQ(ReadChild(State().currentDocument, &query), 1);
}

TEST(Readers, GiveTheLockBack) {
    CEngineDocument document("<r><List><i A=\"1\"/><!--c--></List></r>");
    for (const char* const element : {"List", "none"}) {
        CRequest query(element, "A");
        ReadAttribute(&document.Object(), &query);
        EXPECT_EQ(Value(document.Object()), 1);
        ListAllAttributes(&document.Object(), &query);
        EXPECT_EQ(Value(document.Object()), 1);
        CollectAttribute(State().currentDocument, &query.Counting(0));
        EXPECT_EQ(Value(document.Object()), 1);
        ReadChild(State().currentDocument, &query);
        EXPECT_EQ(Value(document.Object()), 1);
    }
}

TEST(ListingAllAttributes, DropsTheFilterItWasGiven) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "C").With("B", "3").With("D", "4");
    EXPECT_EQ(ListAllAttributes(&document.Object(), &query), 0);
    EXPECT_EQ(query.m_nCount, 6);
    EXPECT_EQ(PairsOf(query),
              (TextPairs{{"A", "1"}, {"B", "2"}, {"C", "first"}, {"A", "1"}, {"B", "3"}, {"C", "second"}}));
}

TEST(ListingAllAttributes, OfChildrenWithoutAnyLeavesNoPair) {
    CEngineDocument document("<r><List><i/><i/></List><Empty/></r>");
    for (const char* const element : {"List", "Empty"}) {
        CRequest query = CRequest(element, "").With("A", "1");
        EXPECT_EQ(ListAllAttributes(&document.Object(), &query), 1);
        EXPECT_EQ(query.m_nCount, 0);
        EXPECT_EQ(PairsOf(query), TextPairs{});
    }
}

TEST(ListingAllAttributes, WithoutAContainerLeavesTheQuery) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("none", "").With("A", "1");
    EXPECT_EQ(ListAllAttributes(&document.Object(), &query), 1);
    EXPECT_EQ(query.m_nCount, 1);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"A", "1"}}));
}

TEST(ListingAllAttributes, KeepsWhatItHadBeforeAComment) {
    CEngineDocument document("<r><List><i A=\"1\"/><i B=\"2\"/><!--c--><i A=\"3\"/></List></r>");
    CRequest query("List", "");
    EXPECT_EQ(ListAllAttributes(&document.Object(), &query), 1);
    EXPECT_EQ(query.m_nCount, 2);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"A", "1"}, {"B", "2"}}));
}

TEST(Collecting, TakesNoFilterOfAnyCount) {
    CEngineDocument document(kTwoRows);
    for (const int32_t count : {1, -1, kMost, kLeast}) {
        CRequest query = CRequest("List", "A").With("B", "2").Counting(count);
        EXPECT_EQ(CollectAttribute(State().currentDocument, &query), 1);
        EXPECT_EQ(query.m_nCount, count);
        EXPECT_EQ(PairsOf(query), (TextPairs{{"B", "2"}}));
    }
}

TEST(Collecting, DropsPairsThatDoNotCount) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "B").With("A", "1").Counting(0);
    EXPECT_EQ(CollectAttribute(State().currentDocument, &query), 0);
    EXPECT_EQ(query.m_nCount, 2);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"B", "2"}, {"B", "3"}}));
}

TEST(Collecting, OfANameThatNoChildHasLeavesNoPair) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "none").With("A", "1").Counting(0);
    EXPECT_EQ(CollectAttribute(State().currentDocument, &query), 1);
    EXPECT_EQ(query.m_nCount, 0);
    EXPECT_EQ(PairsOf(query), TextPairs{});
}

TEST(Collecting, TwiceWithOneQueryGivesNothingTheSecondTime) {
    CEngineDocument document(kTwoRows);
    CRequest query("List", "B");
    ASSERT_EQ(CollectAttribute(State().currentDocument, &query), 0);
    EXPECT_EQ(CollectAttribute(State().currentDocument, &query), 1);
    EXPECT_EQ(query.m_nCount, 2);
}

TEST(ReadingAChild, ByItsKeyTakesTheFirst) {
    CEngineDocument document(kTwoRows);
    CRequest query("List", "A", "1");
    EXPECT_EQ(ReadChild(State().currentDocument, &query), 0);
    EXPECT_EQ(query.m_nCount, 3);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"A", "1"}, {"B", "2"}, {"C", "first"}}));
}

TEST(ReadingAChild, ByAFilterDoesNotLookAtTheKey) {
    CEngineDocument document(kTwoRows);
    CRequest query = CRequest("List", "A", "no such").With("B", "3");
    EXPECT_EQ(ReadChild(State().currentDocument, &query), 0);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"A", "1"}, {"B", "3"}, {"C", "second"}}));
}

TEST(ReadingAChild, LeavesTheQueryOnAMiss) {
    CEngineDocument document(kTwoRows);
    CRequest key = CRequest("List", "A", "7").With("B", "2").Counting(0);
    EXPECT_EQ(ReadChild(State().currentDocument, &key), 1);
    EXPECT_EQ(key.m_nCount, 0);
    EXPECT_EQ(PairsOf(key), (TextPairs{{"B", "2"}}));
    CRequest negative = CRequest("List", "A", "1").With("B", "2").Counting(-1);
    EXPECT_EQ(ReadChild(State().currentDocument, &negative), 1);
    EXPECT_EQ(negative.m_nCount, -1);
}

TEST(ReadingAChild, StopsAtACommentBeforeIt) {
    CEngineDocument document("<r><List>text<i A=\"1\"/></List></r>");
    CRequest query("List", "A", "1");
    EXPECT_EQ(ReadChild(State().currentDocument, &query), 1);
}
