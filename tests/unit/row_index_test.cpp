// The hash table behind the lookups, on tables that are large enough to make it grow and to fill it with gaps.

#include "rows/row_index.h"

#include "engine_document.h"
#include "nodes/node_writers.h"
#include "rows/text_hash.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <unordered_map>

namespace {

std::string Text(int number) { return std::to_string(number); }

/// Rows with A = 0, 1, ... and B the same modulo `groups`.
std::string Document(int rows, int groups) {
    std::string xml = "<r><L>";
    for (int row = 0; row < rows; ++row) {
        xml += "<i A=\"" + Text(row) + "\" B=\"" + Text(row % groups) + "\"/>";
    }
    return xml + "</L></r>";
}

/// The rows that the index over B gives for a text, in its order.
std::vector<RowNumber> FindAll(CRowTable& table, const std::string& text) {
    const RowPair pair{table.FindName("B"), text};
    const CRowIndex* const index = table.Index({&pair, 1});
    std::vector<RowNumber> rows;
    for (RowNumber row = index->Find(table, {&pair, 1}, kNoRow); row != kNoRow;
         row = index->Find(table, {&pair, 1}, row)) {
        rows.push_back(row);
    }
    return rows;
}

CRowTable& Table(CEngineDocument& document) { return *document.Tables().FindTable("L"); }

} // namespace

TEST(RowIndex, GivesAllRowsOfATextInDocumentOrder) {
    CEngineDocument document(Document(20, 7));
    EXPECT_EQ(FindAll(Table(document), "3"), (std::vector<RowNumber>{3, 10, 17}));
    EXPECT_EQ(FindAll(Table(document), "7"), std::vector<RowNumber>{});
    EXPECT_EQ(FindAll(Table(document), ""), std::vector<RowNumber>{});
}

TEST(RowIndex, TellsTextsOfOneHashApart) {
    // Among a quarter of a million texts some agree in the 32 bits that an index keeps.
    std::unordered_map<std::uint32_t, int> seen;
    int first = 0;
    int second = 0;
    for (int number = 0; second == 0; ++number) {
        const auto [place, bNew] = seen.emplace(static_cast<std::uint32_t>(HashText(Text(number))), number);
        first = place->second;
        second = bNew ? 0 : number;
    }
    CEngineDocument document("<r><L><i B=\"" + Text(first) + "\"/><i B=\"" + Text(second) + "\"/><i B=\"" +
                             Text(first) + "\"/></L></r>");
    EXPECT_EQ(FindAll(Table(document), Text(first)), (std::vector<RowNumber>{0, 2}));
    EXPECT_EQ(FindAll(Table(document), Text(second)), std::vector<RowNumber>{1});
}

TEST(RowIndex, IsMadeOnceForTheSameNames) {
    CEngineDocument document(Document(5, 5));
    CRowTable& table = Table(document);
    const RowPair b{table.FindName("B"), "1"};
    const RowPair other{table.FindName("B"), "2"};
    const RowPair a{table.FindName("A"), "1"};
    EXPECT_EQ(table.Index({&b, 1}), table.Index({&other, 1}));
    EXPECT_NE(table.Index({&b, 1}), table.Index({&a, 1}));
}

TEST(RowIndex, IsOverItsNamesInTheirOrder) {
    CEngineDocument document(Document(5, 5));
    CRowTable& table = Table(document);
    const NameNumber a = table.FindName("A");
    const NameNumber b = table.FindName("B");
    const RowPair pairs[] = {{a, "1"}, {b, "1"}};
    const RowPair swapped[] = {{b, "1"}, {a, "1"}};
    const CRowIndex index(table, pairs);
    EXPECT_TRUE(index.IsOver(pairs));
    EXPECT_FALSE(index.IsOver(swapped));
    EXPECT_FALSE(index.IsOver({pairs, 1}));
    EXPECT_TRUE(index.Covers(a));
    EXPECT_TRUE(index.Covers(b));
    EXPECT_FALSE(index.Covers(kNoName));
}

