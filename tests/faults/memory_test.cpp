// Memory fails at the n-th allocation of an engine operation, for every n, on random documents and in the midst of
// random sequences. The operation either gets by without it, or it is not done and says so; nothing is leaked or left
// locked, and all that follows is as right as if nothing had happened.

#include "allocations.h"
#include "comparison.h"
#include "engine_document.h"
#include "fault_document.h"
#include "nodes/node_writers.h"
#include "nodes/row_access.h"
#include "scratch_folder.h"
#include "store/module_state.h"
#include "store/node_readers.h"
#include "store/outcome.h"
#include "store/xml_object.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>

namespace {

/// True when each part of the tree is as in one of two trees of the same shape.
bool IsMixture(const RefNode& tree, const RefNode& first, const RefNode& second) {
    if (tree.children.size() != first.children.size() || tree.children.size() != second.children.size() ||
        tree.attributes.size() != first.attributes.size()) {
        return false;
    }
    for (std::size_t index = 0; index < tree.attributes.size(); ++index) {
        const std::string& text = tree.attributes[index].text;
        if (text != first.attributes[index].text && text != second.attributes[index].text) {
            return false;
        }
    }
    for (std::size_t index = 0; index < tree.children.size(); ++index) {
        if (!IsMixture(tree.children[index], first.children[index], second.children[index])) {
            return false;
        }
    }
    return true;
}

/// True when the tree is the other one with some nodes taken out.
bool IsPartOf(const RefNode& tree, const RefNode& other) {
    if (tree.name != other.name || tree.attributes.size() != other.attributes.size()) {
        return false;
    }
    std::size_t position = 0;
    for (const RefNode& child : tree.children) {
        while (position < other.children.size() && !IsPartOf(child, other.children[position])) {
            ++position;
        }
        if (position++ == other.children.size()) {
            return false;
        }
    }
    return true;
}

bool IsBeginning(const RefQuery& part, const RefQuery& whole) {
    return part.pairs.size() <= whole.pairs.size() &&
           std::equal(part.pairs.begin(), part.pairs.end(), whole.pairs.begin()) &&
           part.count == static_cast<int32_t>(part.pairs.size());
}

struct Refused {
    std::size_t step;
    std::size_t allocation;
    bool bFurther;
};

class CRun {
public:
    CRun(const Case& wanted, const Refused& refused) : m_case(wanted), m_refused(refused) {}

