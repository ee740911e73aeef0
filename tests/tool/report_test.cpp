// report: the page as XML, its pictures and its colours.

#include "report_test.h"

#include <expat.h>

#include <array>
#include <cmath>
#include <map>
#include <regex>
#include <set>
#include <sys/stat.h>
#include <thread>

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

using Colours = std::map<std::string, std::array<double, 3>>;

/// The colours by name of each block of the style sheet that defines them.
std::vector<Colours> SchemesOf(const std::string& style) {
    std::vector<Colours> schemes;
    const std::regex block(":root \\{([^}]*)\\}");
    const std::regex definition("--([a-z]+): #([0-9a-f]{6}|[0-9a-f]{3});");
    for (std::sregex_iterator it(style.begin(), style.end(), block), end; it != end; ++it) {
        const std::string definitions = (*it)[1];
        Colours& colours = schemes.emplace_back();
        for (std::sregex_iterator each(definitions.begin(), definitions.end(), definition); each != end; ++each) {
            const std::string digits = (*each)[2];
            const std::size_t width = digits.size() / 3;
            for (std::size_t i = 0; i < 3; ++i) {
                const std::string part = digits.substr(i * width, width);
                colours[(*each)[1]][i] = std::stoi(width == 1 ? part + part : part, nullptr, 16) / 255.0;
            }
        }
    }
    return schemes;
}

/// The names of the colours that texts have.
std::set<std::string> ColoursOfTexts(const std::string& style) {
    std::set<std::string> names;
    const std::regex use("[{; ]color: var\\(--([a-z]+)\\)");
    for (std::sregex_iterator it(style.begin(), style.end(), use), end; it != end; ++it) {
        names.insert((*it)[1]);
    }
    EXPECT_GE(names.size(), 5U);
    return names;
}

/// As the guidelines for accessible pages define it: from 1 to 21.
double Contrast(const std::array<double, 3>& one, const std::array<double, 3>& other) {
    const auto luminance = [](const std::array<double, 3>& colour) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour[0]) + 0.7152 * linear(colour[1]) + 0.0722 * linear(colour[2]);
    };
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

} // namespace

TEST_F(Report, ThePageIsStrictXmlAndRefersToNothingOutsideItself) {
    Output({"files", "add", kSans, kRgbProfile});
    const std::string page = Page();
    for (const std::string& reference : Parse(page).references) {
        EXPECT_EQ(reference[0], '#') << reference;
        EXPECT_THAT(page, HasSubstr("id=\"" + reference.substr(1) + "\""));
    }
    EXPECT_THAT(page, AllOf(Not(HasSubstr("url(")), Not(HasSubstr("@import")), Not(HasSubstr("<script"))));
}

TEST_F(Report, WithoutANameForItsPageIsMisuse) {
    const ToolRun run = Run({"report", ""});
    EXPECT_EQ(run.status, kUsage);
    EXPECT_THAT(run.errors, HasSubstr("the name of the file is empty"));
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

TEST_F(Report, EveryTextHasTheContrastThatTheAccessibilityGuidelinesAsk) {
    const std::string page = Page();
    const std::string style = page.substr(page.find("<style>"), page.find("</style>") - page.find("<style>"));
    const std::vector<Colours> schemes = SchemesOf(style);
    ASSERT_EQ(schemes.size(), 3U); // light, dark, print
    for (const Colours& scheme : schemes) {
        for (const std::string& text : ColoursOfTexts(style)) {
            EXPECT_GE(Contrast(scheme.at(text), scheme.at("ground")), 4.5) << text;
        }
        for (const char* const text : {"ink", "bad"}) { // of slots
            EXPECT_GE(Contrast(scheme.at(text), scheme.at("panel")), 4.5) << text;
        }
        for (const char* const block : {"used", "quiet"}) { // of maps, with their names in the colour of the ground
            EXPECT_GE(Contrast(scheme.at("ground"), scheme.at(block)), 4.5) << block;
        }
        for (const char* const bar : {"used", "added", "bad"}) {
            EXPECT_GE(Contrast(scheme.at(bar), scheme.at("rest")), 3) << bar;
        }
    }
}

TEST_F(Report, NoColourStandsOutsideTheSchemes) {
    const std::string page = Page();
    const std::string style = page.substr(page.find("<style>"), page.find("</style>") - page.find("<style>"));
    const std::string rest = std::regex_replace(style, std::regex(":root \\{[^}]*\\}"), "");
    EXPECT_LT(rest.size(), style.size());
    EXPECT_FALSE(std::regex_search(rest, std::regex("#[0-9a-fA-F]{3}|rgb\\(|hsl\\(")));
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

TEST_F(Report, APipeIsWrittenToAndStaysOne) {
    const std::filesystem::path pipe = m_folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    std::string page;
    std::thread reader([&] { page = ReadBytes(pipe); });
    // Until the reader has opened its end there is none to write to.
    while (Run({"report", pipe.string()}).status == kNoOutput) {
        std::this_thread::yield();
    }
    reader.join();
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_THAT(page, HasSubstr("</html>"));
}

TEST_F(Report, APageThatCannotBeWrittenIsAnError) {
    const ToolRun run = Run({"report", "/nowhere/page.html"});
    EXPECT_EQ(run.status, kNoOutput);
    EXPECT_THAT(run.errors, HasSubstr("/nowhere/page.html could not be written"));
}
