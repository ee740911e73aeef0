// report: the page to look at.

#include "tool_test.h"

#include <expat.h>

#include <cmath>
#include <regex>

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::Not;

namespace {

struct CountedElements {
    int paths = 0;
    std::vector<std::string> references;
};

/// Reads the page as strict XML; fails the test when it is none.
CountedElements Parse(const std::string& page) {
    CountedElements counted;
    const XML_Parser parser = XML_ParserCreate(nullptr);
    XML_SetUserData(parser, &counted);
    XML_SetStartElementHandler(parser, [](void* data, const XML_Char* name, const XML_Char** attributes) {
        auto& counts = *static_cast<CountedElements*>(data);
        counts.paths += std::string(name) == "path" ? 1 : 0;
        for (; *attributes != nullptr; attributes += 2) {
            const std::string attribute = attributes[0];
            if (attribute == "href" || attribute == "src" || attribute == "xlink:href") {
                counts.references.emplace_back(attributes[1]);
            }
        }
    });
    EXPECT_EQ(XML_Parse(parser, page.data(), static_cast<int>(page.size()), 1), XML_STATUS_OK)
        << XML_ErrorString(XML_GetErrorCode(parser)) << " in line " << XML_GetCurrentLineNumber(parser);
    XML_ParserFree(parser);
    return counted;
}

std::size_t CountOf(const std::string& text, const std::string& part) {
    std::size_t count = 0;
    for (std::size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
        ++count;
    }
    return count;
}

} // namespace

class Report : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    std::string Page(const std::vector<std::string>& options = {}) const {
        const std::string file = (m_folder / "page.html").string();
        std::vector<std::string> arguments{"report", file};
        arguments.insert(arguments.end(), options.begin(), options.end());
        Output(arguments);
        return ReadBytes(file);
    }
};

TEST_F(Report, ThePageIsStrictXmlAndRefersToNothingOutsideItself) {
    Output({"files", "add", kSans, kRgbProfile});
    const std::string page = Page();
    for (const std::string& reference : Parse(page).references) {
        EXPECT_EQ(reference[0], '#') << reference;
        EXPECT_THAT(page, HasSubstr("id=\"" + reference.substr(1) + "\""));
    }
    EXPECT_THAT(page, AllOf(Not(HasSubstr("url(")), Not(HasSubstr("@import")), Not(HasSubstr("<script"))));
}

TEST_F(Report, TheSameDocumentsGiveTheSameBytes) {
    Output({"files", "add", kSans, kRgbProfile});
    EXPECT_EQ(Page(), Page());
}

TEST_F(Report, SaysWhenItWasMadeOnlyWhenAsked) {
    EXPECT_THAT(Page(), Not(HasSubstr("Made on")));
    EXPECT_THAT(Page({"--date"}), HasSubstr("Made on 20"));
}

TEST_F(Report, ShowsALineInTheOutlinesOfEachFont) {
    Output({"files", "add", kSans, kSansBold, kMono});
    const std::string page = Page();
    EXPECT_EQ(CountOf(page, "<svg class=\"specimen\""), 3U);
    EXPECT_EQ(Parse(page).paths, 3);
}

TEST_F(Report, FontsOfDifferentShapesHaveDifferentLines) {
    Output({"files", "add", kSans, kMono});
    const std::string page = Page();
    const std::regex outline("class=\"specimen\"[^>]*><path d=\"([^\"]+)\"");
    std::vector<std::string> outlines;
    for (std::sregex_iterator it(page.begin(), page.end(), outline), end; it != end; ++it) {
        outlines.push_back((*it)[1]);
    }
    ASSERT_EQ(outlines.size(), 2U);
    EXPECT_NE(outlines[0], outlines[1]);
}

TEST_F(Report, CharactersThatAFontLacksAreBoxesAndAreCounted) {
    Output({"files", "add", kMono});
    EXPECT_THAT(Page({"--text", "a\xE6\xBC\xA2\xE5\xAD\x97"}),
                AllOf(HasSubstr("class=\"missing\""), HasSubstr("lacks 2 of the characters")));
    EXPECT_THAT(Page({"--text", "abc"}), Not(HasSubstr("class=\"missing\"")));
}