    /// What is wrong, in words, or nothing. `bReached` tells whether an allocation was refused at all.
    std::string Do(bool& bReached) {
        std::string fault;
        const std::string xml = WriteXml(m_case.document);
        RefNode reference = m_case.document;
        CLibraryMemory::Reset();
        {
            std::optional<CEngineDocument> document;
            CXmlQuery query;
            {
                const CLibraryMemory memory;
                document.emplace(xml);
            }
            RefQuery expected;
            for (std::size_t index = 0; index < m_case.steps.size() && fault.empty(); ++index) {
                fault = DoStep(index, *document, query, reference, expected);
            }
            int value = 0;
            sem_getvalue(document->Object().m_hSemaphore, &value);
            if (fault.empty() && value != 1) {
                fault = "the document is left locked";
            }
        }
        bReached = CLibraryMemory::HasFailed();
        if (fault.empty() && CLibraryMemory::Outstanding() != 0) {
            fault = std::to_string(CLibraryMemory::Outstanding()) + " blocks are leaked";
        }
        return fault;
    }

private:
    std::string DoStep(std::size_t index, CEngineDocument& document, CXmlQuery& query, RefNode& reference,
                       RefQuery& expected) {
        const Step& step = m_case.steps[index];
        PrepareQuery(step, expected);
        PrepareQuery(step, query);
        const RefNode before = reference;
        const RefQuery asked = expected;
        const int32_t expectedStatus = RunReference(step.operation, reference, expected);
        int32_t status = -1;
        const bool bFailing = index == m_refused.step;
        {
            const CLibraryMemory memory(bFailing ? m_refused.allocation : 0, m_refused.bFurther);
            if (bFailing) {
                CLibraryMemory::Reset();
            }
            status = RunEngine(step.operation, document.Object(), query);
        }
        const std::string place = std::string(NameOf(step.operation)) + ": ";
        const std::string difference = Difference(reference, document.Root("Last"));
        const std::string queryDifference = QueryDifference(expected, query);
        if (status == expectedStatus && difference.empty() && queryDifference.empty()) {
            return {};
        }
        if (!bFailing || !CLibraryMemory::HasFailed() || status != 1) {
            return place + (status != expectedStatus ? "wrong status " : "") + difference + queryDifference;
        }
        // Not done for want of memory: the document is as it was, or changed in part where that is how an error midway
        // leaves it; the query is as it was, or holds what had been gathered.
        RefNode actual = ReadTree(document.Root("Last"));
        const bool bEmpties =
            asked.count == 0 && (step.operation == Operation::RemoveItems || step.operation == Operation::WriteItem);
        if (!Difference(before, document.Root("Last")).empty() &&
            !(step.operation == Operation::UpdateItem && IsMixture(actual, before, reference)) &&
            !(bEmpties && IsPartOf(actual, before))) {
            return place + "the document changed although the operation failed";
        }
        const bool bGathers =
            step.operation == Operation::ListAllAttributes || step.operation == Operation::CollectAttribute;
        RefQuery left = asked;
        left.pairs = PairsOf(query);
        left.count = query.m_nCount;
        if (!QueryDifference(asked, query).empty() && !(bGathers && IsBeginning(left, expected))) {
            return place + "the query changed although the operation failed: " + QueryDifference(asked, query);
        }
        reference = std::move(actual);
        expected = left;
        return {};
    }

    const Case& m_case;
    const Refused m_refused;
};

/// Lets every allocation of every step fail; returns how many there were.
int TryAll(const Case& wanted, bool bFurther) {
    int refused = 0;
    for (std::size_t step = 0; step < wanted.steps.size(); ++step) {
        for (std::size_t allocation = 1;; ++allocation) {
            bool bReached = false;
            CRun run(wanted, {step, allocation, bFurther});
            const std::string fault = run.Do(bReached);
            if (!fault.empty()) {
                ADD_FAILURE() << "allocation " << allocation << " of step " << step + 1 << ": " << fault << "\n"
                              << Describe(wanted);
                return refused;
            }
            if (!bReached) {
                break;
            }
            ++refused;
        }
    }
    return refused;
}

int TryAllOfRandomCase(std::uint64_t seed, bool bFurther) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    CChoices choices(seed);
    Case wanted = RandomCase(choices);
    wanted.steps.resize(std::min<std::size_t>(wanted.steps.size(), 12));
    return TryAll(wanted, bFurther);
}

RefNode Element(const std::string& name, std::vector<RefAttribute> attributes, std::vector<RefNode> children = {}) {
    return {RefNode::Kind::Element, name, {}, std::move(attributes), std::move(children)};
}

