// The request record and its list of pairs.

#include "store/xml_query.h"

#include "engine_document.h"

#include <gtest/gtest.h>

TEST(FreshList, HasNoPairAndNoCursor) {
    const CXmlAttribute list;
    EXPECT_EQ(list.Head(), nullptr);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Index(), 0);
    EXPECT_EQ(list.GetName(), "");
    EXPECT_EQ(list.GetValue(), "");
}

TEST(FreshQuery, IsEmptyThroughout) {
    const CXmlQuery query;
    EXPECT_EQ(query.m_nCount, 0);
    EXPECT_EQ(query.m_strElement, "");
    EXPECT_EQ(query.m_strAttr, "");
    EXPECT_EQ(query.m_strValue, "");
    EXPECT_EQ(query.m_attrs.Head(), nullptr);
}

TEST(AddingAPair, AppendsInOrderAndCounts) {
    CXmlAttribute list;
    EXPECT_EQ(list.Add(AnsiString("a"), AnsiString("1")), 0);
    EXPECT_EQ(list.Add(AnsiString("b"), AnsiString("2")), 0);
    EXPECT_EQ(list.Add(AnsiString("a"), AnsiString("3")), 0);
    EXPECT_EQ(list.Count(), 3);
    ASSERT_NE(list.Head(), nullptr);
    EXPECT_EQ(list.Head()->value, "1");
    EXPECT_EQ(list.Head()->next->value, "2");
    EXPECT_EQ(list.Head()->next->next->value, "3");
    EXPECT_EQ(list.Head()->next->next->next, nullptr);
}

TEST(AddingAPair, LeavesAnEmptyListWithoutCursorUntilRewind) {
    CXmlAttribute list;
    list.Add(AnsiString("a"), AnsiString("1"));
    EXPECT_EQ(list.GetName(), "");
    EXPECT_EQ(list.GetValue(), "");
    list.Rewind();
    EXPECT_EQ(list.GetName(), "a");
    EXPECT_EQ(list.GetValue(), "1");
}

TEST(AddingAPair, LeavesTheCursorWhereItStands) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Rewind();
    list.Add("b", "2");
    EXPECT_EQ(list.GetValue(), "1");
    EXPECT_EQ(list.Index(), 0);
}

TEST(AddingAPair, BehindACursorThatHadNoneStaysUnseen) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Rewind();
    list.MoveNext();
    list.Add("b", "2");
    EXPECT_EQ(list.GetValue(), "");
}

TEST(AddingAPair, AsStringsTakesAnEmptyName) {
    CXmlAttribute list;
    EXPECT_EQ(list.Add(AnsiString(), AnsiString("1")), 0);
    EXPECT_EQ(list.Count(), 1);
}

TEST(AddingAPair, AsPointersRefusesAnEmptyName) {
    CXmlAttribute list;
    EXPECT_EQ(list.Add("", "1"), 1);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Head(), nullptr);
}

TEST(AddingAPair, AsPointersRefusesANullName) {
    CXmlAttribute list;
    EXPECT_EQ(list.Add(nullptr, "1"), 1);
    EXPECT_EQ(list.Count(), 0);
}

TEST(AddingAPair, AsPointersTakesANullValueAsEmpty) {
    CXmlAttribute list;
    EXPECT_EQ(list.Add("a", static_cast<const char*>(nullptr)), 0);
    list.Rewind();
    EXPECT_EQ(list.GetName(), "a");
    EXPECT_EQ(list.GetValue(), "");
}

TEST(AddingAPair, AsPointersCopiesTheText) {
    CXmlAttribute list;
    char name[] = "a";
    char value[] = "1";
    list.Add(name, value);
    name[0] = value[0] = 'x';
    list.Rewind();
    EXPECT_EQ(list.GetName(), "a");
    EXPECT_EQ(list.GetValue(), "1");
}

TEST(MovingTheCursor, WalksThePairsInOrder) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Add("b", "2");
    list.Rewind();
    list.MoveNext();
    EXPECT_EQ(list.Index(), 1);
    EXPECT_EQ(list.GetName(), "b");
    EXPECT_EQ(list.GetValue(), "2");
}

TEST(MovingTheCursor, PastTheLastPairCountsOn) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Rewind();
    list.MoveNext();
    list.MoveNext();
    list.MoveNext();
    EXPECT_EQ(list.Index(), 3);
    EXPECT_EQ(list.GetName(), "");
    EXPECT_EQ(list.GetValue(), "");
}

