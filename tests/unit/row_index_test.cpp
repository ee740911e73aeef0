// The hash table behind the lookups, on tables that are large enough to make it grow and to fill it with gaps.

#include "rows/row_index.h"

#include "engine_document.h"
#include "nodes/node_writers.h"
#include "platform/random.h"
#include "platform/text_hash.h"
#include "rows/row_filter.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>

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
    const CRowIndex* const index = table.Index({&pair, 1}, kNoName);
    std::vector<RowNumber> rows;
    for (RowNumber row = index->Find(table, {&pair, 1}, kNoRow); row != kNoRow;
         row = index->Find(table, {&pair, 1}, row)) {
        rows.push_back(row);
    }
    return rows;
}

/// The part of a text's hash that an index over one name keeps.
std::uint32_t KeptHash(const std::string& text) {
    const std::uint64_t hash = HashText(std::string_view(text));
    return static_cast<std::uint32_t>(hash ^ hash >> 32);
}

/// Two numbers that agree in it: among a quarter of a million texts some do.
std::pair<int, int> TextsOfOneHash() {
    std::unordered_map<std::uint32_t, int> seen;
    for (int number = 0;; ++number) {
        const auto [place, bNew] = seen.emplace(KeptHash(Text(number)), number);
        if (!bNew) {
            return {place->second, number};
        }
    }
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
    const auto [first, second] = TextsOfOneHash();
    CEngineDocument document("<r><L><i B=\"" + Text(first) + "\"/><i B=\"" + Text(second) + "\"/><i B=\"" +
                             Text(first) + "\"/></L></r>");
    EXPECT_EQ(FindAll(Table(document), Text(first)), (std::vector<RowNumber>{0, 2}));
    EXPECT_EQ(FindAll(Table(document), Text(second)), std::vector<RowNumber>{1});
}

TEST(RowIndex, LetsARowGoWhoseOwnTextsHaveOneHash) {
    const auto [first, second] = TextsOfOneHash();
    CEngineDocument document("<r xmlns:p=\"p\"><L><i B=\"" + Text(first) + "\" p:B=\"" + Text(second) +
                             "\"/><i B=\"x\"/></L></r>");
    EXPECT_EQ(FindAll(Table(document), Text(first)), std::vector<RowNumber>{0});
    EXPECT_EQ(FindAll(Table(document), Text(second)), std::vector<RowNumber>{0});
    const CRequest remove = CRequest("L", "").With("B", Text(first).c_str());
    ASSERT_EQ(RemoveItems(&document.Object(), &remove), 0);
    EXPECT_EQ(FindAll(Table(document), Text(first)), std::vector<RowNumber>{});
    EXPECT_EQ(FindAll(Table(document), Text(second)), std::vector<RowNumber>{});
}

TEST(RowIndex, KeepsTheOthersOfThatHashWhenSuchARowGoes) {
    const auto [first, second] = TextsOfOneHash();
    const std::string twofold = "<i A=\"go\" B=\"" + Text(first) + "\" p:B=\"" + Text(second) + "\"/>";
    const std::string other = "<i B=\"" + Text(first) + "\"/>";
    for (const bool bBefore : {false, true}) {
        CEngineDocument document("<r xmlns:p=\"p\"><L>" + (bBefore ? other + twofold : twofold + other) + "</L></r>");
        const RowNumber left = bBefore ? 0 : 1;
        ASSERT_EQ(FindAll(Table(document), Text(second)), std::vector<RowNumber>{1 - left});
        const CRequest remove = CRequest("L", "").With("A", "go");
        ASSERT_EQ(RemoveItems(&document.Object(), &remove), 0);
        EXPECT_EQ(FindAll(Table(document), Text(first)), std::vector<RowNumber>{left});
        EXPECT_EQ(FindAll(Table(document), Text(second)), std::vector<RowNumber>{});
    }
}

TEST(RowIndex, LooksAtNoRowForATextThatNoneHasAnyMore) {
    CEngineDocument document(Document(20, 7));
    CRowTable& table = Table(document);
    ASSERT_EQ(FindAll(table, "3").size(), 3u);
    for (const char* const a : {"3", "10", "17"}) {
        const CRequest change = CRequest("L", "B", "new").With("A", a);
        ASSERT_EQ(WriteAttribute(&document.Object(), &change), 0);
    }
    const std::uint64_t before = table.LookedAt();
    EXPECT_EQ(FindAll(table, "3"), std::vector<RowNumber>{});
    EXPECT_EQ(table.LookedAt(), before);
}