/// Names and texts for each of which the tree needs memory of its own, where shorter ones share a page: every
/// allocation inside the DOM can be refused.
Case CaseOfLongTexts() {
    const std::string longName(33000, 'n');
    const std::string longText(33000, 't');
    const RefNode row = Element("ElementWithANameOfSomeLength", {{"ID", "1"}, {"Name", "before"}}, {Element("i", {})});
    Case wanted;
    wanted.document = Element("Doc", {}, {Element("List", {}, {row, row}), Element("Last", {})});
    // What follows a refusal looks for rows by what they hold now: an index must have kept them.
    const Step byName = {Operation::ReadAttribute, false, {1, "List", "ID", {}, {{"Name", "before"}}}};
    const Step byId = {Operation::ReadAttribute, false, {1, "List", "Name", {}, {{"ID", longText}}}};
    wanted.steps = {
        byName,
        {Operation::WriteItem, false, {2, "List", {}, {}, {{"ID", "2"}, {"Name", longText}}}},
        {Operation::WriteItem, false, {2, "List", {}, {}, {{"ID", "3"}, {longName, longText}}}},
        {Operation::WriteAttribute, false, {1, "List", "Name", longText, {{"ID", "1"}}}},
        byName,
        {Operation::UpdateItem, false, {2, "List", "ID", "1", {{"Name", "x" + longText}, {"ID", longText}}}},
        byName,
        byId,
        {Operation::ReadAttribute, false, {1, "List", longName, {}, {{"ID", "3"}}}},
        {Operation::RemoveItems, false, {1, "List", {}, {}, {{"ID", longText}}}},
        byId,
        byName,
        {Operation::RemoveItems, false, {0, "List", {}, {}, {}}},
        {Operation::ListAllAttributes, false, {0, "List", {}, {}, {}}},
        {Operation::WriteItem, false, {1, "List", {}, {}, {{longName, "1"}}}},
    };
    return wanted;
}

} // namespace

TEST(EngineMemory, FailingOnceAtEveryAllocationIsHarmless) {
    int refused = 0;
    for (std::uint64_t seed = 1; seed <= 40 && !::testing::Test::HasFailure(); ++seed) {
        refused += TryAllOfRandomCase(seed, false);
    }
    EXPECT_GT(refused, 1000);
    std::printf("%d allocations refused, one by one\n", refused);
}

TEST(EngineMemory, FailingFromEveryAllocationOnIsHarmless) {
    int refused = 0;
    for (std::uint64_t seed = 1001; seed <= 1040 && !::testing::Test::HasFailure(); ++seed) {
        refused += TryAllOfRandomCase(seed, true);
    }
    EXPECT_GT(refused, 1000);
    std::printf("%d points from which on all allocations were refused\n", refused);
}

TEST(EngineMemory, FailingForNamesAndTextsOfAnyLengthIsHarmless) {
    EXPECT_GT(TryAll(CaseOfLongTexts(), false), 50);
    EXPECT_GT(TryAll(CaseOfLongTexts(), true), 50);
}

TEST(EngineMemory, FailingInARequestAddsNothingToIt) {
    const std::string longText(100, 't');
    const AnsiString text(longText.c_str());
    CXmlQuery query;
    for (std::size_t allocation = 1;; ++allocation) {
        CLibraryMemory::Reset();
        const CLibraryMemory memory(allocation);
        const int32_t status = query.m_attrs.Add("Name", longText.c_str());
        if (!CLibraryMemory::HasFailed()) {
            EXPECT_EQ(status, 0);
            EXPECT_GT(allocation, 2u);
            break;
        }
        EXPECT_EQ(status, 1);
        EXPECT_EQ(query.m_attrs.Count(), 0);
    }
    {
        const CLibraryMemory memory(1);
        CLibraryMemory::Reset();
        EXPECT_THROW(query.AddPair(text, text), std::bad_alloc);
    }
    EXPECT_EQ(query.m_nCount, 0);
    EXPECT_EQ(query.m_attrs.Count(), 1);
}

TEST(EngineMemory, FailingIsTheReasonThatAnOperationGives) {
    const std::string longText(33000, 't');
    const CRequest item = CRequest("List", "").With("Name", longText.c_str());
    const CRequest value("List", "Name", longText.c_str());
    const auto write = [&](CEngineDocument& document, COutcome& outcome) {
        return WriteItem(&document.Object(), &item, &outcome);
    };
    const auto set = [&](CEngineDocument& document, COutcome& outcome) {
        return WriteAttribute(&document.Object(), &value, &outcome);
    };
    int failures = 0;
    const auto tryAll = [&failures](const auto& operation) {
        for (std::size_t allocation = 1;; ++allocation) {
            CEngineDocument document("<r><List><Item Name=''/></List></r>");
            COutcome outcome;
            int32_t status = -1;
            CLibraryMemory::Reset();
            {
                const CLibraryMemory memory(allocation);
                status = operation(document, outcome);
            }
            if (!CLibraryMemory::HasFailed()) {
                return;
            }
            if (status != 0) {
                ++failures;
                EXPECT_EQ(outcome.m_what, What::Failed) << allocation;
                EXPECT_EQ(outcome.m_reason.m_kind, ReasonKind::OutOfMemory) << allocation;
            }
        }
    };
    tryAll(write);
    tryAll(set);
    EXPECT_GT(failures, 5);
}