TEST(RowIndex, LeavesOutRowsThatLackOneOfItsNames) {
    CEngineDocument document("<r><L><i A=\"0\" B=\"x\"/><i B=\"x\"/><i A=\"2\"/></L></r>");
    CRowTable& table = Table(document);
    EXPECT_EQ(FindAll(table, "x"), (std::vector<RowNumber>{0, 1}));
    const RowPair pairs[] = {{table.FindName("B"), "x"}, {table.FindName("A"), "2"}};
    EXPECT_EQ(table.Index(pairs)->Find(table, pairs, kNoRow), kNoRow);
}

TEST(RowIndex, FindsEveryOneOfManyTexts) {
    CEngineDocument document(Document(5000, 5000));
    for (int row = 0; row < 5000; ++row) {
        ASSERT_EQ(FindAll(Table(document), Text(row)), std::vector<RowNumber>{static_cast<RowNumber>(row)});
    }
}

TEST(RowIndex, GrowsWithTheRowsThatAreAppended) {
    CEngineDocument document(Document(1, 1));
    ASSERT_EQ(FindAll(Table(document), "0").size(), 1u);
    for (int row = 1; row < 3000; ++row) {
        const CRequest item = CRequest("L", "").With("A", Text(row).c_str()).With("B", Text(row).c_str());
        ASSERT_EQ(WriteItem(State().currentDocument, &item), 0);
    }
    for (int row = 0; row < 3000; ++row) {
        ASSERT_EQ(FindAll(Table(document), Text(row)), std::vector<RowNumber>{static_cast<RowNumber>(row)});
    }
}

TEST(RowIndex, StaysUsableHoweverOftenATextChanges) {
    // Each change leaves a used slot behind: they must be swept up before none is free.
    CEngineDocument document(Document(3, 3));
    ASSERT_EQ(FindAll(Table(document), "0").size(), 1u);
    for (int round = 0; round < 10000; ++round) {
        const CRequest change = CRequest("L", "B", ("v" + Text(round)).c_str()).With("A", "1");
        ASSERT_EQ(WriteAttribute(State().currentDocument, &change), 0);
    }
    EXPECT_EQ(FindAll(Table(document), "v9999"), std::vector<RowNumber>{1});
    EXPECT_EQ(FindAll(Table(document), "v9998"), std::vector<RowNumber>{});
    EXPECT_EQ(FindAll(Table(document), "2"), std::vector<RowNumber>{2});
}

TEST(RowIndex, KeepsTheOrderOfRowsThatComeToShareAText) {
    CEngineDocument document(Document(50, 50));
    ASSERT_EQ(FindAll(Table(document), "0").size(), 1u);
    for (const int row : {30, 10, 49, 0, 20}) {
        const CRequest change = CRequest("L", "B", "shared").With("A", Text(row).c_str());
        ASSERT_EQ(WriteAttribute(State().currentDocument, &change), 0);
    }
    EXPECT_EQ(FindAll(Table(document), "shared"), (std::vector<RowNumber>{0, 10, 20, 30, 49}));
    for (const int row : {20, 0, 49}) {
        const CRequest change = CRequest("L", "B", "left").With("A", Text(row).c_str());
        ASSERT_EQ(WriteAttribute(State().currentDocument, &change), 0);
    }
    EXPECT_EQ(FindAll(Table(document), "shared"), (std::vector<RowNumber>{10, 30}));
    EXPECT_EQ(FindAll(Table(document), "left"), (std::vector<RowNumber>{0, 20, 49}));
}

TEST(RowIndex, OfOneTextForAllRowsFollowsThemAll) {
    CEngineDocument document(Document(2000, 1));
    ASSERT_EQ(FindAll(Table(document), "0").size(), 2000u);
    for (int row = 0; row < 900; ++row) {
        const CRequest query = CRequest("L", "").With("B", "0");
        ASSERT_EQ(RemoveItems(State().currentDocument, &query), 0);
    }
    const std::vector<RowNumber> left = FindAll(Table(document), "0");
    ASSERT_EQ(left.size(), 1100u);
    EXPECT_EQ(left.front(), 900u);
    EXPECT_EQ(left.back(), 1999u);
}