TEST(MovingTheCursor, BeforeRewindCountsToo) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.MoveNext();
    EXPECT_EQ(list.Index(), 1);
    EXPECT_EQ(list.GetValue(), "");
}

TEST(MovingTheCursor, BackToTheFirstPairStartsOver) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Add("b", "2");
    list.Rewind();
    list.MoveNext();
    list.MoveNext();
    list.Rewind();
    EXPECT_EQ(list.Index(), 0);
    EXPECT_EQ(list.GetValue(), "1");
}

TEST(ClearingTheList, MakesItAsNew) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Rewind();
    list.MoveNext();
    list.Clear();
    EXPECT_EQ(list.Head(), nullptr);
    EXPECT_EQ(list.Count(), 0);
    EXPECT_EQ(list.Index(), 0);
    EXPECT_EQ(list.GetValue(), "");
    list.Add("b", "2");
    EXPECT_EQ(list.GetValue(), "") << "the cursor must not survive";
    EXPECT_EQ(list.Head()->name, "b");
    EXPECT_EQ(list.Head()->next, nullptr);
}

TEST(ClearingTheList, TakesTheCursorOffItsPair) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Rewind();
    list.Clear();
    list.Add("b", "2"); // where the pair was, perhaps
    EXPECT_EQ(list.GetName(), "");
    EXPECT_EQ(list.GetValue(), "");
}

TEST(ClearingTheList, TwiceDoesNoHarm) {
    CXmlAttribute list;
    list.Add("a", "1");
    list.Clear();
    list.Clear();
    EXPECT_EQ(list.Count(), 0);
}

TEST(SwappingLists, TakesTheTailAlong) {
    CXmlAttribute left;
    CXmlAttribute right;
    left.Add("a", "1");
    right.Add("b", "2");
    right.Add("c", "3");
    left.Swap(right);
    left.Add("d", "4");
    right.Add("e", "5");
    EXPECT_EQ(left.Count(), 3);
    EXPECT_EQ(left.Head()->next->next->value, "4");
    EXPECT_EQ(right.Count(), 2);
    EXPECT_EQ(right.Head()->next->value, "5");
}

TEST(SwappingLists, TakesTheCursorAlong) {
    CXmlAttribute left;
    CXmlAttribute right;
    left.Add("a", "1");
    right.Add("b", "2");
    right.Add("c", "3");
    right.Rewind();
    right.MoveNext();
    left.Swap(right);
    EXPECT_EQ(left.Index(), 1);
    EXPECT_EQ(left.GetName(), "c");
    EXPECT_EQ(right.Index(), 0);
    EXPECT_EQ(right.GetName(), "");
}

TEST(CopiesOfAPair, OutliveTheList) {
    AnsiString value;
    {
        CXmlAttribute list;
        list.Add("a", "kept");
        list.Rewind();
        value = list.GetValue();
    }
    EXPECT_EQ(value, "kept");
}

TEST(ALongList, IsReleasedWithoutRecursion) {
    CXmlAttribute list;
    const AnsiString text("x");
    for (int index = 0; index < 1000000; ++index) {
        ASSERT_EQ(list.Add(text, text), 0);
    }
    EXPECT_EQ(list.Count(), 1000000);
}

TEST(QueryPairs, AreCountedWhenTheyAreAddedToTheQuery) {
    CXmlQuery query("Files", "ID");
    query.AddPair("a", "1");
    query.AddPair("b", "2");
    EXPECT_EQ(query.m_nCount, 2);
    EXPECT_EQ(PairsOf(query), (TextPairs{{"a", "1"}, {"b", "2"}}));
}

TEST(QueryPairs, OfTheListAloneAreNot) {
    CXmlQuery query("Files", "ID");
    query.m_attrs.Add("a", "1");
    EXPECT_EQ(query.m_nCount, 0);
}

TEST(FirstValueOfAQuery, IsEmptyWithoutPairs) {
    CXmlQuery query("Files", "ID", "unused");
    EXPECT_EQ(query.FirstValue(), "");
}

TEST(FirstValueOfAQuery, IsThatOfTheFirstPairWhereverTheCursorStands) {
    CXmlQuery query;
    query.AddPair("a", "1");
    query.AddPair("b", "2");
    query.m_attrs.Rewind();
    query.m_attrs.MoveNext();
    EXPECT_EQ(query.FirstValue(), "1");
}