TEST(EngineMemory, FailingWhileAContainerIsEmptiedLeavesItsBeginningOrItsEnd) {
    const CRequest all("List", "");
    for (const bool bWrites : {true, false}) {
        bool bLeft = false;
        for (std::size_t allocation = 1;; ++allocation) {
            CEngineDocument document("<r><List><AnElementOfALongName a='1'/><AnElementOfALongName a='2'/>"
                                     "<AnElementOfALongName a='3'/></List></r>");
            CRequest first("List", "a");
            ASSERT_EQ(ReadAttribute(&document.Object(), &first), 0);
            CLibraryMemory::Reset();
            {
                const CLibraryMemory memory(allocation);
                bWrites ? WriteItem(&document.Object(), &all) : RemoveItems(&document.Object(), &all);
            }
            if (!CLibraryMemory::HasFailed()) {
                break;
            }
            const std::string left = document.Text("List");
            const bool bBegins = left.find("\"1\"") != std::string::npos;
            const bool bEnds = left.find("\"3\"") != std::string::npos;
            bLeft = bLeft || bBegins != bEnds;
            CRequest rows("List", "a");
            EXPECT_EQ(CollectAttribute(&document.Object(), &rows), 0) << "as the tree has them";
            EXPECT_EQ(rows.m_nCount, std::count(left.begin(), left.end(), '='));
            if (bWrites) {
                EXPECT_TRUE(bBegins || !bEnds) << left;
            } else {
                EXPECT_TRUE(bEnds || !bBegins) << left;
            }
        }
        EXPECT_TRUE(bLeft) << "no removal failed midway";
    }
}

TEST(EngineMemory, FailingWhereRowsAreLookedForGivesTheSameRowsOrSaysSo) {
    const AnsiString list("L");
    const AnsiString name("a");
    const AnsiString value("x");
    int found = 0;
    for (std::size_t allocation = 1;; ++allocation) {
        CEngineDocument document("<r><L><i a='x'/><i a='y'/><i a='x'/><i b='x'/></L></r>");
        std::vector<RowNumber> rows;
        const RowNumber second[] = {2};
        ASSERT_TRUE(AddCell(&document.Object(), list, 3, name, value));
        ASSERT_TRUE(RemoveRows(&document.Object(), list, second));
        rows.reserve(8);
        COutcome outcome;
        CLibraryMemory::Reset();
        {
            const CLibraryMemory memory(allocation);
            outcome = FindRows(&document.Object(), list, name, value, rows);
        }
        if (outcome) {
            EXPECT_EQ(rows, (std::vector<RowNumber>{0, 3})) << allocation;
            found += CLibraryMemory::HasFailed() ? 1 : 0;
        } else {
            EXPECT_EQ(outcome.m_what, What::Failed) << allocation;
            EXPECT_EQ(outcome.m_reason.m_kind, ReasonKind::OutOfMemory) << allocation;
        }
        if (!CLibraryMemory::HasFailed()) {
            break;
        }
    }
    EXPECT_GT(found, 0) << "without an index, by looking at every row";
}

