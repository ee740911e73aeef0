// All rows of a document, one by one.

#include "nodes/row_access.h"

#include "engine_document.h"
#include "nodes/node_writers.h"
#include "platform/folders.h"
#include "scratch_folder.h"
#include "store/node_readers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <numeric>

using ::testing::ElementsAre;

namespace {

std::vector<std::string> Names(const std::vector<ContainerInfo>& containers) {
    std::vector<std::string> names;
    for (const ContainerInfo& container : containers) {
        names.push_back(std::string(container.m_strName.c_str()) + (container.m_bFirst ? "" : " again") + " " +
                        std::to_string(container.m_nRows));
    }
    return names;
}

std::vector<RowValues> Rows(CEngineDocument& document, const char* container) {
    std::vector<RowValues> rows;
    EXPECT_TRUE(ListRows(&document.Object(), container, rows));
    return rows;
}

std::vector<RowNumber> Found(CEngineDocument& document, const char* name, const char* value) {
    std::vector<RowNumber> rows;
    FindRows(&document.Object(), "L", name, value, rows);
    return rows;
}

std::string At(DomPosition position) { return std::to_string(position.line) + ":" + std::to_string(position.column); }

} // namespace

TEST(RowAccess, ListsWhatHoldsRowsAndWhatStandsBelowTheDocumentElement) {
    CEngineDocument document("<r><Files><Item a=\"1\"/><Item><Deep><Item/></Deep></Item></Files><Empty/><!--c-->"
                             "<Files><Item/></Files>text</r>");
    std::vector<ContainerInfo> containers;
    EXPECT_TRUE(ListContainers(&document.Object(), containers));
    EXPECT_THAT(Names(containers), ElementsAre("Files 2", "Item again 1", "Deep 1", "Empty 0", "Files again 1"));
    EXPECT_EQ(containers[1].m_nDepth, 2u);
}

TEST(RowAccess, ListsRowsWithTheirCellsAndBareRowsWithTheirKind) {
    CEngineDocument document("<r xmlns:n=\"u\"><L><Item a=\"1\" n:b=\"2\"/><!--note-->text<![CDATA[cd]]><?do it?>"
                             "<Other><i/></Other></L></r>");
    const std::vector<RowValues> rows = Rows(document, "L");
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[0].m_strText, "Item");
    ASSERT_EQ(rows[0].m_cells.size(), 2u);
    EXPECT_EQ(rows[0].m_cells[1].m_strName, "b");
    EXPECT_EQ(rows[0].Find("b")->m_strValue, "2");
    EXPECT_EQ(rows[0].Find("c"), nullptr);
    EXPECT_EQ(rows[1].m_kind, DomKind::Comment);
    EXPECT_EQ(rows[1].m_strText, "note");
    EXPECT_EQ(rows[2].m_kind, DomKind::Text);
    EXPECT_EQ(rows[2].m_strText, "text");
    EXPECT_EQ(rows[3].m_kind, DomKind::Cdata);
    EXPECT_EQ(rows[4].m_kind, DomKind::Instruction);
    EXPECT_EQ(rows[5].m_strText, "Other");
    EXPECT_TRUE(rows[5].m_bHasChildren);
}

TEST(RowAccess, SaysWhatIsMissing) {
    CEngineDocument document("<r><L/></r>");
    std::vector<RowValues> rows;
    EXPECT_EQ(ListRows(&document.Object(), "none", rows).m_what, What::NoContainer);
    EXPECT_EQ(ListRows(nullptr, "L", rows).m_what, What::NoDocument);
    EXPECT_EQ(SetCell(&document.Object(), "L", 0, "a", "b").m_what, What::NoSuchRow);
    const RowNumber gone[] = {0};
    EXPECT_EQ(RemoveRows(&document.Object(), "L", gone).m_what, What::NoSuchRow);
    std::vector<ContainerInfo> containers;
    EXPECT_EQ(ListContainers(nullptr, containers).m_what, What::NoDocument);
    EXPECT_EQ(AppendRow(&document.Object(), "none", {}).m_what, What::NoContainer);
    std::vector<RowNumber> found;
    EXPECT_EQ(FindRows(&document.Object(), "none", "a", "b", found).m_what, What::NoContainer);
}