TEST(RowIndex, IsMadeOnceForTheSameNames) {
    CEngineDocument document(Document(5, 5));
    CRowTable& table = Table(document);
    const RowPair b{table.FindName("B"), "1"};
    const RowPair other{table.FindName("B"), "2"};
    const RowPair a{table.FindName("A"), "1"};
    EXPECT_EQ(table.Index({&b, 1}, kNoName), table.Index({&other, 1}, kNoName));
    EXPECT_NE(table.Index({&b, 1}, kNoName), table.Index({&a, 1}, kNoName));
}

TEST(RowIndex, IsOverItsNamesInTheirOrder) {
    CEngineDocument document(Document(5, 5));
    CRowTable& table = Table(document);
    const NameNumber a = table.FindName("A");
    const NameNumber b = table.FindName("B");
    const RowPair pairs[] = {{a, "1"}, {b, "1"}};
    const RowPair swapped[] = {{b, "1"}, {a, "1"}};
    const CRowIndex index(table, pairs, kNoName);
    EXPECT_TRUE(index.IsOver(pairs, kNoName));
    EXPECT_FALSE(index.IsOver(pairs, a));
    EXPECT_FALSE(index.IsOver(swapped, kNoName));
    EXPECT_FALSE(index.IsOver({pairs, 1}, kNoName));
    EXPECT_TRUE(index.Covers(a));
    EXPECT_TRUE(index.Covers(b));
    EXPECT_FALSE(index.Covers(kNoName));
}