TEST(EngineMemory, FailingWhereARowOfRepeatedNamesIsTakenOutFindsItNoMore) {
    const AnsiString list("L");
    const RowNumber first[] = {0};
    int failures = 0;
    for (std::size_t allocation = 1;; ++allocation) {
        CEngineDocument document("<r xmlns:p='u'><L><i a='1' p:a='2'/><i a='3'/></L></r>");
        std::vector<RowNumber> rows;
        ASSERT_TRUE(FindRows(&document.Object(), list, "a", "2", rows)); // with an index
        COutcome outcome;
        CLibraryMemory::Reset();
        {
            const CLibraryMemory memory(allocation);
            outcome = RemoveRows(&document.Object(), list, first);
        }
        const bool bFailed = CLibraryMemory::HasFailed();
        failures += bFailed ? 1 : 0;
        rows.clear();
        FindRows(&document.Object(), list, "a", "2", rows);
        EXPECT_EQ(rows, outcome ? std::vector<RowNumber>() : std::vector<RowNumber>{0}) << allocation;
        if (!bFailed) {
            break;
        }
    }
    EXPECT_GT(failures, 0);
}

TEST(EngineMemory, FailingWhereAnAttributeIsAddedLeavesWhatTheTreeHas) {
    const AnsiString list("L");
    const AnsiString name("ANameThatIsLongerThanTheOthers");
    const AnsiString value(std::string(40000, 'v').c_str());
    for (std::size_t allocation = 1;; ++allocation) {
        CEngineDocument document("<r><L><i a='1'/><i a='2'/></L></r>");
        std::vector<RowNumber> none;
        FindRows(&document.Object(), list, "a", "2", none); // with an index
        COutcome outcome;
        CLibraryMemory::Reset();
        {
            const CLibraryMemory memory(allocation);
            outcome = AddCell(&document.Object(), list, 1, name, value);
        }
        const bool bFailed = CLibraryMemory::HasFailed();
        EXPECT_TRUE(outcome || (bFailed && outcome.m_reason.m_kind == ReasonKind::OutOfMemory)) << allocation;
        std::vector<RowValues> rows;
        ASSERT_TRUE(ListRows(&document.Object(), list, rows));
        const pugi::xml_node row = document.Root("L").child("L").last_child();
        const bool bInTree = !row.attribute(name.c_str()).empty();
        EXPECT_EQ(rows.at(1).Find(name) != nullptr, bInTree) << allocation;
        EXPECT_EQ(rows.at(1).Find("a")->m_strValue, "2");
        EXPECT_TRUE(bInTree || !outcome);
        if (!bFailed) {
            break;
        }
    }
}

TEST(EngineMemory, DoesNotGrowWithTheAttributesThatAHostFiltersOn) {
    std::string attributes;
    for (int number = 0; number < 200; ++number) {
        attributes += " A" + std::to_string(number) + "='1'";
    }
    std::optional<CEngineDocument> document;
    document.emplace("<r><L><i" + attributes + "/></L></r>");
    CLibraryMemory::Reset();
    constexpr int kIndexes = 32; // as many as are kept
    std::size_t kept = 0;
    for (int number = 0; number < 200; ++number) {
        CRequest query = CRequest("L", "A0").With(("A" + std::to_string(number)).c_str(), "1");
        const CLibraryMemory memory;
        ASSERT_EQ(ReadAttribute(&document->Object(), &query), 0);
        const std::size_t held = CLibraryMemory::Outstanding();
        EXPECT_EQ(held > kept, number < kIndexes) << number;
        EXPECT_GE(held, kept) << number;
        kept = held;
    }
    document.reset();
}

TEST(EngineMemory, HoldsOneIndexForAllTheAttributesThatEveryRowHas) {
    std::optional<CEngineDocument> document;
    document.emplace("<r><L><i A='1' B='1' C='1'/><i A='2' B='2' C='2'/></L></r>");
    CLibraryMemory::Reset();
    const auto heldAfterReading = [&](const char* name) {
        CRequest query = CRequest("L", name).With("A", "1");
        const CLibraryMemory memory;
        EXPECT_EQ(ReadAttribute(&document->Object(), &query), 0) << name;
        return CLibraryMemory::Outstanding();
    };
    const std::size_t held = heldAfterReading("A");
    EXPECT_EQ(heldAfterReading("B"), held);
    EXPECT_EQ(heldAfterReading("C"), held);
    for (const RowNumber row : {0u, 1u}) {
        const CLibraryMemory memory;
        ASSERT_TRUE(AddCell(&document->Object(), "L", row, "D", "1"));
    }
    const std::size_t heldWithMore = heldAfterReading("A");
    EXPECT_EQ(heldAfterReading("D"), heldWithMore);
    document.reset();
}