TEST(RowAccess, SaysWhetherRowsWereFound) {
    CEngineDocument document("<r><L><i a=\"x\"/></L></r>");
    std::vector<RowNumber> rows;
    EXPECT_EQ(FindRows(&document.Object(), "L", "a", "y", rows).m_what, What::NoSuchRow);
    EXPECT_EQ(FindRows(&document.Object(), "L", "a", "x", rows).m_what, What::Done);
}

TEST(RowAccess, SetsNothingInARowThatIsNotThere) {
    CEngineDocument document("<r><L><i a=\"x\"/><i a=\"y\"/></L></r>");
    EXPECT_EQ(SetCell(&document.Object(), "L", 2, "a", "z").m_what, What::NoSuchRow);
    EXPECT_EQ(AddCell(&document.Object(), "L", 2, "b", "z").m_what, What::NoSuchRow);
    const RowNumber first[] = {0};
    ASSERT_TRUE(RemoveRows(&document.Object(), "L", first));
    EXPECT_EQ(SetCell(&document.Object(), "L", 0, "a", "z").m_what, What::NoSuchRow);
    EXPECT_EQ(AddCell(&document.Object(), "L", 0, "b", "z").m_what, What::NoSuchRow);
    EXPECT_EQ(document.Text("L"), "<L><i a=\"y\"/></L>");
}

TEST(RowAccess, LooksAtNoRowBesideThoseThatItFinds) {
    std::string xml = "<r><L>";
    for (int row = 0; row < 500; ++row) {
        xml += "<i a=\"" + std::to_string(row % 100) + "\"/>";
    }
    CEngineDocument document(xml + "</L></r>");
    CRowTable* const table = document.Tables().FindTable("L");
    ASSERT_NE(table, nullptr);
    const std::uint64_t before = table->LookedAt();
    EXPECT_THAT(Found(document, "a", "7"), ElementsAre(7u, 107u, 207u, 307u, 407u));
    EXPECT_GE(table->LookedAt() - before, 5u) << "each row that was found is compared";
    EXPECT_LT(table->LookedAt() - before, 20u);
}

TEST(RowAccess, FindsRowsBeyondACommentToo) {
    CEngineDocument document("<r><L><i a=\"x\"/><!--c--><i a=\"y\"/><i a=\"x\"/></L></r>");
    EXPECT_THAT(Found(document, "a", "x"), ElementsAre(0u, 3u));
    EXPECT_THAT(Found(document, "a", "z"), ElementsAre());
    EXPECT_THAT(Found(document, "b", "x"), ElementsAre());
}

TEST(RowAccess, FindsRowsByEitherOfTwoAttributesOfOneName) {
    CEngineDocument document("<r xmlns:n=\"u\"><L><i a=\"x\"/><i a=\"y\" n:a=\"x\"/><i a=\"y\"/></L></r>");
    EXPECT_THAT(Found(document, "a", "x"), ElementsAre(0u, 1u));
    EXPECT_THAT(Found(document, "a", "y"), ElementsAre(1u, 2u));
}

TEST(RowAccess, SetsTheTextOfACell) {
    CEngineDocument document("<r><L><i a=\"x\"/><i a=\"x\" b=\"1\"/></L></r>");
    ASSERT_THAT(Found(document, "a", "x"), ElementsAre(0u, 1u));
    EXPECT_TRUE(SetCell(&document.Object(), "L", 1, "a", "y"));
    EXPECT_THAT(Found(document, "a", "y"), ElementsAre(1u));
    EXPECT_EQ(SetCell(&document.Object(), "L", 0, "b", "y").m_what, What::NoSuchRow);
    const COutcome refused = SetCell(&document.Object(), "L", 0, "a", "\x01");
    EXPECT_EQ(refused.m_what, What::Failed);
    EXPECT_EQ(refused.m_reason.m_kind, ReasonKind::Refused);
    EXPECT_EQ(document.Text("L"), "<L><i a=\"x\"/><i a=\"y\" b=\"1\"/></L>");
}