TEST(RowIndex, LeavesOutRowsThatLackOneOfItsNames) {
    CEngineDocument document("<r><L><i A=\"0\" B=\"x\"/><i B=\"x\"/><i A=\"2\"/></L></r>");
    CRowTable& table = Table(document);
    EXPECT_EQ(FindAll(table, "x"), (std::vector<RowNumber>{0, 1}));
    const RowPair pairs[] = {{table.FindName("B"), "x"}, {table.FindName("A"), "2"}};
    EXPECT_EQ(table.Index(pairs, kNoName)->Find(table, pairs, kNoRow), kNoRow);
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

namespace {

/// Rows that a lookup of the attribute `wanted` looks at in the table L, once its index is made; more than `most` of
/// them is what no document may bring about.
std::uint64_t LooksOf(CEngineDocument& document, const char* wanted,
                      const std::vector<std::pair<const char*, const char*>>& pairs, int32_t status) {
    const auto look = [&] {
        CRequest query("L", wanted);
        for (const auto& [name, value] : pairs) {
            query.With(name, value);
        }
        EXPECT_EQ(ReadAttribute(&document.Object(), &query), status);
    };
    look();
    const std::uint64_t before = Table(document).LookedAt();
    look();
    return Table(document).LookedAt() - before;
}

constexpr std::uint64_t kFewLooks = 3;

std::string Repeated(int count, const std::string& row) {
    std::string rows;
    for (int index = 0; index < count; ++index) {
        rows += row;
    }
    return rows;
}

std::string InList(const std::string& rows) { return "<r xmlns:n=\"1\" xmlns:m=\"2\"><L>" + rows + "</L></r>"; }

} // namespace

TEST(ALookup, LooksAtFewRowsWhereManyShareAKeyButLackTheAttribute) {
    CEngineDocument without(InList(Repeated(1000, "<i K=\"x\" T=\"1\"/>") + "<i K=\"y\" A=\"1\"/>"));
    EXPECT_LE(LooksOf(without, "A", {{"K", "x"}}, 1), kFewLooks);
    EXPECT_LE(LooksOf(without, "A", {{"K", "x"}, {"T", "1"}}, 1), kFewLooks);
    CEngineDocument last(InList(Repeated(1000, "<i K=\"x\"/>") + "<i K=\"x\" A=\"1\"/>"));
    EXPECT_LE(LooksOf(last, "A", {{"K", "x"}}, 0), kFewLooks);
}

TEST(ALookup, LooksAtFewRowsWhereOneHasABaseNameTwice) {
    std::string rows;
    for (int row = 0; row < 1000; ++row) {
        rows += "<i K=\"" + Text(row) + "\" A=\"" + Text(row) + "\"/>";
    }
    CEngineDocument document(InList(rows + "<i K=\"999\" n:K=\"twice\" A=\"last\"/>"));
    EXPECT_LE(LooksOf(document, "A", {{"K", "999"}}, 0), kFewLooks);
    EXPECT_GE(LooksOf(document, "A", {{"K", "999"}}, 0), 1u) << "the row that is found";
    EXPECT_LE(LooksOf(document, "A", {{"K", "twice"}}, 0), kFewLooks);
    EXPECT_LE(LooksOf(document, "A", {{"K", "twice"}, {"A", "last"}}, 0), kFewLooks);
    EXPECT_LE(LooksOf(document, "A", {{"K", "none"}}, 1), kFewLooks);
}

TEST(ALookup, LooksAtFewRowsWhereAllHaveBaseNamesTwice) {
    std::string rows;
    for (int row = 0; row < 1000; ++row) {
        rows += "<i K=\"" + Text(row) + "\" n:K=\"other" + Text(row) + "\" m:K=\"same\" T=\"1\" n:T=\"1\"/>";
    }
    CEngineDocument document(InList(rows));
    EXPECT_LE(LooksOf(document, "K", {{"K", "999"}}, 0), kFewLooks);
    EXPECT_LE(LooksOf(document, "K", {{"K", "other999"}}, 0), kFewLooks);
    EXPECT_LE(LooksOf(document, "K", {{"K", "999"}, {"T", "2"}}, 1), kFewLooks);
    EXPECT_LE(LooksOf(document, "K", {{"K", "none"}, {"T", "1"}}, 0), kFewLooks) << "the two T count for both";
    EXPECT_LE(LooksOf(document, "K", {{"K", "none"}, {"T", "2"}}, 1), kFewLooks);
}

TEST(ALookup, LooksAtFewRowsForANameThatNoRowCarries) {
    CEngineDocument document(InList(Repeated(1000, "<i K=\"x\" n:K=\"y\"/>")));
    EXPECT_LE(LooksOf(document, "K", {{"K", "x"}, {"none", "1"}}, 1), kFewLooks);
}

TEST(ALookup, FindsARowWithSoManyAttributesOfOneNameThatItIsKeptAside) {
    std::string twins;
    std::string declarations;
    for (int number = 0; number < 100; ++number) {
        declarations += " xmlns:p" + Text(number) + "=\"" + Text(number) + "\"";
        twins += " p" + Text(number) + ":K=\"" + Text(number) + "\"";
    }
    CEngineDocument document("<r" + declarations + "><L><i K=\"1\" A=\"no\"/><i" + twins + " A=\"yes\"/></L></r>");
    EXPECT_LE(LooksOf(document, "A", {{"K", "57"}}, 0), kFewLooks);
    CRequest query = CRequest("L", "A").With("K", "99");
    ASSERT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(query.FirstValue(), "yes");
    const CRequest remove = CRequest("L", "").With("K", "99");
    ASSERT_EQ(RemoveItems(&document.Object(), &remove), 0);
    CRequest again = CRequest("L", "A").With("K", "57");
    EXPECT_EQ(ReadAttribute(&document.Object(), &again), 1);
}

TEST(ALookup, FindsRowsKeptAsideAndOthersInDocumentOrder) {
    std::string declarations;
    std::string low;
    std::string high;
    for (int number = 0; number < 100; ++number) {
        declarations += " xmlns:p" + Text(number) + "=\"" + Text(number) + "\"";
        low += " p" + Text(number) + ":B=\"" + Text(number) + "\"";
        high += " p" + Text(number) + ":B=\"" + Text(number + 50) + "\"";
    }
    CEngineDocument document("<r" + declarations + "><L><i" + low + "/><i B=\"7\"/><i" + high +
                             "/><i B=\"70\"/><i B=\"120\"/><i" + low + "/></L></r>");
    EXPECT_EQ(FindAll(Table(document), "7"), (std::vector<RowNumber>{0, 1, 5}));
    EXPECT_EQ(FindAll(Table(document), "70"), (std::vector<RowNumber>{0, 2, 3, 5}));
    EXPECT_EQ(FindAll(Table(document), "120"), (std::vector<RowNumber>{2, 4}));
}

TEST(ARowFilter, FindsAllRowsThatPassWhateverItsCount) {
    CEngineDocument document(InList("<i K=\"x\" M=\"y\"/><!--c--><i K=\"x\"/><i K=\"z\" n:K=\"x\"/><i M=\"y\"/>"));
    const AnsiString k("K");
    const AnsiString x("x");
    const AnsiString z("z");
    const auto found = [&](int32_t count, const std::vector<const AnsiString*>& texts) {
        CRowFilter filter(count, texts.size());
        for (const AnsiString* const text : texts) {
            filter.AddPair(Table(document), k, *text);
        }
        std::vector<RowNumber> rows;
        filter.FindAll(Table(document), rows);
        return rows;
    };
    EXPECT_EQ(found(1, {&x}), (std::vector<RowNumber>{0, 2, 3})) << "by an index";
    EXPECT_EQ(found(1, {&x, &z}), (std::vector<RowNumber>{0, 2, 3}));
    EXPECT_EQ(found(2, {&x, &z}), std::vector<RowNumber>{3});
    EXPECT_EQ(found(2, {&x}), std::vector<RowNumber>{});
    EXPECT_EQ(found(-1, {&x}), std::vector<RowNumber>{});
}

TEST(ALookup, NoLongerFindsARowKeptAsideForItsManyKeysWhenItIsRemoved) {
    // Of two names with nine texts each a row has 81 keys.
    std::string twins;
    std::string declarations;
    for (int number = 0; number < 9; ++number) {
        declarations += " xmlns:p" + Text(number) + "=\"" + Text(number) + "\"";
        twins += " p" + Text(number) + ":K=\"" + Text(number) + "\" p" + Text(number) + ":M=\"" + Text(number) + "\"";
    }
    CEngineDocument document("<r" + declarations + "><L><i K=\"x\" A=\"no\"/><i" + twins + " A=\"yes\"/></L></r>");
    for (const char* const text : {"0", "4", "8"}) {
        CRequest query = CRequest("L", "A").With("K", text).With("M", "5");
        ASSERT_EQ(ReadAttribute(&document.Object(), &query), 0) << text;
        EXPECT_EQ(query.FirstValue(), "yes");
    }
    const CRequest remove = CRequest("L", "").With("K", "3").With("M", "5");
    ASSERT_EQ(RemoveItems(&document.Object(), &remove), 0);
    for (const char* const text : {"0", "4", "8"}) {
        CRequest query = CRequest("L", "A").With("K", text).With("M", "0");
        EXPECT_EQ(ReadAttribute(&document.Object(), &query), 1) << text;
    }
}

TEST(ALookup, OfMorePairsThanAnIndexKeepsShapesOfFindsARowWithABaseNameTwice) {
    std::string attributes = " p:A0=\"other\"";
    CRequest query("L", "A0");
    for (int number = 0; number < 40; ++number) {
        attributes += " A" + Text(number) + "=\"" + Text(number) + "\"";
        query.With(("A" + Text(number)).c_str(), Text(number).c_str());
    }
    CEngineDocument document("<r xmlns:p=\"p\"><L><i A0=\"no\"/><i" + attributes + "/></L></r>");
    ASSERT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(query.FirstValue(), "other") << "the first of the two";
}

TEST(ALookup, OfAsManyPairsAsAShapeHasBitsForAndOfOneMoreFindsARowWhoseRepeatedNameMakesUpForAnother) {
    for (const int count : {32, 33}) {
        // One name twice with the text of its pair, and the last name not at all.
        std::string attributes = " p:A0=\"0\"";
        CRequest query("L", "A1");
        for (int number = 0; number < count; ++number) {
            query.With(("A" + Text(number)).c_str(), Text(number).c_str());
            if (number < count - 1) {
                attributes += " A" + Text(number) + "=\"" + Text(number) + "\"";
            }
        }
        const std::string last = " A" + Text(count - 1) + "=\"none\"";
        CEngineDocument document("<r xmlns:p=\"p\"><L><i" + last + "/><i" + attributes + "/></L></r>");
        ASSERT_EQ(ReadAttribute(&document.Object(), &query), 0) << count;
        EXPECT_EQ(query.FirstValue(), "1");
    }
}

TEST(ALookup, FindsARowThatPassesInMoreWaysThanAnIndexKeepsShapesOf) {
    constexpr int kPairs = 24;
    std::string attributes = " p:A0=\"0\"";
    for (int number = 0; number < kPairs; ++number) {
        attributes += " A" + Text(number) + "=\"" + Text(number) + "\"";
    }
    CEngineDocument document("<r xmlns:p=\"p\"><L><i" + attributes + "/></L></r>");
    for (int other = 1; other < kPairs; ++other) { // any one of the pairs may be another text
        CRequest query("L", "A0");
        for (int number = 0; number < kPairs; ++number) {
            query.With(("A" + Text(number)).c_str(), number == other ? "none" : Text(number).c_str());
        }
        EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0) << other;
    }
}

