// init: the per-user copies.

#include "tool_test.h"

using ::testing::HasSubstr;

class Init : public ToolTest {
protected:
    void Create() const { ToolTest::Init(); }
};

TEST_F(Init, CopiesTheMainAndThePrinterDocuments) {
    Create();
    for (const char* const name : {"Cordelbox.xml", "Atrium.xml", "Workshop.xml"}) {
        EXPECT_EQ(ReadBytes(UserPath(name)), ReadBytes(InstalledPath(name))) << name;
    }
}

TEST_F(Init, LeavesACopyThatIsThereAsItIs) {
    WriteBytes(UserPath(), "mine");
    EXPECT_THAT(Output({"init"}), HasSubstr("left as it is"));
    EXPECT_EQ(ReadBytes(UserPath()), "mine");
    EXPECT_EQ(ReadBytes(UserPath("Atrium.xml")), ReadBytes(InstalledPath("Atrium.xml")));
}

TEST_F(Init, OnAFullDiskLeavesNothingBehind) {
    const auto folder = UserFolder();
    const std::string line = "ulimit -f 1; XDG_CONFIG_HOME='" + folder.string() + "' '" +
                             (InstallFolder() / "cordelctl").string() + "' init >/dev/null 2>&1";
    WriteBytes(InstalledPath(), ReadBytes(InstalledPath()) + std::string(100000, ' '));
    EXPECT_NE(std::system(("trap '' XFSZ; " + line).c_str()), 0);
    EXPECT_FALSE(std::filesystem::exists(UserPath().parent_path()));
}

TEST_F(Init, CopiesOnePrinterAlone) {
    Output({"--printer", "Atrium", "init"});
    EXPECT_TRUE(std::filesystem::exists(UserPath("Atrium.xml")));
    EXPECT_FALSE(std::filesystem::exists(UserPath()));
}

TEST_F(Init, CopiesTheTextsOnRequest) {
    const auto strings = UserPath().parent_path().parent_path() / "language" / "German" / "Strings.xml";
    Create();
    EXPECT_FALSE(std::filesystem::exists(strings));
    Output({"init", "--strings"});
    EXPECT_TRUE(std::filesystem::exists(strings));
}

TEST_F(Init, LeavesNoOtherFileBehind) {
    Create();
    int files = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator(UserPath().parent_path())) {
        ++files;
    }
    EXPECT_EQ(files, 3);
}

TEST_F(Init, MakesCopiesOfReadOnlyDocumentsWritable) {
    std::filesystem::permissions(InstalledPath(), std::filesystem::perms::owner_read);
    Create();
    const auto permissions = std::filesystem::status(UserPath()).permissions();
    EXPECT_NE(permissions & std::filesystem::perms::owner_write, std::filesystem::perms::none);
}

TEST_F(Init, APrinterThatIsNotInstalledIsReported) {
    EXPECT_EQ(Run({"--printer", "Nowhere", "init"}).status, kNoDocument);
}

TEST_F(Init, AFolderThatCannotBeMadeIsReported) {
    WriteBytes(UserFolder() / "Marvane", "in the way");
    const ToolRun run = Run({"init"});
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("no per-user copy could be made"));
}

TEST_F(Init, ReportsInJson) {
    const auto rows = Run({"--json", "init"}).Json();
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0]["result"], "created");
    EXPECT_EQ(rows[0]["path"], UserPath().string());
}