TEST(RowAccess, AddsAnAttributeThatLookupsFind) {
    CEngineDocument document("<r><L><i a=\"1\"/><i a=\"2\" b=\"x\"/><i a=\"3\"/></L></r>");
    CRequest firstWithB("L", "b");
    ASSERT_EQ(ReadAttribute(&document.Object(), &firstWithB), 0);
    ASSERT_THAT(Found(document, "b", "x"), ElementsAre(1u));
    EXPECT_TRUE(AddCell(&document.Object(), "L", 2, "b", "x"));
    EXPECT_TRUE(AddCell(&document.Object(), "L", 0, "b", "first"));
    EXPECT_THAT(Found(document, "b", "x"), ElementsAre(1u, 2u));
    CRequest again("L", "b");
    ASSERT_EQ(ReadAttribute(&document.Object(), &again), 0);
    EXPECT_EQ(again.FirstValue(), "first") << "the first row carries it now";
    EXPECT_EQ(document.Text("L"), "<L><i a=\"1\" b=\"first\"/><i a=\"2\" b=\"x\"/><i a=\"3\" b=\"x\"/></L>");
}

TEST(RowAccess, KeepsTheOtherCellsOfARowThatGainsAnAttribute) {
    CEngineDocument document("<r><L><i a=\"1\" c=\"3\"/></L></r>");
    ASSERT_EQ(Rows(document, "L").size(), 1u); // the table is made before
    EXPECT_TRUE(AddCell(&document.Object(), "L", 0, "b", "2"));
    const RowValues row = Rows(document, "L").at(0);
    ASSERT_EQ(row.m_cells.size(), 3u);
    EXPECT_EQ(row.Find("a")->m_strValue, "1");
    EXPECT_EQ(row.Find("c")->m_strValue, "3");
    EXPECT_EQ(row.Find("b")->m_strValue, "2");
    EXPECT_THAT(Found(document, "c", "3"), ElementsAre(0u));
}

TEST(RowAccess, AddsANameThatNoRowHad) {
    CEngineDocument document("<r><L><i a=\"1\"/><i a=\"2\"/></L></r>");
    EXPECT_TRUE(AddCell(&document.Object(), "L", 1, "new", "x"));
    EXPECT_THAT(Found(document, "new", "x"), ElementsAre(1u));
}

TEST(RowAccess, AddsAnAttributeWithAPrefixUnderItsBaseName) {
    CEngineDocument document("<r xmlns:n=\"u\"><L><i a=\"1\"/></L></r>");
    ASSERT_EQ(Rows(document, "L").size(), 1u);
    EXPECT_TRUE(AddCell(&document.Object(), "L", 0, "n:b", "x"));
    EXPECT_THAT(Found(document, "b", "x"), ElementsAre(0u));
    EXPECT_EQ(document.Text("L"), "<L><i a=\"1\" n:b=\"x\"/></L>");
}

TEST(RowAccess, AddsNoSecondAttributeOfAName) {
    CEngineDocument document("<r xmlns:n=\"u\"><L><i a=\"1\"/><i n:a=\"1\"/><!--c--></L></r>");
    const std::string before = document.Text("L");
    for (const RowNumber row : {0u, 1u, 2u}) {
        EXPECT_EQ(AddCell(&document.Object(), "L", row, "a", "2").m_what, What::Failed) << row;
    }
    EXPECT_EQ(AddCell(&document.Object(), "L", 0, "1b", "2").m_what, What::Failed);
    EXPECT_EQ(AddCell(&document.Object(), "L", 0, "b", "\x01").m_what, What::Failed);
    EXPECT_EQ(AddCell(&document.Object(), "L", 0, "unknown:b", "2").m_what, What::Failed);
    EXPECT_EQ(document.Text("L"), before);
}

