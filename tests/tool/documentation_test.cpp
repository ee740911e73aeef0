// The manual page and the completions in the tree are those that the program prints, and the guide's commands work.

#include "tool_test.h"

#include <map>
#include <regex>
#include <set>
#include <sstream>

using ::testing::HasSubstr;

namespace {

/// The cells of a row of a table, without blanks around them; none of another line.
std::vector<std::string> CellsOf(const std::string& line) {
    std::vector<std::string> cells;
    if (line.starts_with("|")) {
        std::istringstream rest(line.substr(1));
        for (std::string cell; std::getline(rest, cell, '|');) {
            const auto first = cell.find_first_not_of(' ');
            const auto last = cell.find_last_not_of(' ');
            cells.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
        }
    }
    return cells;
}

/// What stands between backquotes, but not what is said of it in brackets.
std::vector<std::string> NamesIn(std::string text) {
    text = std::regex_replace(text, std::regex(R"(\([^)]*\))"), "");
    const std::regex name("`([^`]*)`");
    std::vector<std::string> names;
    for (std::sregex_iterator found(text.begin(), text.end(), name), end; found != end; ++found) {
        names.push_back((*found)[1]);
    }
    return names;
}

} // namespace

class Documentation : public ToolTest {
protected:
    /// The attributes of each container that docs/documents.md describes: those of its tables' columns "attribute",
    /// below a heading that names containers, or beside a column "container".
    static std::map<std::string, std::vector<std::string>> AttributesOnThePage() {
        std::map<std::string, std::vector<std::string>> attributes;
        std::vector<std::string> containers;
        std::vector<std::string> headings;
        std::istringstream page(ReadBytes(std::filesystem::path(DOCS_PATH) / "documents.md"));
        for (std::string line; std::getline(page, line);) {
            if (line.starts_with("#")) {
                containers.clear();
                std::istringstream names(line.starts_with("### ") ? line.substr(4) : "");
                for (std::string name; names >> name;) {
                    containers.push_back(name.substr(0, name.find(',')));
                }
            }
            const std::vector<std::string> cells = CellsOf(line);
            if (cells.empty()) {
                headings.clear();
            } else if (headings.empty()) {
                headings = cells;
            }
            std::vector<std::string> of = containers;
            for (std::size_t i = 0; i < cells.size() && i < headings.size(); ++i) {
                if (headings[i] == "container") {
                    of = NamesIn(cells[i]);
                } else if (headings[i].starts_with("attribute")) {
                    for (const std::string& container : of) {
                        const auto names = NamesIn(cells[i]);
                        auto& all = attributes[container];
                        all.insert(all.end(), names.begin(), names.end());
                    }
                }
            }
        }
        return attributes;
    }
};

TEST_F(Documentation, TheManualPageIsTheProgramsOwn) {
    EXPECT_EQ(ReadBytes(std::filesystem::path(TOOL_SOURCE_PATH) / "cordelctl.1"), Output({"manual"}))
        << "make it anew: cordelctl manual >tools/cordelctl/cordelctl.1";
}

TEST_F(Documentation, TheCompletionsAreTheProgramsOwn) {
    const auto folder = std::filesystem::path(TOOL_SOURCE_PATH) / "completions";
    EXPECT_EQ(ReadBytes(folder / "cordelctl.bash"), Output({"completion", "bash"}));
    EXPECT_EQ(ReadBytes(folder / "_cordelctl"), Output({"completion", "zsh"}));
}

TEST_F(Documentation, ThePageOfDocumentsSaysWhatTheTableOfTheToolSays) {
    const std::map<std::string, std::vector<std::string>> page = AttributesOnThePage();
    const auto containers = Run({"--json", "schema"}).Json();
    std::set<std::string> known;
    for (const auto& container : containers) {
        const auto name = container["container"].get<std::string>();
        known.insert(name);
        ASSERT_TRUE(page.contains(name)) << name << " is not on the page";
        std::vector<std::string> attributes;
        for (const auto& attribute : container["attributes"]) {
            attributes.push_back(attribute["attribute"]);
        }
        std::vector<std::string> described = page.at(name);
        if (name == "CurrentFlash" || name == "DefaultFlash") { // which the page describes with the disk's
            std::erase(described, "Percent");
        }
        if (container["inOrder"]) {
            EXPECT_EQ(described, attributes) << name;
        } else {
            EXPECT_THAT(described, ::testing::UnorderedElementsAreArray(attributes)) << name;
        }
    }
    for (const auto& [name, attributes] : page) {
        EXPECT_TRUE(known.contains(name)) << name << " is on the page, and unknown to the tool";
    }
    EXPECT_GT(known.size(), 10u);
}

TEST_F(Documentation, ThePageOfDocumentsSaysHowLongTheTextsOfAJobMayBe) {
    const std::string page = ReadBytes(std::filesystem::path(DOCS_PATH) / "documents.md");
    const auto attributes = Run({"--json", "schema", "Jobs"}).Json();
    EXPECT_GT(attributes.size(), 4u);
    for (const auto& attribute : attributes) {
        EXPECT_THAT(page, HasSubstr("| `" + attribute["attribute"].get<std::string>() + "` | " +
                                    std::to_string(attribute["bytes"].get<int>()) + " |"));
    }
}

TEST_F(Documentation, TheGuideHasEveryGroupOfVerbsAndEveryStatus) {
    const std::string guide = ReadBytes(std::filesystem::path(DOCS_PATH) / "cordelctl.md");
    std::istringstream manual(Output({"manual", "--markdown"}));
    int verbs = 0;
    for (std::string line; std::getline(manual, line);) {
        if (line.starts_with("### ")) {
            ++verbs;
            const std::string group = line.substr(4, line.find(' ', 4) - 4);
            EXPECT_TRUE(std::regex_search(guide, std::regex("(cordelctl |`)" + group + "\\b"))) << line;
        }
    }
    EXPECT_GT(verbs, 50);
    for (const char* const status : {"0", "1", "2", "3", "4", "5", "6", "7", "130"}) {
        EXPECT_NE(guide.find("\n| " + std::string(status) + " |"), std::string::npos) << status;
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

TEST_F(Completion, ZshIsGivenNamesWithBlanksWhole) {
    Init();
    Output({"printer", "add", "Second floor"});
    // What zsh itself has for completions. A name that is typed so far may be quoted; a quote that is open is not part
    // of the prefix.
    const std::string script =
        "compdef() { :; }; compadd() { offered=(\"${(@P)2}\"); }; _files() { offered=(files); }\n"
        "export XDG_CONFIG_HOME='" +
        UserFolder().string() + "'; PATH='" + InstallFolder().string() + "':$PATH; source '" +
        std::string(TOOL_SOURCE_PATH) +
        "/completions/_cordelctl'\n"
        "for typed in Sec 'Second\\ f' \"'Second f\"; do\n"
        "    words=(cordelctl --printer $typed); CURRENT=3; PREFIX=${typed#\\'}; _cordelctl\n"
        "    [[ ${#offered} == 1 && $offered[1] == 'Second floor' ]] || exit 1\n"
        "done\n"
        "words=(cordelctl doc); CURRENT=2; PREFIX=doc; _cordelctl; [[ $offered == doctor ]] || exit 2\n"
        "words=(cordelctl export sp); CURRENT=3; PREFIX=sp; _cordelctl; [[ $offered == files ]]\n";
    const auto path = m_folder / "completion.zsh";
    WriteBytes(path, script);
    EXPECT_EQ(std::system(("zsh -f '" + path.string() + "'").c_str()), 0);
}