TEST(ALookup, ForAnAttributeThatOnlyARemovedRowHadFindsNothing) {
    CEngineDocument document(InList("<i K=\"x\" A=\"1\" n:A=\"1\"/><i K=\"x\"/>"));
    EXPECT_LE(LooksOf(document, "A", {{"K", "x"}}, 0), kFewLooks);
    const CRequest first = CRequest("L", "").With("A", "1");
    ASSERT_EQ(RemoveItems(&document.Object(), &first), 0);
    EXPECT_LE(LooksOf(document, "A", {{"K", "x"}}, 1), kFewLooks);
}

TEST(ALookup, ForAnAttributeThatARowComesToLackOrToHaveStaysRight) {
    CEngineDocument document(InList("<i K=\"x\" A=\"1\"/><i K=\"x\" A=\"2\"/>"));
    EXPECT_LE(LooksOf(document, "A", {{"K", "x"}}, 0), kFewLooks);
    const CRequest lacking = CRequest("L", "").With("K", "y");
    ASSERT_EQ(WriteItem(&document.Object(), &lacking), 0);
    EXPECT_LE(LooksOf(document, "A", {{"K", "y"}}, 1), kFewLooks);
    ASSERT_EQ(RemoveItems(&document.Object(), &lacking), 0);
    EXPECT_LE(LooksOf(document, "A", {{"K", "x"}}, 0), kFewLooks);
    EXPECT_LE(LooksOf(document, "A", {{"K", "y"}}, 1), kFewLooks);
}

