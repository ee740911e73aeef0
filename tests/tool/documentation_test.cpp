// The manual page and the completions in the tree are those that the program prints, and the guide's commands work.

#include "tool_test.h"

using ::testing::HasSubstr;

class Documentation : public ToolTest {};

TEST_F(Documentation, TheManualPageIsTheProgramsOwn) {
    EXPECT_EQ(ReadBytes(std::filesystem::path(TOOL_SOURCE_PATH) / "cordelctl.1"), Output({"manual"}))
        << "make it anew: cordelctl manual >tools/cordelctl/cordelctl.1";
}

TEST_F(Documentation, TheCompletionsAreTheProgramsOwn) {
    const auto folder = std::filesystem::path(TOOL_SOURCE_PATH) / "completions";
    EXPECT_EQ(ReadBytes(folder / "cordelctl.bash"), Output({"completion", "bash"}));
    EXPECT_EQ(ReadBytes(folder / "_cordelctl"), Output({"completion", "zsh"}));
}

TEST_F(Documentation, ThePageOfDocumentsNamesEveryContainerAndAttribute) {
    const std::string page = ReadBytes(std::filesystem::path(DOCS_PATH) / "documents.md");
    const auto containers = Run({"--json", "schema"}).Json();
    ASSERT_GT(containers.size(), 10u);
    for (const auto& container : containers) {
        EXPECT_THAT(page, HasSubstr(container["container"].get<std::string>()));
        for (const auto& attribute : container["attributes"]) {
            EXPECT_THAT(page, HasSubstr("`" + attribute["attribute"].get<std::string>() + "`"))
                << container["container"];
        }
    }
}

class Completion : public ToolTest {};

TEST_F(Completion, OffersWhatBelongsThere) {
    Init();
    EXPECT_EQ(Output({"complete", "--", "d"}), "diff\ndoctor\n");
    EXPECT_EQ(Output({"complete", "--", "files", "t"}), "tick\n");
    EXPECT_EQ(Output({"complete", "--", "--printer", ""}), "Atrium\nWorkshop\n");
    EXPECT_EQ(Output({"complete", "--", "get", "Jo"}), "Jobs\n");
    EXPECT_EQ(Output({"complete", "--", "get", "Jobs", "C"}), "Copies\n");
    EXPECT_EQ(Output({"complete", "--", "--printer", "Atrium", "job", "edit", "10"}), "101\n102\n103\n");
    EXPECT_EQ(Output({"complete", "--", "id", "next", "p"}), "printer\n");
    EXPECT_THAT(Output({"complete", "--", "files", "list", "--t"}), HasSubstr("--ticked"));
}

TEST_F(Completion, BashQuotesNamesWithBlanks) {
    Init();
    Output({"printer", "add", "Second floor"});
    const std::string script =
        "export XDG_CONFIG_HOME='" + UserFolder().string() + "'; PATH='" + InstallFolder().string() +
        "':$PATH; source '" + std::string(TOOL_SOURCE_PATH) +
        "/completions/cordelctl.bash'; COMP_WORDS=(cordelctl --printer Sec); COMP_CWORD=2; _cordelctl; "
        "[ \"${COMPREPLY[*]}\" = 'Second\\ floor' ]";
    const auto path = m_folder / "completion.sh";
    WriteBytes(path, script);
    EXPECT_EQ(std::system(("bash '" + path.string() + "'").c_str()), 0);
}