TEST(EngineMemory, FailingForTheNameOfAnAttributeLeavesNoneWithoutAName) {
    const AnsiString list("L");
    const AnsiString name(std::string(40000, 'n').c_str()); // of which the tree has no room beside others
    const AnsiString value("v");
    for (std::size_t allocation = 1;; ++allocation) {
        CEngineDocument document("<r><L><i a='1'/></L></r>");
        COutcome outcome;
        CLibraryMemory::Reset();
        {
            const CLibraryMemory memory(allocation);
            outcome = AddCell(&document.Object(), list, 0, name, value);
        }
        if (!CLibraryMemory::HasFailed()) {
            EXPECT_TRUE(outcome);
            EXPECT_GT(allocation, 1u);
            break;
        }
        for (const pugi::xml_attribute attribute : document.Root("L").child("L").first_child().attributes()) {
            EXPECT_STRNE(attribute.name(), "") << allocation;
        }
    }
}

TEST(HostMemory, IsGivenBackByTheFunctionsThatAreForIt) {
    const auto file = [](const char* id, const char* checked) {
        return "<Item FileID='" + std::string(id) + "' Component='c' ID='1' Type='2' Volume='v' Path='p' " +
               "LocalPath='l' Size='1' CreateDate='d' checked='" + checked + "'/>";
    };
    CEngineDocument document("<r><Files>" + file("1", "1") + file("2", "0") + file("3", "1") + file("4", "1") +
                             "</Files><Jobs><Item Name='n' ID='1'/></Jobs></r>");
    CLibraryMemory::Reset();
    const std::size_t before = CLibraryMemory::Outstanding();
    {
        const CLibraryMemory memory;
        FileItem first{};
        EXPECT_EQ(GetFiles(&first), 3);
        FileItem* const third = first.next->next;
        FreeFileItem(first.next);
        FreeFileItem(&first);
        EXPECT_NE(third, nullptr);
        int32_t count = 0;
        DelJobList(GetJobs(&count));
        EXPECT_EQ(count, 1);
    }
    // What is kept is the tables of the two containers.
    const std::size_t tables = CLibraryMemory::Outstanding() - before;
    {
        const CLibraryMemory memory;
        FileItem first{};
        EXPECT_EQ(GetFiles(&first), 3);
        FreeFileItem(first.next);
        FreeFileItem(&first);
        int32_t count = 0;
        DelJobList(GetJobs(&count));
    }
    EXPECT_EQ(CLibraryMemory::Outstanding() - before, tables);
}

class SaveMemory : public CWithEachSize<FaultTest> {};
INSTANTIATE_TEST_SUITE_P(Of, SaveMemory, EachSize(), SizeName);

TEST_P(SaveMemory, FailingAtEveryAllocationLeavesAWholeDocument) {
    for (const bool bFurther : {false, true}) {
        int refused = 0;
        for (std::size_t allocation = 1;; ++allocation) {
            {
                const CLibraryMemory memory; // so that it knows what the document keeps from one save to the next
                ASSERT_EQ(Save(), 0);
            }
            RestoreCopy();
            CLibraryMemory::Reset();
            const std::size_t before = CLibraryMemory::Outstanding();
            int32_t status = -1;
            {
                const CLibraryMemory memory(allocation, bFurther);
                status = Save();
            }
            const bool bRefused = CLibraryMemory::HasFailed();
            EXPECT_EQ(CLibraryMemory::Outstanding(), before) << "leaked";
            ASSERT_TRUE(CopyIsWhole());
            EXPECT_EQ(ReadBytes(CopyPath()), status == 0 ? m_strNew : m_strOld);
            EXPECT_EQ(Names(), std::set<std::string>{"Faults.xml"});
            if (!bRefused) {
                EXPECT_EQ(status, 0);
                break;
            }
            ++refused;
            ASSERT_EQ(Save(), 0);
            EXPECT_EQ(ReadBytes(CopyPath()), m_strNew);
        }
        EXPECT_GT(refused, 3);
        std::printf("%d allocations of a save refused\n", refused);
    }
}

