// How the tables of a document stay in step with it: which container is found, and what the rows and their indexes
// give after every kind of change.

#include "rows/document_tables.h"

#include "engine_document.h"
#include "nodes/node_writers.h"
#include "store/module_state.h"
#include "store/node_readers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

/// The attribute A of the first child that passes the filter B = `value`; "-" when there is none.
std::string Find(CEngineDocument& document, const char* container, const char* value) {
    CRequest query = CRequest(container, "A").With("B", value);
    return ReadAttribute(&document.Object(), &query) == 0 ? query.FirstValue().c_str() : "-";
}

/// The attribute A of the first child that has it; "-" when there is none.
std::string First(CEngineDocument& document, const char* container) {
    CRequest query(container, "A");
    return ReadAttribute(&document.Object(), &query) == 0 ? query.FirstValue().c_str() : "-";
}

void Overwrite(const char* container, const char* a, const char* b) {
    const CRequest query = CRequest(container, "B", b).With("A", a);
    ASSERT_EQ(WriteAttribute(State().currentDocument, &query), 0);
}

void Append(const char* container, const char* a, const char* b) {
    const CRequest query = CRequest(container, "").With("A", a).With("B", b);
    ASSERT_EQ(WriteItem(State().currentDocument, &query), 0);
}

void Remove(const char* container, const char* a) {
    const CRequest query = CRequest(container, "").With("A", a);
    ASSERT_EQ(RemoveItems(State().currentDocument, &query), 0);
}

std::string Row(const std::string& a, const std::string& b) { return "<i A=\"" + a + "\" B=\"" + b + "\"/>"; }

std::string Rows(int count) {
    std::string rows;
    for (int row = 0; row < count; ++row) {
        rows += Row(std::to_string(row), std::to_string(row % 10));
    }
    return rows;
}

} // namespace

TEST(AnIndex, GivesTheFirstOfSeveralRows) {
    CEngineDocument document("<r><L>" + Row("1", "x") + Row("2", "y") + Row("3", "x") + "</L></r>");
    EXPECT_EQ(Find(document, "L", "x"), "1");
    EXPECT_EQ(Find(document, "L", "y"), "2");
    EXPECT_EQ(Find(document, "L", "z"), "-");
}

TEST(AnIndex, PassesOverRowsWithoutTheWantedAttribute) {
    CEngineDocument document("<r><L><i B=\"x\"/><i B=\"x\"/><i B=\"x\" A=\"3\"/></L></r>");
    EXPECT_EQ(Find(document, "L", "x"), "3");
}

TEST(AnIndex, FollowsAnOverwrittenAttribute) {
    CEngineDocument document("<r><L>" + Row("1", "x") + Row("2", "y") + Row("3", "x") + "</L></r>");
    ASSERT_EQ(Find(document, "L", "x"), "1");
    Overwrite("L", "1", "y");
    EXPECT_EQ(Find(document, "L", "x"), "3");
    EXPECT_EQ(Find(document, "L", "y"), "1") << "the first in document order, not in order of change";
    Overwrite("L", "1", "x");
    EXPECT_EQ(Find(document, "L", "x"), "1");
    EXPECT_EQ(Find(document, "L", "y"), "2");
    Overwrite("L", "1", "z");
    Overwrite("L", "3", "z");
    EXPECT_EQ(Find(document, "L", "x"), "-");
    EXPECT_EQ(Find(document, "L", "z"), "1");
}

TEST(AnIndex, FollowsAnAttributeThatIsOverwrittenWithItself) {
    CEngineDocument document("<r><L>" + Row("1", "x") + Row("2", "x") + "</L></r>");
    ASSERT_EQ(Find(document, "L", "x"), "1");
    Overwrite("L", "1", "x");
    EXPECT_EQ(Find(document, "L", "x"), "1");
    Remove("L", "1");
    EXPECT_EQ(Find(document, "L", "x"), "2");
}

