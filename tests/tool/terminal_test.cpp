// What a person at a terminal gets, and a file does not: colour and progress.

#include "tool_test.h"

#include <cstdlib>

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

TEST_F(Terminal, ShowsColours) { EXPECT_THAT(Screen("tree"), HasSubstr("\x1b[34mFiles\x1b[0m")); }

TEST_F(Terminal, ShowsNoColoursWhenTheyAreRefused) {
    EXPECT_THAT(Screen("tree", "NO_COLOR=1"), Not(HasSubstr("\x1b[")));
}

TEST_F(Terminal, AFileGetsNoColours) {
    EXPECT_THAT(Output({"tree"}), Not(HasSubstr("\x1b[")));
    EXPECT_THAT(Run({"doctor"}).output, Not(HasSubstr("\x1b[")));
}

TEST_F(Terminal, AddingManyFilesShowsProgressInPlaceOfALineForEach) {
    Init();
    std::string names;
    for (const auto& copy : CopiesOf(kMono, 10)) {
        names += " '" + copy + "'";
    }
    const std::string screen = Screen("files add" + names);
    EXPECT_THAT(screen, HasSubstr("adding [##########----------] 5 of 10"));
    EXPECT_THAT(screen, HasSubstr("10 files added"));
    EXPECT_THAT(screen, Not(HasSubstr("added 1:")));
}

TEST_F(Terminal, AFileGetsALineForEachFileAdded) {
    Init();
    std::vector<std::string> arguments{"files", "add"};
    for (const auto& copy : CopiesOf(kMono, 10)) {
        arguments.push_back(copy);
    }
    const std::string output = Output(arguments);
    EXPECT_THAT(output, HasSubstr("added 10:"));
    EXPECT_THAT(output, Not(HasSubstr("adding [")));
}
