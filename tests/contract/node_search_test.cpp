// How lists are gathered from a container: every attribute of every child (GetFilter, from the strings document), one
// attribute of every child (IsPathConflict, GetDiskPercent) and all attributes of one child (CopyElement, GetJobs).

#include "host_test.h"

#include <string>
#include <vector>

class NodeSearch : public HostTest {
protected:
    /// The strings that GetFilter delivers from a strings document with this container "Filters".
    std::vector<std::string> FilterList(const std::string& children) {
        OpenMain("", "<Filters>" + children + "</Filters>");
        char buffer[1024];
        EXPECT_EQ(GetFilter("Filters", buffer, sizeof buffer), 1u);
        CloseAll();
        std::vector<std::string> list;
        for (const char* text = buffer; *text != '\0'; text += list.back().size() + 1) {
            list.emplace_back(text);
        }
        return list;
    }

    bool Conflicts(const std::string& files, const char* path) {
        OpenMain(files);
        const uint32_t nConflict = IsPathConflict(path);
        CloseAll();
        return nConflict == 1;
    }

    std::string Percents(const std::string& partitions) {
        OpenMain("<CurrentDisk>" + partitions + "</CurrentDisk>");
        const std::string percents = GetDiskPercent().c_str();
        CloseAll();
        return percents;
    }

    /// The children of "Target" after CopyElement from "Source" by "Key".
    Records Copied(const std::string& source, const std::string& target) {
        OpenMain("<Source>" + source + "</Source><Target>" + target + "</Target>");
        EXPECT_EQ(CopyElement("Source", "Target", "Key"), 1u);
        WriteAttr("Target", "Missing", ""); // saves also when nothing was copied
        CloseAll();
        return SavedItems("Target");
    }
};

using Texts = std::vector<std::string>;

// Every attribute of every child.

TEST_F(NodeSearch, EveryAttributeOfEveryChildIsListedInOrder) {
    EXPECT_EQ(FilterList("<Item Text=\"Fonts\" Pattern=\"*.ttf\"/><Other Z=\"All\" A=\"*.*\"/>"),
              (Texts{"Fonts", "*.ttf", "All", "*.*"}));
}

TEST_F(NodeSearch, ChildrenWithoutAttributesAddNothingToTheList) {
    EXPECT_EQ(FilterList("<Item/><Item A=\"1\"/><Item/>"), (Texts{"1"}));
    EXPECT_EQ(FilterList("<Item/><Item/>"), Texts{});
}

TEST_F(NodeSearch, TheListStopsAtACommentAndKeepsWhatItHas) {
    EXPECT_EQ(FilterList("<Item A=\"1\" B=\"2\"/><!-- note --><Item A=\"3\"/>"), (Texts{"1", "2"}));
    EXPECT_EQ(FilterList("<!-- note --><Item A=\"1\"/>"), Texts{});
}

TEST_F(NodeSearch, TheListStopsAtText) { EXPECT_EQ(FilterList("<Item A=\"1\"/>text<Item A=\"3\"/>"), (Texts{"1"})); }

TEST_F(NodeSearch, TheListStopsAtAProcessingInstruction) {
    EXPECT_EQ(FilterList("<Item A=\"1\"/><?p i?><Item A=\"3\"/>"), (Texts{"1"}));
}

TEST_F(NodeSearch, TheListStopsAtACdataSection) {
    EXPECT_EQ(FilterList("<Item A=\"1\"/><![CDATA[ ]]><Item A=\"3\"/>"), (Texts{"1"}));
}

TEST_F(NodeSearch, OnlyTheFirstContainerIsListed) {
    OpenMain("", "<Filters><Item A=\"1\"/></Filters><Filters><Item A=\"2\"/></Filters>");
    char buffer[8];
    GetFilter("Filters", buffer, sizeof buffer);
    EXPECT_EQ(std::string(buffer, sizeof buffer), std::string("1\0\0\0\0\0\0\0", 8));
}

TEST_F(NodeSearch, GrandchildrenAreNotListed) {
    EXPECT_EQ(FilterList("<Item A=\"1\"><Item A=\"2\"/></Item><Item A=\"3\"/>"), (Texts{"1", "3"}));
}

// One attribute of every child.

TEST_F(NodeSearch, OneAttributeOfEveryChildIsCollectedInOrder) {
    EXPECT_EQ(
        Percents("<Item Partition=\"A\" Percent=\"50\"/><Item Percent=\"99\"/><Item Partition=\"B\" Percent=\"30\"/>"
                 "<Item Percent=\"20\" Partition=\"C\"/>"),
        "50 30 20 ");
}

