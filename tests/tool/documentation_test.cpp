// The man page and the completions know every verb that the help names.

#include "tool_test.h"

#include <sstream>

namespace {

/// The verbs that a help lists.
std::vector<std::string> VerbsOf(const std::string& help) {
    std::vector<std::string> verbs;
    std::istringstream lines(help.substr(help.find("Subcommands:")));
    std::string line;
    std::getline(lines, line);
    while (std::getline(lines, line) && line.starts_with("  ")) {
        std::string verb;
        if (line[2] != ' ' && std::istringstream(line) >> verb) {
            verbs.push_back(verb);
        }
    }
    return verbs;
}

bool HasWord(const std::string& text, const std::string& word) {
    const auto isLetter = [&](std::size_t at) {
        return at < text.size() && std::isalpha(static_cast<unsigned char>(text[at])) != 0;
    };
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
        if (!(at > 0 && isLetter(at - 1)) && !isLetter(at + word.size())) {
            return true;
        }
    }
    return false;
}

} // namespace

class Documentation : public ToolTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(Documentation, NamesEveryVerb) {
    const std::string text = ReadBytes(std::filesystem::path(TOOL_SOURCE_PATH) / GetParam());
    ASSERT_NE(text, "");
    const auto verbs = VerbsOf(Output({"--help"}));
    ASSERT_GT(verbs.size(), 15u);
    for (const std::string& verb : verbs) {
        EXPECT_TRUE(HasWord(text, verb)) << verb;
        const std::string help = Output({verb, "--help"});
        if (help.find("Subcommands:") == std::string::npos) {
            continue;
        }
        for (const std::string& inner : VerbsOf(help)) {
            EXPECT_TRUE(HasWord(text, inner)) << verb << " " << inner;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Sources, Documentation,
                         ::testing::Values("cordelctl.1", "completions/cordelctl.bash", "completions/_cordelctl"),
                         [](const auto& source) {
                             return std::string(source.index == 0 ? "ManPage" : source.index == 1 ? "Bash" : "Zsh");
                         });

TEST(BashCompletion, OffersTheVerbsThatBeginWithWhatIsTyped) {
    const std::string script = "source '" + std::string(TOOL_SOURCE_PATH) +
                               "/completions/cordelctl.bash'; COMP_WORDS=(cordelctl d); COMP_CWORD=1; _cordelctl; "
                               "[ \"${COMPREPLY[*]}\" = 'doctor diff' ]";
    const auto path = std::filesystem::path(RUN_PATH) / "completion.sh";
    WriteBytes(path, script);
    EXPECT_EQ(std::system(("bash '" + path.string() + "'").c_str()), 0);
    std::filesystem::remove(path);
}