TEST_F(Report, AFontThatIsDamagedOrGoneCostsItsOwnLineOnly) {
    const std::string damaged = UserFile("damaged.ttf", ReadBytes(kSans));
    const std::string gone = UserFile("gone.ttf", ReadBytes(kMono));
    Output({"files", "add", damaged, gone, kSansBold});
    WriteBytes(damaged, ReadBytes(kSans).substr(0, 300));
    std::filesystem::remove(gone);
    const std::string page = Page();
    Parse(page);
    EXPECT_EQ(CountOf(page, "<svg class=\"specimen\""), 1U);
    EXPECT_THAT(page, AllOf(HasSubstr("no picture: it is damaged, or is no font"),
                            HasSubstr("no picture: it is not on this computer")));
}

// The expected areas were computed from the surfaces that argyll's iccgamut makes of the same profiles.
TEST_F(Report, TheAreaOfAGamutIsThatOfAnIndependentComputation) {
    Output({"files", "add", kRgbProfile, "/usr/share/color/icc/compatibleWithAdobeRGB1998.icc"});
    const std::string page = Page();
    const std::regex area("area ([0-9]+), ([0-9]+) % of sRGB \\(dashed\\)\"");
    std::vector<double> areas;
    for (std::sregex_iterator it(page.begin(), page.end(), area), end; it != end; ++it) {
        areas.push_back(std::stod((*it)[1]));
    }
    ASSERT_EQ(areas.size(), 2U);
    EXPECT_NEAR(areas[0], 22614, 0.02 * 22614);
    EXPECT_NEAR(areas[1], 32533, 0.02 * 32533);
}

TEST_F(Report, AProfileWithoutColoursSaysSo) {
    const ToolRun run = Run({"files", "add", "--profile", "printer", kGrayProfile});
    ASSERT_EQ(run.status, kDone) << run.errors;
    EXPECT_THAT(Page(), HasSubstr("no picture: it knows greys only"));
}

TEST_F(Report, FilesThatShareAnIdAreMarkedWithTheReason) {
    Output({"files", "add", kSans, kSansBold, kMono});
    Run({"files", "edit", "2", "--id", "0"});
    const std::string page = Page();
    EXPECT_EQ(CountOf(page, "<span class=\"bad\">0</span>"), 2U);
    EXPECT_THAT(page, HasSubstr("2 fonts have the ID 0."));
    EXPECT_THAT(page, HasSubstr("<a href=\"#document-1-Files-1\">"));
}

TEST_F(Report, MarkupAndControlCharactersOfADocumentAreText) {
    WriteBytes(
        UserPath("Workshop.xml"),
        "<R><Storage/><Files/><Jobs><Item Name=\"&lt;script>alert(1)&lt;/script>&#x85;\xE2\x80\xAE{{title}}\" ID=\"1\" "
        "Type=\"&amp;lt;\" Copies=\"1\" Stored=\"&quot;'>\" checked=\"0\"/></Jobs></R>");
    const std::string page = Page({"--printer", "Workshop"});
    Parse(page);
    EXPECT_THAT(page, AllOf(Not(HasSubstr("<script")), Not(HasSubstr("\xE2\x80\xAE")), Not(HasSubstr("\xC2\x85")),
                            HasSubstr("{{title}}"), HasSubstr("&amp;lt;")));
}

TEST_F(Report, ShowsTheNumbersThatStorageListShows) {
    const std::string list = Output({"--printer", "Atrium", "storage", "list"});
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

TEST_F(Report, ADocumentThatCannotBeReadHasItsReasonOnThePage) {
    WriteBytes(UserPath("Workshop.xml"), "<R><Files></R>");
    const std::string page = Page({"--printer", "Workshop"});
    Parse(page);
    EXPECT_THAT(page, AllOf(HasSubstr("<span class=\"bad\">error</span>"), HasSubstr("Workshop.xml")));
}

TEST_F(Report, TwoHundredFontsFitAPageOfTwoMebibytes) {
    std::vector<std::string> arguments{"files", "add", "--folder", "fonts"};
    for (const std::string& copy : CopiesOf(kSans, 200)) {
        arguments.push_back(copy);
    }
    Output(arguments);
    const std::string page = Page();
    EXPECT_EQ(CountOf(page, "<svg class=\"specimen\""), 200U);
    EXPECT_LT(page.size(), std::size_t{2} << 20);
}

TEST_F(Report, APageThatCannotBeWrittenIsAnError) {
    const ToolRun run = Run({"report", "/nowhere/page.html"});
    EXPECT_EQ(run.status, kNoOutput);
    EXPECT_THAT(run.errors, HasSubstr("/nowhere/page.html could not be written"));
}
