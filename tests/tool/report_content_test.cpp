// report: what the page says, the same on both targets.

#include "report_test.h"

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

TEST_F(Report, TheSameDocumentsGiveTheSameBytes) {
    Output({"files", "add", kSans, kRgbProfile});
    EXPECT_EQ(Page(), Page());
}

TEST_F(Report, SaysWhenItWasMadeOnlyWhenAsked) {
    EXPECT_THAT(Page(), Not(HasSubstr("Made on")));
    EXPECT_THAT(Page({"--date"}), HasSubstr("Made on 20"));
}

TEST_F(Report, FilesThatShareAnIdAreMarkedWithTheReason) {
    Output({"files", "add", kSans, kSansBold, kMono});
    Run({"files", "edit", "2", "--id", "0"});
    const std::string page = Page();
    EXPECT_EQ(CountOf(page, "<span class=\"bad\">0</span>"), 2U);
    EXPECT_THAT(page, HasSubstr("2 fonts have the ID 0."));
    EXPECT_THAT(page, HasSubstr("<a href=\"#document-1-Files-1\">"));
}

TEST_F(Report, ProfilesThatShareASlotAreMarkedAndSoIsTheSlot) {
    Output({"files", "add", kRgbProfile, kProfileFolder + "compatibleWithAdobeRGB1998.icc"});
    EXPECT_THAT(Page(), AllOf(Not(HasSubstr("class=\"clashing\"")), Not(HasSubstr("Another profile has slot"))));
    Run({"files", "edit", "2", "--id", "2"});
    const std::string page = Page();
    EXPECT_EQ(CountOf(page, "<li class=\"clashing\">2 clashing: sRGB, "), 1U);
    EXPECT_EQ(CountOf(page, "<span class=\"bad\">2</span>"), 2U);
    EXPECT_EQ(CountOf(page, "<span class=\"bad\">Another profile has slot 2 too.</span>"), 2U);
}

TEST_F(Report, FindingsAboutJobsLinkToTheirRows) {
    WriteBytes(UserPath("Workshop.xml"), "<R><Jobs><Item ID=\"1\" Name=\"a\"/></Jobs></R>");
    EXPECT_THAT(Page({"--printer", "Workshop"}),
                AllOf(HasSubstr("<a href=\"#document-2-Jobs-1\">"), HasSubstr("<tr id=\"document-2-Jobs-1\">")));
}

TEST_F(Report, ShowsTheNumbersThatStorageListShows) {
    const std::string page = Page({"--printer", "Atrium"});
    const auto volumes = Run({"--json", "--printer", "Atrium", "storage", "list"}).Json();
    ASSERT_FALSE(volumes.empty());
    for (const auto& volume : volumes) {
        EXPECT_THAT(page, HasSubstr("used, " + std::to_string(volume["used"].get<int>()) + " %"));
    }
}

TEST_F(Report, ShowsWhatSendingTakesAsSpaceComputesIt) {
    ASSERT_EQ(
        Run({"--printer", "Workshop", "storage", "report", "-"},
            R"({"storages": [{"name": "Disk", "volumes": [{"volume": "0:", "totalSpace": 1000, "freeSpace": 100}]}]})")
            .status,
        kDone);
    Output({"files", "add", "--type", "2", "--volume", "0:", UserFile("a", std::string(60, 'x'))});
    Output({"files", "tick", "--all"});
    EXPECT_THAT(Page({"--printer", "Workshop"}),
                AllOf(HasSubstr("40 bytes"), HasSubstr("90 % used, 6 % more by sending")));
    Output({"files", "add", "--type", "2", "--volume", "0:", UserFile("b", std::string(50, 'x'))});
    Output({"files", "tick", "--all"});
    EXPECT_THAT(Page({"--printer", "Workshop"}), HasSubstr("does not fit: 10 bytes too much"));
}

TEST_F(Report, APictureThatIsNotDrawnHasItsReason) {
    Output({"files", "add", kSans, kRgbProfile});
    const std::string page = Page();
#ifdef _WIN32
    EXPECT_THAT(page, AllOf(HasSubstr("this program draws specimens on Linux only"),
                            HasSubstr("this program draws the colours of profiles on Linux only")));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("<svg class=\"specimen\"")), Not(HasSubstr("<svg class=\"gamut\""))));
#else
    EXPECT_THAT(page, Not(HasSubstr("on Linux only")));
    EXPECT_THAT(page, AllOf(HasSubstr("<svg class=\"specimen\""), HasSubstr("<svg class=\"gamut\"")));
#endif
}