TEST_P(SaveMemory, FailingIsTheReasonThatASaveGives) {
    for (std::size_t allocation = 1;; ++allocation) {
        COutcome outcome;
        CLibraryMemory::Reset();
        {
            const CLibraryMemory memory(allocation);
            outcome = m_pDocument->Save();
        }
        if (!CLibraryMemory::HasFailed()) {
            EXPECT_GT(allocation, 3u);
            break;
        }
        if (!outcome) {
            EXPECT_EQ(outcome.m_reason.m_kind, ReasonKind::OutOfMemory) << allocation;
        }
    }
}

TEST(SaveMemoryOfNamespaces, FailingLeavesNoDeclarationInTheTreeAndNoneOutOfTheFile) {
    // Items that were made where a default namespace holds are saved with a declaration that the tree does not keep.
    const CScratchFolder folder;
    const std::filesystem::path file = folder.Path() / "saved.xml";
    WriteBytes(file, "");
    CEngineDocument document("<r xmlns='u'><List/></r>");
    for (int number = 0; number < 700; ++number) { // more than one page of the tree's memory
        const CRequest item = CRequest("List", "").With("a", std::to_string(number).c_str());
        ASSERT_EQ(WriteItem(&document.Object(), &item), 0);
    }
    const std::string tree = document.Text("List");
    document.Object().m_pDom->Save(file.c_str());
    const std::string saved = ReadBytes(file);
    ASSERT_NE(saved.find("<Item a=\"699\" xmlns=\"\""), std::string::npos);
    for (const bool bFurther : {false, true}) {
        for (std::size_t allocation = 1;; ++allocation) {
            WriteBytes(file, "old");
            bool bSaved = true;
            CLibraryMemory::Reset();
            try {
                const CLibraryMemory memory(allocation, bFurther);
                document.Object().m_pDom->Save(file.c_str());
            } catch (const std::exception&) {
                bSaved = false;
            }
            EXPECT_TRUE(document.Text("List") == tree) << "after allocation " << allocation;
            EXPECT_TRUE(ReadBytes(file) == (bSaved ? saved : "old")) << "after allocation " << allocation;
            if (!CLibraryMemory::HasFailed()) {
                EXPECT_TRUE(bSaved);
                EXPECT_GT(allocation, 3u);
                break;
            }
        }
    }
}

TEST_P(SaveMemory, FailingForATextMuchLongerThanBeforeLeavesTheOldDocument) {
    const auto saveWith = [&](const std::string& text, std::size_t failing) {
        CXmlQuery change("Files", "ID", AnsiString(text.c_str()));
        change.AddPair("FileID", "6");
        EXPECT_EQ(WriteAttribute(State().currentDocument, &change), 0);
        CLibraryMemory::Reset();
        const CLibraryMemory memory(failing);
        return Save();
    };
    const std::string longText(100000, 'l');
    int refused = 0;
    for (std::size_t allocation = 1;; ++allocation) {
        ASSERT_EQ(saveWith("short", 0), 0);
        const std::string before = ReadBytes(CopyPath());
        const int32_t status = saveWith(longText, allocation);
        if (!CLibraryMemory::HasFailed()) {
            EXPECT_EQ(status, 0);
            EXPECT_GT(ReadBytes(CopyPath()).size(), longText.size());
            break;
        }
        ++refused;
        EXPECT_EQ(status, 1);
        EXPECT_EQ(ReadBytes(CopyPath()), before);
    }
    EXPECT_GT(refused, 4);
}