TEST_F(NodeSearch, AttributesOfOtherLetterCaseAreNotCollected) {
    EXPECT_FALSE(Conflicts("<Files><Item localpath=\"a\" LOCALPATH=\"a\"/></Files>", "a"));
}

TEST_F(NodeSearch, EachOfTwoAttributesOfOneBaseNameIsCollected) {
    const std::string files = "<Files xmlns:x=\"urn:x\"><Item x:LocalPath=\"a\" LocalPath=\"b\"/></Files>";
    EXPECT_TRUE(Conflicts(files, "a"));
    EXPECT_TRUE(Conflicts(files, "b"));
}

TEST_F(NodeSearch, CollectingStopsAtACommentAndKeepsWhatItHas) {
    const std::string files = "<Files><Item LocalPath=\"a\"/><!-- note --><Item LocalPath=\"b\"/></Files>";
    EXPECT_TRUE(Conflicts(files, "a"));
    EXPECT_FALSE(Conflicts(files, "b"));
    EXPECT_EQ(Percents("<Item Partition=\"A\" Percent=\"50\"/><!-- note --><Item Partition=\"B\" Percent=\"30\"/>"),
              "50 ");
}

TEST_F(NodeSearch, ChildrenWithoutAttributesGiveNothingToCollect) {
    EXPECT_FALSE(Conflicts("<Files><Item/><Item/></Files>", ""));
    EXPECT_EQ(Percents("<Item/>"), "");
}

TEST_F(NodeSearch, OnlyTheFirstContainerIsCollectedFrom) {
    const std::string files = "<Files><Item LocalPath=\"a\"/></Files><Files><Item LocalPath=\"b\"/></Files>";
    EXPECT_TRUE(Conflicts(files, "a"));
    EXPECT_FALSE(Conflicts(files, "b"));
}

// All attributes of one child.

TEST_F(NodeSearch, AllAttributesOfTheFirstChildWithTheValueAreTaken) {
    EXPECT_EQ(Copied("<Item Key=\"1\" A=\"first\"/><Item Key=\"1\" A=\"second\"/>", "<Item Key=\"1\" A=\"\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "first"}}}));
}

TEST_F(NodeSearch, TheAttributesOfAChildAreTakenInTheirOrder) {
    OpenMain("<Jobs><Item N=\"name\" ID=\"1\" C=\"type\" B=\"copies\" A=\"st\" Z=\"no\"/></Jobs>");
    int32_t nCount = 0;
    JobRecord* const jobs = GetJobs(&nCount);
    ASSERT_EQ(nCount, 1);
    EXPECT_STREQ(jobs[0].name, "name");
    EXPECT_STREQ(jobs[0].id, "1");
    EXPECT_STREQ(jobs[0].type, "type");
    EXPECT_STREQ(jobs[0].copies, "copies");
    EXPECT_STREQ(jobs[0].stored, "st");
    EXPECT_STREQ(jobs[0].checked, "no");
    DelJobList(jobs);
}

TEST_F(NodeSearch, AnEmptyValueFindsAChildWithTheEmptyAttributeNotOneWithoutIt) {
    EXPECT_EQ(Copied("<Item A=\"without\"/><Item Key=\"\" A=\"with\"/>", "<Item Key=\"\" A=\"\"/>"),
              (Records{Record{{"Key", ""}, {"A", "with"}}}));
}

TEST_F(NodeSearch, AChildIsFoundByAnyOfItsAttributesOfThatBaseName) {
    EXPECT_EQ(Copied("<Item xmlns:x=\"urn:x\" A=\"found\" Key=\"1\" x:Key=\"2\"/>", "<Item A=\"\" Key=\"2\"/>"),
              (Records{Record{{"A", "found"}, {"Key", "1"}}}))
        << "the key of the target is overwritten by the first pair of its name";
}

TEST_F(NodeSearch, ACommentBeforeTheChildMakesTheSearchMiss) {
    EXPECT_EQ(Copied("<Item Key=\"1\" A=\"one\"/><!-- note --><Item Key=\"2\" A=\"two\"/>",
                     "<Item Key=\"1\" A=\"\"/><Item Key=\"2\" A=\"\"/>"),
              (Records{Record{{"Key", "1"}, {"A", "one"}}, Record{{"Key", "2"}, {"A", ""}}}));
}

TEST_F(NodeSearch, AnUnnumberedContainerGivesNothing) {
    OpenMain("");
    int32_t nCount = 5;
    EXPECT_EQ(GetJobs(&nCount), nullptr);
    EXPECT_EQ(nCount, 0);
}
