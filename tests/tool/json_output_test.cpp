// Every verb prints JSON, and docs/cordelctl.schema.json describes it. ToolTest::Run holds each run with --json against
// it.

#include "tool_test.h"

#include <set>
#include <sstream>

class JsonOutput : public ToolTest {};

TEST_F(JsonOutput, EveryVerbIsDescribed) {
    const auto schema = nlohmann::json::parse(ReadBytes(std::string(DOCS_PATH) + "/cordelctl.schema.json"));
    std::istringstream manual(Output({"manual", "--markdown"}));
    std::set<std::string> verbs;
    for (std::string line; std::getline(manual, line);) {
        if (line.starts_with("### ")) {
            verbs.insert(line.substr(4));
            EXPECT_TRUE(schema["properties"].contains(line.substr(4))) << line;
        }
    }
    EXPECT_GT(verbs.size(), 50u);
}

TEST_F(JsonOutput, OfEveryVerbIsAsDescribed) {
    Init();
    const std::string report = std::string(SAMPLES_PATH) + "/storage-report.json";
    const std::string reply =
        UserFile("reply.txt", "@PJL FSDIRLIST NAME=\"0:\\\"\r\na TYPE=DIR\r\nb TYPE=FILE SIZE=1\r\n");
    const std::string list = (m_folder / "list.json").string();
    const std::vector<std::vector<std::string>> commands{
        {"init", "--strings"},
        {"paths"},
        {"schema"},
        {"schema", "Jobs"},
        {"printer", "add", "Lab"},
        {"printer", "rename", "Lab", "Office"},
        {"printer", "list"},
        {"files", "add", "--keep-going", kSans, kSansBold, kRgbProfile, "/nowhere"},
        {"files", "verify"},
        {"files", "renew", "--all"},
        {"files", "list"},
        {"files", "tick", "--all"},
        {"files", "untick", "2"},
        {"files", "edit", "1", "--volume", "1:"},
        {"id", "check", "1"},
        {"id", "validate"},
        {"id", "next", "rgb"},
        {"export"},
        {"export", list},
        {"import", list},
        {"import", list, "--printer", "Workshop"},
        {"files", "remove", "3"},
        {"storage", "report", report},
        {"storage", "add", "9:", "--total-space", "1G"},
        {"storage", "edit", "9:", "--label", "x"},
        {"storage", "list"},
        {"storage", "list", "--all-printers"},
        {"storage", "remove", "9:"},
        {"storage", "inquiry", "0:fonts"},
        {"storage", "listing", reply},
        {"plan"},
        {"plan", "--steps"},
        {"space"},
        {"partition", "add", "P", "--size", "1K"},
        {"partition", "edit", "P", "--size", "2K"},
        {"partition", "list"},
        {"partition", "copy"},
        {"partition", "copy", "--image", "P"},
        {"partition", "remove", "P"},
        {"job", "add", "1", "One"},
        {"job", "edit", "1", "--copies", "2"},
        {"job", "list"},
        {"job", "remove", "1"},
        {"get", "Project", "Name"},
        {"get", "Files", "ID", "--all"},
        {"set", "Project", "Name", "x"},
        {"set", "Project", "Name", "y", "--dry-run"},
        {"add", "Project", "Name=z"},
        {"remove", "Project", "--where", "Name=z"},
        {"copy", "property", "Project", "CurrentChosePartition", "Name"},
        {"copy", "element", "CurrentDisk", "DefaultDisk", "Partition", "--printer", "Atrium"},
        {"clear", "Project"},
        {"show", "Files"},
        {"tree"},
        {"diff"},
        {"history"},
        {"undo"},
        {"redo"},
        {"restore", "1"},
        {"doctor"},
        {"doctor", "--fix", "--yes"},
        {"pcl"},
        {"report", (m_folder / "page.html").string()},
        {"report", "-"},
        {"string", "Main", "Title"},
        {"filter", "FontFilter"},
        {"reset", "--yes"},
        {"printer", "remove", "Office"},
        {"manual"},
        {"completion", "bash"},
        {"complete", "--", "d"}};
    for (auto command : commands) {
        command.insert(command.begin(), "--json");
        const ToolRun run = Run(command);
        EXPECT_LE(run.status, kRefused) << ::testing::PrintToString(command);
        EXPECT_NE(run.status, kUsage) << ::testing::PrintToString(command) << run.errors;
    }
    EXPECT_EQ(Run({"--json", "batch"}, "job add 1 One\nset CurrentChosePartition Name x\n").status, kDone);
}