TEST(AnIndex, StillFindsARowWhoseNewTextTheTreeRefused) {
    CEngineDocument document("<!DOCTYPE r [<!ATTLIST i B NMTOKENS #IMPLIED>]><r><L>" + Row("1", "x") + Row("2", "y") +
                             "</L></r>");
    ASSERT_EQ(Find(document, "L", "y"), "2");
    const CRequest blanks = CRequest("L", "B", " not tokens ").With("A", "2");
    ASSERT_EQ(WriteAttribute(State().currentDocument, &blanks), 1);
    EXPECT_EQ(Find(document, "L", "y"), "2");
}

TEST(AnIndex, TakesUpAnAppendedRow) {
    CEngineDocument document("<r><L>" + Row("1", "x") + "</L></r>");
    ASSERT_EQ(Find(document, "L", "y"), "-");
    Append("L", "2", "y");
    EXPECT_EQ(Find(document, "L", "y"), "2");
    Append("L", "3", "x");
    EXPECT_EQ(Find(document, "L", "x"), "1");
    Remove("L", "1");
    EXPECT_EQ(Find(document, "L", "x"), "3");
}

TEST(AnIndex, TakesUpTheFirstRowOfAnEmptyContainer) {
    CEngineDocument document("<r><L/></r>");
    ASSERT_EQ(Find(document, "L", "x"), "-");
    Append("L", "1", "x");
    EXPECT_EQ(Find(document, "L", "x"), "1");
}

TEST(AnIndex, ForgetsARemovedRow) {
    CEngineDocument document("<r><L>" + Row("1", "x") + Row("2", "x") + Row("3", "x") + "</L></r>");
    ASSERT_EQ(Find(document, "L", "x"), "1");
    Remove("L", "2");
    EXPECT_EQ(Find(document, "L", "x"), "1");
    Remove("L", "1");
    EXPECT_EQ(Find(document, "L", "x"), "3");
    Remove("L", "3");
    EXPECT_EQ(Find(document, "L", "x"), "-");
    Append("L", "4", "x");
    EXPECT_EQ(Find(document, "L", "x"), "4");
}

TEST(AnIndex, OverTwoAttributesFollowsEither) {
    CEngineDocument document("<r><L><i A=\"1\" B=\"x\" C=\"p\"/><i A=\"2\" B=\"x\" C=\"q\"/></L></r>");
    const auto find = [&](const char* b, const char* c) {
        CRequest query = CRequest("L", "A").With("B", b).With("C", c);
        return ReadAttribute(&document.Object(), &query) == 0 ? std::string(query.FirstValue().c_str()) : "-";
    };
    EXPECT_EQ(find("x", "q"), "2");
    const CRequest change = CRequest("L", "C", "q").With("A", "1");
    ASSERT_EQ(WriteAttribute(State().currentDocument, &change), 0);
    EXPECT_EQ(find("x", "q"), "1");
    EXPECT_EQ(find("x", "p"), "-");
}

TEST(AnIndex, OverOneOrderOfNamesAnswersThatOrderAndAnotherTheOther) {
    CEngineDocument document("<r><L><i A=\"1\" B=\"x\" C=\"y\"/><i A=\"2\" B=\"y\" C=\"x\"/></L></r>");
    CRequest query = CRequest("L", "A").With("B", "x").With("C", "y");
    EXPECT_EQ(ReadAttribute(&document.Object(), &query), 0);
    EXPECT_EQ(query.FirstValue(), "1");
    CRequest swapped = CRequest("L", "A").With("C", "x").With("B", "y");
    EXPECT_EQ(ReadAttribute(&document.Object(), &swapped), 0);
    EXPECT_EQ(swapped.FirstValue(), "2");
}

TEST(AnIndex, StaysRightWhenARowGetsTwoAttributesOfOneName) {
    CEngineDocument document("<r xmlns:m=\"1\" xmlns:n=\"2\"><L>" + Row("1", "x") + "</L></r>");
    ASSERT_EQ(Find(document, "L", "x"), "1");
    const CRequest twofold = CRequest("L", "").With("A", "2").With("n:B", "p").With("m:B", "q");
    ASSERT_EQ(WriteItem(State().currentDocument, &twofold), 0);
    EXPECT_EQ(Find(document, "L", "q"), "2") << "found by its second B";
    EXPECT_EQ(Find(document, "L", "p"), "2");
    EXPECT_EQ(Find(document, "L", "x"), "1");
    Remove("L", "2");
    EXPECT_EQ(Find(document, "L", "q"), "-");
    Overwrite("L", "1", "q");
    EXPECT_EQ(Find(document, "L", "q"), "1");
}

