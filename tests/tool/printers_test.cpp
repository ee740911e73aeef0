// printer add, list, remove, rename, and paths.

#include "tool_test.h"

using ::testing::HasSubstr;
using ::testing::Not;

class Printers : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }
};

TEST_F(Printers, AreListed) {
    const auto rows = Run({"--json", "printer", "list"}).Json();
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0]["printer"], "Atrium");
    EXPECT_EQ(rows[0]["copy"], "writable");
}

TEST_F(Printers, ANewOneIsReadyForUse) {
    Output({"printer", "add", "Second floor"});
    EXPECT_EQ(Run({"doctor", "Second floor"}).status, kDone);
    Output({"--printer", "Second floor", "job", "add", "1", "One"});
    Output({"--printer", "Second floor", "set", "PCLCurrentSetting", "CMCOPIES", "3"});
    EXPECT_EQ(Saved("Jobs", "Second floor.xml").size(), 1u);
    EXPECT_EQ(Run({"printer", "add", "Second floor"}).status, kRefused);
    EXPECT_EQ(Run({"printer", "add", "Atrium"}).status, kRefused);
    EXPECT_EQ(Run({"printer", "add", ""}).status, kUsage);
    EXPECT_EQ(Run({"printer", "add", "../x"}).status, kUsage);
}

TEST_F(Printers, ANewOneMayBeLikeAnother) {
    Output({"printer", "add", "Twin", "--like", "Atrium"});
    EXPECT_EQ(Saved("Jobs", "Twin.xml"), Saved("Jobs", "Atrium.xml"));
}

TEST_F(Printers, TakeTheDigestsOfTheirFilesAlong) {
    Output({"printer", "add", "Lab"});
    const std::string file = UserFile("a.mac", "text");
    const auto time = std::filesystem::last_write_time(file);
    Output({"--printer", "Lab", "files", "add", "--type", "2", file});
    Output({"--printer", "Lab", "files", "verify", "--keep-digests"});
    WriteBytes(file, "TEXT");
    std::filesystem::last_write_time(file, time);
    Output({"printer", "rename", "Lab", "Studio"});
    EXPECT_THAT(Run({"--printer", "Studio", "files", "verify"}).output, HasSubstr("file-changed"));

    EXPECT_THAT(Output({"printer", "remove", "Studio"}), HasSubstr("the digests of its files are gone"));
    Output({"printer", "add", "Studio"});
    Output({"--printer", "Studio", "files", "add", "--type", "2", file});
    EXPECT_THAT(Run({"--printer", "Studio", "files", "verify"}).output, Not(HasSubstr("file-changed")));
    EXPECT_THAT(Output({"printer", "remove", "Studio"}), Not(HasSubstr("digests")));
}

TEST_F(Printers, AreRemovedAndBroughtBack) {
    Output({"printer", "add", "Lab"});
    const std::string before = ReadBytes(UserPath("Lab.xml"));
    EXPECT_THAT(Output({"printer", "remove", "Lab"}), HasSubstr("cordelctl restore 1 --printer Lab.xml"));
    EXPECT_FALSE(std::filesystem::exists(UserPath("Lab.xml")));
    Output({"restore", "1", "--printer", "Lab"});
    EXPECT_EQ(ReadBytes(UserPath("Lab.xml")), before);
    EXPECT_EQ(Run({"printer", "remove", "Nowhere"}).status, kMissing);
}

TEST_F(Printers, AreRenamedWithTheirHistory) {
    Output({"printer", "add", "Lab"});
    Output({"--printer", "Lab", "job", "add", "1", "One"});
    Output({"printer", "rename", "Lab", "Office"});
    EXPECT_FALSE(std::filesystem::exists(UserPath("Lab.xml")));
    EXPECT_EQ(Saved("Jobs", "Office.xml").size(), 1u);
    EXPECT_EQ(Run({"--json", "history", "--printer", "Office"}).Json().size(), 1u);
    EXPECT_EQ(Run({"printer", "rename", "Office", "Atrium"}).status, kRefused);
}

TEST_F(Printers, PathsSayWhatIsReadAndWritten) {
    std::filesystem::remove(UserPath("Atrium.xml"));
    const auto rows = Run({"--json", "paths"}).Json();
    EXPECT_EQ(rows[0]["read"], UserPath().string());
    EXPECT_EQ(rows[0]["written"], UserPath().string());
    EXPECT_EQ(rows[1]["document"], "Atrium.xml");
    EXPECT_EQ(rows[1]["read"], InstalledPath("Atrium.xml").string());
    EXPECT_TRUE(rows[1]["written"].is_null());
    EXPECT_THAT(rows[1]["why"].get<std::string>(), HasSubstr("you have no copy"));
}
