// string, filter.

#include "tool_test.h"

using ::testing::HasSubstr;

class Strings : public ToolTest {};

TEST_F(Strings, ATextIsPrinted) { EXPECT_EQ(Output({"string", "Main", "Title"}), "Cordelbox\n"); }

TEST_F(Strings, ATextIsPrintedInTheLanguageChosen) {
    EXPECT_EQ(Output({"string", "ProjectFilter", "Value", "--where", "ID=2"}), "macro\n");
    EXPECT_EQ(Output({"--language", "German", "string", "ProjectFilter", "Value", "--where", "ID=2"}), "Makro\n");
}

TEST_F(Strings, TextsStayThoseOfTheLanguageWithAPrinter) {
    EXPECT_EQ(Output({"--printer", "Atrium", "string", "Main", "Title"}), "Cordelbox\n");
}

TEST_F(Strings, AMissingTextIsReported) {
    EXPECT_EQ(Run({"string", "Main", "Subtitle"}).status, kMissing);
    EXPECT_EQ(Run({"string", "ProjectFilter", "Value", "--where", "ID=77"}).status, kMissing);
}

TEST_F(Strings, AMissingLanguageIsReportedWithThoseThatThereAre) {
    const ToolRun run = Run({"--language", "Klingon", "string", "Main", "Title"});
    EXPECT_EQ(run.status, kNoDocument);
    EXPECT_THAT(run.errors, HasSubstr("English, German"));
}

TEST_F(Strings, AFilterListIsPrintedTextByText) {
    EXPECT_EQ(Run({"--json", "filter", "FontFilter"}).Json(),
              nlohmann::json::array({"TrueType fonts", "*.ttf;*.ttc", "Bitmap fonts", "*.sfp;*.sfl;*.bdf;*.pcf"}));
    EXPECT_EQ(Output({"--language", "German", "filter", "ProfileFilter"}), "Farbprofile\n*.icc;*.icm\n");
}

TEST_F(Strings, AMissingListIsReported) { EXPECT_EQ(Run({"filter", "Nothing"}).status, kMissing); }

TEST_F(Strings, AListThatEntitiesMakeLongIsPrintedWhole) {
    std::string document = "<!DOCTYPE Cordelbox [<!ENTITY a \"" + std::string(1000, 'a') +
                           "\">]><Cordelbox><Main><Item Title=\"x\"/></Main><Long>";
    for (int i = 0; i < 200; ++i) {
        document += "<Item T=\"&a;&a;&a;&a;&a;\"/>";
    }
    WriteBytes(InstallFolder() / "Cordelbox/language/Long/Strings.xml", document + "</Long></Cordelbox>");
    EXPECT_EQ(Output({"--language", "Long", "filter", "Long"}).size(), 200u * 5001u);
}