TEST(Indexes, BeyondTheirNumberStillAnswer) {
    // Forty attributes, each asked for twice: more indexes than are kept.
    std::string rows;
    for (int row = 0; row < 3; ++row) {
        rows += "<i A=\"" + std::to_string(row) + "\"";
        for (int attribute = 0; attribute < 40; ++attribute) {
            rows += " B" + std::to_string(attribute) + "=\"" + std::to_string(row * 40 + attribute) + "\"";
        }
        rows += "/>";
    }
    CEngineDocument document("<r><L>" + rows + "</L></r>");
    for (int round = 0; round < 2; ++round) {
        for (int attribute = 0; attribute < 40; ++attribute) {
            const std::string name = "B" + std::to_string(attribute);
            CRequest query = CRequest("L", "A").With(name.c_str(), std::to_string(80 + attribute).c_str());
            ASSERT_EQ(ReadAttribute(&document.Object(), &query), 0) << name;
            EXPECT_EQ(query.FirstValue(), "2");
        }
    }
    EXPECT_EQ(document.Tables().FindTable("L")->RowCount(), 3u);
}

TEST(FirstCarriers, FollowRemovalAndAppending) {
    CEngineDocument document("<r><L><i/><i A=\"1\"/><i A=\"2\"/></L></r>");
    EXPECT_EQ(First(document, "L"), "1");
    Remove("L", "1");
    EXPECT_EQ(First(document, "L"), "2");
    Remove("L", "2");
    EXPECT_EQ(First(document, "L"), "-");
    Append("L", "3", "x");
    EXPECT_EQ(First(document, "L"), "3");
}

TEST(AContainer, IsTheFirstOfItsNameBelowTheDocumentElement) {
    CEngineDocument document("<L><x><L>" + Row("inner", "x") + "</L></x><L>" + Row("later", "x") + "</L></L>");
    EXPECT_EQ(First(document, "L"), "inner");
}

TEST(AContainer, ThatIsRemovedGivesWayToTheNextOfItsName) {
    CEngineDocument document("<r><Outer><L k=\"1\">" + Row("nested", "x") + "</L></Outer><L>" + Row("later", "x") +
                             "</L></r>");
    ASSERT_EQ(First(document, "L"), "nested");
    const CRequest remove = CRequest("Outer", "").With("k", "1");
    ASSERT_EQ(RemoveItems(State().currentDocument, &remove), 0);
    EXPECT_EQ(First(document, "L"), "later");
}

TEST(AContainer, DeepInWhatIsRemovedGivesWayToo) {
    CEngineDocument document("<r><Outer><w><v><L>" + Row("nested", "x") + "</L></v></w></Outer><L>" +
                             Row("later", "x") + "</L></r>");
    ASSERT_EQ(First(document, "L"), "nested");
    const CRequest clear("Outer", "");
    ASSERT_EQ(RemoveItems(State().currentDocument, &clear), 0);
    EXPECT_EQ(First(document, "L"), "later");
}

TEST(AContainer, ThatIsRemovedWithoutAnotherIsGone) {
    CEngineDocument document("<r><Outer><L>" + Row("nested", "x") + "</L></Outer></r>");
    ASSERT_EQ(First(document, "L"), "nested");
    const CRequest clear("Outer", "");
    ASSERT_EQ(WriteItem(State().currentDocument, &clear), 0);
    EXPECT_EQ(First(document, "L"), "-");
    const CRequest write = CRequest("L", "").With("A", "1");
    EXPECT_EQ(WriteItem(State().currentDocument, &write), 1);
}

