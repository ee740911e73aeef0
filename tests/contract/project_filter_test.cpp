// Lists of the strings document, copied to the host's buffer one text after the other.

#include "saving_host_test.h"

#include <array>
#include <cstring>

namespace {

constexpr const char* kFilters = "<Filters><Item Description='Fonts' Pattern='*.ttf'/>"
                                 "<Item Description='All' Pattern='*.*'/></Filters>";

class ProjectFilter : public SavingHostTest {};

} // namespace

TEST_F(ProjectFilter, EveryValueIsEndedByAZeroByteAndTheListByOneMore) {
    OpenMain("", kFilters);
    std::array<char, 64> buffer;
    buffer.fill('#');
    EXPECT_EQ(GetFilter("Filters", buffer.data(), buffer.size()), 1u);
    const char expected[] = "Fonts\0*.ttf\0All\0*.*\0";
    EXPECT_EQ(std::memcmp(buffer.data(), expected, sizeof expected), 0);
}

TEST_F(ProjectFilter, TheRestOfTheBufferIsZeroAndNothingBehindItIsWritten) {
    OpenMain("", kFilters);
    std::array<char, 64> buffer;
    buffer.fill('#');
    GetFilter("Filters", buffer.data(), 60);
    EXPECT_EQ(std::string(buffer.data() + 20, 40), std::string(40, '\0'));
    EXPECT_EQ(std::string(buffer.data() + 60, 4), "####");
}

TEST_F(ProjectFilter, ABufferOfExactlyTheNeededSizeIsEnough) {
    OpenMain("", kFilters);
    const char expected[] = "Fonts\0*.ttf\0All\0*.*\0";
    std::vector<char> buffer(sizeof expected, '#');
    GetFilter("Filters", buffer.data(), static_cast<uint32_t>(buffer.size()));
    EXPECT_EQ(std::memcmp(buffer.data(), expected, sizeof expected), 0);
}

TEST_F(ProjectFilter, TheSizeBoundsOnlyTheZeroFill) {
    OpenMain("", kFilters);
    std::array<char, 64> buffer;
    buffer.fill('#');
    EXPECT_EQ(GetFilter("Filters", buffer.data(), 4), 1u);
    EXPECT_EQ(std::string(buffer.data(), 24), "Fonts#*.ttf#All#*.*#####");
}

TEST_F(ProjectFilter, EveryAttributeIsTakenWhateverItsName) {
    OpenMain("", "<Filters><Item Zeta='1' Alpha='2' zeta='3'/><Other Value='4'/></Filters>");
    std::array<char, 16> buffer;
    buffer.fill('#');
    GetFilter("Filters", buffer.data(), buffer.size());
    EXPECT_EQ(std::string(buffer.data(), 9), std::string("1\0"
                                                         "2\0"
                                                         "3\0"
                                                         "4\0"
                                                         "\0",
                                                         9));
}

TEST_F(ProjectFilter, AnEmptyValueContributesJustOneZeroByte) {
    OpenMain("", "<Filters><Item A='x' B='' C='y'/></Filters>");
    std::array<char, 16> buffer;
    buffer.fill('#');
    GetFilter("Filters", buffer.data(), buffer.size());
    EXPECT_EQ(std::string(buffer.data(), 6), std::string("x\0\0y\0\0", 6));
}

TEST_F(ProjectFilter, AMissingElementGivesAnEmptyList) {
    OpenMain("", kFilters);
    std::array<char, 16> buffer;
    buffer.fill('#');
    EXPECT_EQ(GetFilter("Missing", buffer.data(), buffer.size()), 1u);
    EXPECT_EQ(std::string(buffer.data(), buffer.size()), std::string(buffer.size(), '\0'));
}

TEST_F(ProjectFilter, AnElementWithoutChildrenGivesAnEmptyList) {
    OpenMain("", "<Filters Description='Fonts'/>");
    std::array<char, 16> buffer;
    buffer.fill('#');
    EXPECT_EQ(GetFilter("Filters", buffer.data(), buffer.size()), 1u);
    EXPECT_EQ(std::string(buffer.data(), buffer.size()), std::string(buffer.size(), '\0'));
}

TEST_F(ProjectFilter, WithoutAStringsDocumentTheListIsEmpty) {
    InstallMain(Document(kFilters));
    EXPECT_EQ(Open("Missing"), nullptr);
    std::array<char, 16> buffer;
    buffer.fill('#');
    EXPECT_EQ(GetFilter("Filters", buffer.data(), buffer.size()), 1u);
    EXPECT_EQ(std::string(buffer.data(), buffer.size()), std::string(buffer.size(), '\0'));
}

TEST_F(ProjectFilter, ValuesBehindACommentAreLeftOut) {
    OpenMain("", "<Filters><Item A='x'/><!-- note --><Item A='y'/></Filters>");
    std::array<char, 16> buffer;
    buffer.fill('#');
    EXPECT_EQ(GetFilter("Filters", buffer.data(), buffer.size()), 1u);
    EXPECT_EQ(std::string(buffer.data(), buffer.size()), "x" + std::string(buffer.size() - 1, '\0'));
}

TEST_F(ProjectFilter, TheStringsDocumentIsReadAndNotTheCurrentDocument) {
    OpenMain("<Filters><Item A='main'/></Filters>", "<Filters><Item A='strings'/></Filters>");
    OpenPrinterWith("Office.xml", "<Filters><Item A='printer'/></Filters>");
    std::array<char, 16> buffer{};
    GetFilter("Filters", buffer.data(), buffer.size());
    EXPECT_STREQ(buffer.data(), "strings");
}

TEST_F(ProjectFilter, ALongListIsCopiedWhole) {
    std::string items;
    std::string expected;
    for (int i = 0; i < 1000; ++i) {
        const std::string value = "value " + std::to_string(i);
        items += "<Item A='" + value + "'/>";
        expected += value + '\0';
    }
    OpenMain("", "<Filters>" + items + "</Filters>");
    std::string buffer(expected.size() + 1, '#');
    EXPECT_EQ(GetFilter("Filters", buffer.data(), static_cast<uint32_t>(buffer.size())), 1u);
    EXPECT_EQ(buffer, expected + '\0');
}

TEST_F(ProjectFilter, ReadingSavesNothing) {
    OpenMain("", kFilters);
    std::array<char, 64> buffer{};
    EXPECT_FALSE(Saves([&] { GetFilter("Filters", buffer.data(), buffer.size()); }));
}

TEST_F(ProjectFilter, ANullBufferIsIgnored) {
    OpenMain("", kFilters);
    EXPECT_EQ(GetFilter("Filters", nullptr, 64), 1u);
}