TEST(TheHashOfTexts, IsTheOneThatIsPublished) {
    // Key and messages of the paper that introduced it, for two rounds a block and four at the end.
    unsigned char message[16];
    for (unsigned char index = 0; index < sizeof message; ++index) {
        message[index] = index;
    }
    constexpr HashKey kKey = {0x0706050403020100u, 0x0F0E0D0C0B0A0908u};
    EXPECT_EQ((SipHash<2, 4>(kKey, message, 0)), 0x726FDB47DD0E0E31u);
    EXPECT_EQ((SipHash<2, 4>(kKey, message, 1)), 0x74F839C593DC67FDu);
    EXPECT_EQ((SipHash<2, 4>(kKey, message, 15)), 0xA129CA6149BE45E5u);
}

TEST(TheHashOfTexts, IsUnderAKeyThatNobodyForesees) {
    const HashKey other = {kProcessKey.first + 1, kProcessKey.second};
    EXPECT_NE((SipHash<1, 3>(kProcessKey, "text", 4)), (SipHash<1, 3>(other, "text", 4)));
    EXPECT_NE(platform::RandomNumber(), platform::RandomNumber());
    EXPECT_NE(kProcessKey.first, kProcessKey.second);
}

TEST(TheHashOfTexts, IsOfTheirOwnCharactersOnly) {
    const std::string_view first = "name1";
    const std::string_view second = "name2";
    EXPECT_EQ(HashText(first.substr(0, 4)), HashText(second.substr(0, 4)));
    EXPECT_NE(HashText(first), HashText(second));
}