TEST(AContainer, KeepsItsRowsWhenAnotherIsRemoved) {
    CEngineDocument document("<r><L>" + Row("1", "x") + "</L><Outer><M><i/></M></Outer></r>");
    ASSERT_EQ(First(document, "L"), "1");
    const CRequest clear("Outer", "");
    ASSERT_EQ(RemoveItems(State().currentDocument, &clear), 0);
    Overwrite("L", "1", "y");
    EXPECT_EQ(Find(document, "L", "y"), "1");
}

TEST(AContainer, NamedItemAppearsWithTheFirstItem) {
    CEngineDocument document("<r><L/></r>");
    EXPECT_EQ(First(document, "Item"), "-");
    const CRequest early = CRequest("Item", "").With("A", "1");
    EXPECT_EQ(WriteItem(State().currentDocument, &early), 1);
    Append("L", "1", "x");
    EXPECT_EQ(WriteItem(State().currentDocument, &early), 0);
    EXPECT_EQ(document.Text("L"), "<L><Item A=\"1\" B=\"x\"><Item A=\"1\"/></Item></L>");
    EXPECT_EQ(First(document, "Item"), "1");
}

TEST(AContainer, NamedItemIsTheOneThatCameFirstInTheDocumentNotInTime) {
    CEngineDocument document("<r><Early/><Late/></r>");
    Append("Late", "late", "x");
    const CRequest intoLate = CRequest("Item", "").With("A", "in late");
    ASSERT_EQ(WriteItem(State().currentDocument, &intoLate), 0);
    Append("Early", "early", "x");
    EXPECT_EQ(First(document, "Item"), "-") << "the new item stands before the other one";
    const CRequest intoEarly = CRequest("Item", "").With("A", "in early");
    ASSERT_EQ(WriteItem(State().currentDocument, &intoEarly), 0);
    EXPECT_EQ(document.Text("Early"), "<Early><Item A=\"early\" B=\"x\"><Item A=\"in early\"/></Item></Early>");
}

TEST(AContainer, NamedItemGivesWayWhenItIsRemovedFromItsOwn) {
    CEngineDocument document(
        "<r><L><Item A=\"1\" B=\"x\"><j A=\"in 1\"/></Item><Item A=\"2\" B=\"x\"><j A=\"in 2\"/></Item></L></r>");
    EXPECT_EQ(First(document, "Item"), "in 1");
    Remove("L", "1");
    EXPECT_EQ(First(document, "Item"), "in 2");
}

TEST(AContainer, IsAlsoARowOfAnother) {
    CEngineDocument document("<r><Outer><L A=\"as row\" B=\"x\">" + Row("in L", "x") + "</L></Outer></r>");
    EXPECT_EQ(First(document, "Outer"), "as row");
    EXPECT_EQ(First(document, "L"), "in L");
    Overwrite("Outer", "as row", "y");
    EXPECT_EQ(First(document, "L"), "in L");
    EXPECT_EQ(Find(document, "Outer", "y"), "as row");
}

TEST(AContainer, WithoutChildElementsHasNoRows) {
    CEngineDocument document("<r><L> \n </L></r>");
    EXPECT_EQ(document.Tables().FindTable("L")->RowCount(), 0u);
}

TEST(Containers, BeyondTheirNumberAreFoundAnew) {
    std::string xml = "<r>";
    for (int number = 0; number < 200; ++number) {
        xml += "<L" + std::to_string(number) + ">" + Row(std::to_string(number), "x") + "</L" + std::to_string(number) +
               ">";
    }
    CEngineDocument document(xml + "</r>");
    for (int round = 0; round < 3; ++round) {
        for (int number = 0; number < 200; ++number) {
            const std::string name = "L" + std::to_string(number);
            ASSERT_EQ(First(document, name.c_str()), std::to_string(number));
            Overwrite(name.c_str(), std::to_string(number).c_str(), std::to_string(round).c_str());
            ASSERT_EQ(First(document, ("M" + name).c_str()), "-");
        }
    }
    for (int number = 0; number < 200; ++number) {
        const std::string name = "L" + std::to_string(number);
        EXPECT_EQ(Find(document, name.c_str(), "2"), std::to_string(number));
    }
}