TEST(RowAccess, AppendsARowAlsoWhereAnEqualOneIs) {
    CEngineDocument document("<r><L><Item a=\"1\"/></L></r>");
    const NamedValue values[] = {{"a", "1"}, {"b", "2"}};
    EXPECT_TRUE(AppendRow(&document.Object(), "L", {values, 1}));
    EXPECT_TRUE(AppendRow(&document.Object(), "L", values));
    EXPECT_EQ(document.Text("L"), "<L><Item a=\"1\"/><Item a=\"1\"/><Item a=\"1\" b=\"2\"/></L>");
}

TEST(RowAccess, RemovesTheRowsThatAreNamedAndNoOthers) {
    std::string xml = "<r><L>";
    for (int row = 0; row < 500; ++row) {
        xml += "<i a=\"" + std::to_string(row) + "\"/>";
    }
    CEngineDocument document(xml + "</L></r>");
    ASSERT_THAT(Found(document, "a", "7"), ElementsAre(7u));
    std::vector<RowNumber> rows(499);
    std::iota(rows.begin(), rows.end(), 0u);
    EXPECT_TRUE(RemoveRows(&document.Object(), "L", rows));
    EXPECT_EQ(document.Text("L"), "<L><i a=\"499\"/></L>");
    EXPECT_THAT(Found(document, "a", "7"), ElementsAre());
    EXPECT_THAT(Found(document, "a", "499"), ElementsAre(Rows(document, "L")[0].m_nRow));
}

TEST(RowAccess, RemovesARowOnceThatIsNamedTwice) {
    CEngineDocument document("<r><L><i a=\"1\"/><i a=\"2\"/><i a=\"3\"/></L></r>");
    const RowNumber twice[] = {1, 1};
    EXPECT_TRUE(RemoveRows(&document.Object(), "L", twice));
    EXPECT_EQ(document.Text("L"), "<L><i a=\"1\"/><i a=\"3\"/></L>");
    EXPECT_EQ(document.Tables().FindTable("L")->LiveCount(), 2u);
}

TEST(RowAccess, CallsOtherWhatCanBeNoRow) {
    CEngineDocument document("<?xml version=\"1.0\"?><r/>");
    const pugi::xml_node root = document.Root("r").root();
    EXPECT_EQ(document.Tables().Dom().Kind(root), DomKind::Other);
    EXPECT_EQ(document.Tables().Dom().Kind(root.first_child()), DomKind::Other) << "the declaration";
}

TEST(RowAccess, AddsAContainerThatOperationsThenFind) {
    CEngineDocument document("<r><L/></r>");
    const CRequest item = CRequest("Jobs", "").With("Name", "x");
    ASSERT_EQ(WriteItem(&document.Object(), &item), 1);
    EXPECT_TRUE(AddContainer(&document.Object(), "Jobs"));
    EXPECT_EQ(AddContainer(&document.Object(), "Jobs").m_what, What::AlreadyThere);
    EXPECT_EQ(AddContainer(&document.Object(), "a b").m_what, What::Failed);
    EXPECT_EQ(AddContainer(&document.Object(), "q:Jobs").m_what, What::Failed) << "a prefix that nobody declares";
    EXPECT_EQ(WriteItem(&document.Object(), &item), 0);
    EXPECT_EQ(document.Text("Jobs"), "<Jobs><Item Name=\"x\"/></Jobs>");
}

