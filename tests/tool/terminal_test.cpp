// What a person at a terminal gets, and a file does not: colour and progress.

#include "preloaded.h"
#include "tool_test.h"

#include <cstdlib>
#include <sstream>

using ::testing::HasSubstr;
using ::testing::Not;

class Terminal : public ToolTest {
protected:
    /// What cordelctl writes to a terminal, on both of its streams.
    std::string Screen(const std::string& arguments, const std::string& environment = "-u NO_COLOR") const {
        const auto screen = m_folder / "screen";
        const std::string line = "script -qec \"env " + environment + " XDG_CONFIG_HOME='" + UserFolder().string() +
                                 "' '" + (InstallFolder() / "cordelctl").string() + "' " + arguments +
                                 "\" /dev/null >'" + screen.string() + "' </dev/null";
        EXPECT_EQ(std::system(line.c_str()), 0);
        return ReadBytes(screen);
    }
};

TEST_F(Terminal, ShowsColours) {
    Init();
    EXPECT_THAT(Screen("set Project Name x --dry-run"), HasSubstr("\x1b[33m~ Project"));
}

TEST_F(Terminal, ShowsNoColoursWhenTheyAreRefused) {
    EXPECT_THAT(Screen("tree", "NO_COLOR=1"), Not(HasSubstr("\x1b[")));
}

TEST_F(Terminal, ShowsHowFarAWorkIsThatTakesLongerThanASecond) {
    Init();
    std::string files;
    for (int i = 1; i <= 20; ++i) {
        files += " '" + UserFile(std::to_string(i) + ".mac", "x") + "'";
    }
    const CPreloadable clock(HURRIED_CLOCK_PATH);
    const std::string hurried = clock.Environment();
    const std::string screen = Screen("files add --type 2" + files, hurried);
    EXPECT_THAT(screen, HasSubstr("\radding [####----------------] 4 of 20"));
    EXPECT_THAT(screen, HasSubstr("\r\x1b[K")); // it goes again
    EXPECT_THAT(Screen("files verify", hurried), HasSubstr("\rverifying ["));
    EXPECT_THAT(Screen("export '" + (m_folder / "list").string() + "'"), Not(HasSubstr("\r\x1b[K")));
    EXPECT_THAT(Screen("files remove --all"), HasSubstr("20 files removed"));
    EXPECT_THAT(Screen("import '" + (m_folder / "list").string() + "'", hurried), HasSubstr("\rimporting ["));
}

TEST_F(Terminal, AShortWorkAndAFileGetNoProgress) {
    Init();
    EXPECT_THAT(Screen("files add --type 2 '" + UserFile("a.mac", "x") + "'"), Not(HasSubstr("adding")));
    const CPreloaded hurried(HURRIED_CLOCK_PATH);
    EXPECT_EQ(Run({"files", "verify"}).errors, "");
}

TEST_F(Terminal, AFileGetsNoColours) {
    EXPECT_THAT(Output({"tree"}), Not(HasSubstr("\x1b[")));
    EXPECT_THAT(Run({"doctor"}).output, Not(HasSubstr("\x1b[")));
}

TEST_F(Terminal, TablesFitTheScreen) {
    Init();
    Output({"files", "add", kSans});
    const auto screen = m_folder / "screen";
    const std::string line = "script -qec \"stty cols 60; XDG_CONFIG_HOME='" + UserFolder().string() + "' '" +
                             (InstallFolder() / "cordelctl").string() + "' files list\" /dev/null >'" +
                             screen.string() + "' </dev/null";
    EXPECT_EQ(std::system(line.c_str()), 0);
    std::istringstream lines(ReadBytes(screen));
    int count = 0;
    for (std::string text; std::getline(lines, text); ++count) {
        EXPECT_LE(text.size(), 61u) << text; // with the carriage return
    }
    EXPECT_EQ(count, 2);
}

TEST_F(Terminal, NothingOfADocumentReachesTheScreenAsItIs) {
    Init();
    WriteBytes(UserPath(), "<D><Jobs><Item Name='\xC2\x9B"
                           "31mred \xE2\x80\xAE txt' ID='1' Type='' Copies='' Stored='' checked=''/></Jobs></D>");
    for (const char* const verb : {"job list", "get Jobs Name", "show Jobs", "tree", "doctor main || true"}) {
        const std::string screen = Screen(verb);
        EXPECT_EQ(screen.find("\xC2\x9B"), std::string::npos) << verb;
        EXPECT_EQ(screen.find("\xE2\x80\xAE"), std::string::npos) << verb;
    }
}