TEST(Containers, BeyondTheirNumberAreForgotten) {
    CEngineDocument document("<r><L>" + Rows(3) + "</L></r>");
    Remove("L", "1");
    ASSERT_EQ(document.Tables().FindTable("L")->RowCount(), 3u) << "with a gap, as long as it is remembered";
    for (int number = 0; number < 64; ++number) {
        ASSERT_EQ(document.Tables().FindTable("none" + std::to_string(number)), nullptr);
    }
    EXPECT_EQ(document.Tables().FindTable("L")->RowCount(), 2u) << "read anew, without the gap";
}

TEST(Tables, ThatBecameMostlyGapsAreMadeAnew) {
    CEngineDocument document("<r><L>" + Rows(200) + "</L></r>");
    ASSERT_EQ(Find(document, "L", "5"), "5");
    for (int row = 0; row < 101; ++row) {
        Remove("L", std::to_string(row).c_str());
        const int next = (row + 5) / 10 * 10 + 5;
        ASSERT_EQ(Find(document, "L", "5"), std::to_string(next)) << row;
    }
    EXPECT_EQ(document.Tables().FindTable("L")->RowCount(), 99u) << "no gap is left";
    EXPECT_EQ(document.Tables().FindTable("L")->LiveCount(), 99u);
    EXPECT_EQ(First(document, "L"), "101");
    Append("L", "new", "5");
    EXPECT_EQ(Find(document, "L", "5"), "105");
}

TEST(Tables, OfFewRowsKeepTheirGaps) {
    CEngineDocument document("<r><L>" + Rows(20) + "</L></r>");
    for (int row = 0; row < 19; ++row) {
        Remove("L", std::to_string(row).c_str());
    }
    EXPECT_EQ(document.Tables().FindTable("L")->RowCount(), 20u);
    EXPECT_EQ(document.Tables().FindTable("L")->LiveCount(), 1u);
    EXPECT_EQ(First(document, "L"), "19");
}

TEST(Tables, AreEmptyAfterTheContainerWasEmptied) {
    CEngineDocument document("<r><L>" + Rows(30) + "<!--c--></L></r>");
    ASSERT_EQ(Find(document, "L", "5"), "5");
    const CRequest clear("L", "");
    ASSERT_EQ(RemoveItems(State().currentDocument, &clear), 0);
    const CRowTable* const table = document.Tables().FindTable("L");
    EXPECT_EQ(table->RowCount(), 0u);
    EXPECT_EQ(table->NameCount(), 0u);
    EXPECT_EQ(table->FirstBareRow(), kNoRow);
    EXPECT_EQ(Find(document, "L", "5"), "-");
    Append("L", "1", "5");
    EXPECT_EQ(Find(document, "L", "5"), "1");
}

TEST(Tables, BeginAnewAfterTheContainerWasEmptied) {
    CEngineDocument document("<r><L><i A=\"1\" B=\"x\"/><i A=\"2\" B=\"x\"/><i A=\"3\" B=\"x\"/></L></r>");
    ASSERT_EQ(Find(document, "L", "x"), "1");
    Remove("L", "1");
    ASSERT_EQ(First(document, "L"), "2") << "no longer in the first row";
    const CRequest clear("L", "");
    ASSERT_EQ(RemoveItems(State().currentDocument, &clear), 0);
    const CRequest lacking = CRequest("L", "").With("B", "y");
    ASSERT_EQ(WriteItem(State().currentDocument, &lacking), 0);
    EXPECT_EQ(Find(document, "L", "x"), "-");
    EXPECT_EQ(First(document, "L"), "-");
    Append("L", "4", "z");
    EXPECT_EQ(First(document, "L"), "4");
    EXPECT_EQ(Find(document, "L", "z"), "4");
    EXPECT_EQ(Find(document, "L", "y"), "-") << "that row has no A";
    const CRowTable& table = *document.Tables().FindTable("L");
    EXPECT_FALSE(table.HasRepeatedNames(0));
    EXPECT_FALSE(table.HasRepeatedNames(1));
}