TEST(Positions, AreWhereAPersonLooksForThem) {
    const CMemoryFile file("<?xml version=\"1.0\"?>\n<r>\r\n  <L>\n    <Item a=\"ä\" \n      b = 'x'/>\n    <!--c-->\n"
                           "    <Item\n a=\"&lt;>\"\tb=\"/\"/>words\n  </L>\n</r>\n");
    CXmlObject document;
    ASSERT_EQ(document.OpenFile(file.Path(), nullptr, DomPositions::Noted), 0);
    std::vector<RowValues> rows;
    ASSERT_TRUE(ListRows(&document, "L", rows));
    ASSERT_EQ(rows.size(), 4u);
    EXPECT_EQ(At(rows[0].m_position), "4:5");
    EXPECT_EQ(At(rows[0].m_cells[0].m_position), "4:11");
    EXPECT_EQ(At(rows[0].m_cells[1].m_position), "5:7");
    EXPECT_EQ(At(rows[1].m_position), "6:5");
    EXPECT_EQ(At(rows[2].m_position), "7:5");
    EXPECT_EQ(At(rows[2].m_cells[0].m_position), "8:2");
    EXPECT_EQ(At(rows[2].m_cells[1].m_position), "8:12");
    EXPECT_EQ(At(rows[3].m_position), "8:19");
    std::vector<ContainerInfo> containers;
    ASSERT_TRUE(ListContainers(&document, containers));
    EXPECT_EQ(At(containers[0].m_position), "3:3");
}

TEST(Positions, CountEveryLineEndWithinAnElementOnce) {
    const CMemoryFile file("<r><L>\r<i a='1'\r b='2'\r\n  c='3'\rd='4'\n\re='5'/></L></r>");
    CXmlObject document;
    ASSERT_EQ(document.OpenFile(file.Path(), nullptr, DomPositions::Noted), 0);
    std::vector<RowValues> rows;
    ASSERT_TRUE(ListRows(&document, "L", rows));
    std::vector<std::string> positions;
    for (const CellValue& cell : rows.at(0).m_cells) {
        positions.push_back(At(cell.m_position));
    }
    EXPECT_THAT(positions, ElementsAre("2:4", "3:2", "4:3", "5:1", "7:1"));
}

TEST(Positions, OfTextAndSectionsAndInstructionsAreWhereTheyBegin) {
    const CMemoryFile file("<r><L>\n one<?p d?>\n\ntwo<![CDATA[\nthree]]>four\n<i/> &amp;five<![CDATA[six]]></L></r>");
    CXmlObject document;
    ASSERT_EQ(document.OpenFile(file.Path(), nullptr, DomPositions::Noted), 0);
    std::vector<RowValues> rows;
    ASSERT_TRUE(ListRows(&document, "L", rows));
    std::vector<std::string> positions;
    for (const RowValues& row : rows) {
        positions.push_back(At(row.m_position));
    }
    EXPECT_THAT(positions, ElementsAre("2:1", "2:5", "4:1", "4:4", "5:9", "6:1", "6:6", "6:15"));
}

TEST(Positions, OfDefaultsAndOfWhatEntitiesBringAreWhereTheyComeIn) {
    const CMemoryFile file(
        "<!DOCTYPE r [<!ATTLIST i d CDATA 'x'>\n<!ENTITY e '<i a=\"1\"/>'>]>\n<r><L>\n <i a=\"1\"/>\n"
        "  &e;</L></r>");
    CXmlObject document;
    ASSERT_EQ(document.OpenFile(file.Path(), nullptr, DomPositions::Noted), 0);
    std::vector<RowValues> rows;
    ASSERT_TRUE(ListRows(&document, "L", rows));
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(At(rows[0].Find("d")->m_position), "4:2");
    EXPECT_EQ(At(rows[1].m_position), "5:3");
    EXPECT_EQ(At(rows[1].Find("a")->m_position), "5:3");
}