TEST(Tables, ForgetWhichRowsCarriedANameWhenTheContainerWasEmptied) {
    CEngineDocument document("<r><L>" + Row("1", "x") + Row("2", "x") + "</L></r>");
    Remove("L", "1");
    ASSERT_EQ(First(document, "L"), "2");
    const CRequest clear("L", "");
    ASSERT_EQ(RemoveItems(State().currentDocument, &clear), 0);
    Append("L", "3", "x");
    EXPECT_EQ(First(document, "L"), "3") << "the first row again";
    EXPECT_FALSE(document.Tables().FindTable("L")->HasRepeatedNames(0));
    const CRequest lacking = CRequest("L", "").With("B", "y");
    ASSERT_EQ(WriteItem(State().currentDocument, &lacking), 0);
    EXPECT_EQ(Find(document, "L", "y"), "-") << "that row has no A";
    EXPECT_EQ(Find(document, "L", "x"), "3");
}

TEST(Tables, TakeNoNameOfTheFirstNewRowForARepeatedOneWhenTheContainerWasEmptied) {
    CEngineDocument document("<r><L>" + Row("1", "x") + "</L></r>");
    ASSERT_EQ(First(document, "L"), "1");
    const CRequest clear("L", "");
    ASSERT_EQ(RemoveItems(State().currentDocument, &clear), 0);
    Append("L", "2", "x");
    EXPECT_FALSE(document.Tables().FindTable("L")->HasRepeatedNames(0));
}

TEST(Tables, ForgetTheTextsOfNamesWhenTheContainerWasEmptied) {
    // Each name stands in a row of its own, and is compared with that of the row before: the second time with what the
    // name before it was the first time.
    constexpr int kNames = 40;
    CEngineDocument document("<r><L/></r>");
    for (const int shift : {0, kNames - 1}) {
        for (int number = 0; number < kNames; ++number) {
            const std::string name = "N" + std::to_string(10 + (number + shift) % kNames);
            const CRequest item = CRequest("L", "").With(name.c_str(), name.c_str());
            ASSERT_EQ(WriteItem(State().currentDocument, &item), 0);
        }
        for (int number = 0; number < kNames; ++number) {
            const std::string name = "N" + std::to_string(10 + number);
            CRequest query = CRequest("L", name.c_str()).With(name.c_str(), name.c_str());
            ASSERT_EQ(ReadAttribute(&document.Object(), &query), 0) << name << ", shift " << shift;
        }
        const CRequest clear("L", "");
        ASSERT_EQ(RemoveItems(State().currentDocument, &clear), 0);
    }
}

TEST(Tables, KnowWhetherEveryRowHasANameWhenOneIsGone) {
    CEngineDocument document("<r><L><i B=\"x\"/><i A=\"2\" B=\"x\"/></L></r>");
    ASSERT_EQ(Find(document, "L", "x"), "2");
    Remove("L", "2");
    EXPECT_EQ(Find(document, "L", "x"), "-") << "the row that is left has no A";
}

TEST(Tables, KnowTheFirstChildWithoutAttributes) {
    CEngineDocument document("<r><L><i/><i/><!--c-->text</L></r>");
    EXPECT_EQ(document.Tables().FindTable("L")->FirstBareRow(), 2u);
}

TEST(Tables, KnowWhetherARowHasTwoAttributesOfOneBaseName) {
    CEngineDocument document("<r xmlns:m=\"1\" xmlns:n=\"2\"><L><i a=\"\" b=\"\"/><i m:a=\"\" n:a=\"\"/><i m:a=\"\"/>"
                             "<i a=\"\" b=\"\" m:b=\"\"/></L></r>");
    const CRowTable& table = *document.Tables().FindTable("L");
    EXPECT_FALSE(table.HasRepeatedNames(0));
    EXPECT_TRUE(table.HasRepeatedNames(1));
    EXPECT_FALSE(table.HasRepeatedNames(2));
    EXPECT_TRUE(table.HasRepeatedNames(3));
}