TEST(Positions, AreNotKnownUnlessTheyWereAskedForNorOfWhatWasAdded) {
    const CMemoryFile file("<r><L><i a=\"1\"/></L></r>");
    CXmlObject plain;
    ASSERT_EQ(plain.OpenFile(file.Path()), 0);
    std::vector<RowValues> rows;
    ASSERT_TRUE(ListRows(&plain, "L", rows));
    EXPECT_EQ(At(rows[0].m_position), "0:0");
    CXmlObject document;
    ASSERT_EQ(document.OpenFile(file.Path(), nullptr, DomPositions::Noted), 0);
    const RowNumber first[] = {0};
    const NamedValue values[] = {{"a", "1"}};
    ASSERT_TRUE(RemoveRows(&document, "L", first));
    ASSERT_TRUE(AppendRow(&document, "L", values));
    rows.clear();
    ASSERT_TRUE(ListRows(&document, "L", rows));
    EXPECT_EQ(At(rows[0].m_position), "0:0");
}

TEST(Positions, OfWhatWasRemovedAreNotThoseOfWhatIsAddedInItsPlace) {
    // Enough for memory to be used again, whichever node of a removed row lay there.
    constexpr RowNumber kRows = 3000;
    std::string xml = "<r><L>";
    for (RowNumber row = 0; row < kRows; ++row) {
        xml += "<Item a=\"1\"><Item><Item><Item/></Item></Item></Item>";
    }
    const CMemoryFile file(xml + "</L></r>");
    CXmlObject document;
    ASSERT_EQ(document.OpenFile(file.Path(), nullptr, DomPositions::Noted), 0);
    std::vector<RowNumber> all(kRows);
    std::iota(all.begin(), all.end(), 0u);
    ASSERT_TRUE(RemoveRows(&document, "L", all));
    const NamedValue values[] = {{"a", "1"}};
    for (RowNumber row = 0; row < 4 * kRows; ++row) {
        ASSERT_TRUE(AppendRow(&document, "L", values));
    }
    std::vector<RowValues> rows;
    ASSERT_TRUE(ListRows(&document, "L", rows));
    const auto isKnown = [](const RowValues& row) {
        return row.m_position.line != 0 || row.m_cells[0].m_position.line != 0;
    };
    EXPECT_EQ(std::count_if(rows.begin(), rows.end(), isKnown), 0);
}

TEST(Reasons, OfAMalformedDocumentSayWhere) {
    const CMemoryFile file("<r>\n  <L>\n</r>");
    CXmlObject document;
    CReason reason;
    EXPECT_EQ(document.OpenFile(file.Path(), &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::Malformed);
    EXPECT_EQ(reason.m_nLine, 3u);
    EXPECT_EQ(reason.m_nColumn, 3u);
    EXPECT_EQ(reason.m_strWords, "mismatched tag");
}

TEST(Reasons, OfAFileThatIsNotThereNameTheCallAndItsError) {
    CXmlObject document;
    CReason reason;
    EXPECT_EQ(document.OpenFile("/nowhere/at/all.xml", &reason), 1);
    EXPECT_EQ(reason.m_kind, ReasonKind::Absent);
    EXPECT_STREQ(reason.m_pCall, "open");
    EXPECT_EQ(reason.m_nError, static_cast<std::uint32_t>(ENOENT));
    EXPECT_EQ(platform::WordsOfError(reason.m_nError), "No such file or directory");
}

TEST(Stamps, TellTheStatesOfAFileApart) {
    const CScratchFolder folder;
    const std::string path = (folder.Path() / "file").string();
    CReason reason;
    EXPECT_EQ(platform::StampOf(path.c_str(), &reason), (platform::FileStamp{0, 0, 0, 0, 0}));
    EXPECT_EQ(reason.m_kind, ReasonKind::Absent);
    EXPECT_STREQ(reason.m_pCall, "stat");
    EXPECT_EQ(platform::FileStamp(), (platform::FileStamp{0, 0, 0, 0, 0}));
    std::ofstream(path) << "one";
    const platform::FileStamp first = platform::StampOf(path.c_str());
    EXPECT_NE(first, platform::FileStamp());
    EXPECT_EQ(platform::StampOf(path.c_str()), first);
    std::ofstream(path) << "longer";
    EXPECT_NE(platform::StampOf(path.c_str()), first);
}
