// restore: the installed document as the per-user copy again.

#include "tool_test.h"

using ::testing::HasSubstr;

class Restore : public ToolTest {
protected:
    /// What lies beside the copy of the main document under its name and a time.
    std::vector<std::string> Kept() const {
        std::vector<std::string> kept;
        for (const auto& entry : std::filesystem::directory_iterator(UserPath().parent_path())) {
            if (entry.path().filename().string().starts_with("Cordelbox.xml.")) {
                kept.push_back(ReadBytes(entry.path()));
            }
        }
        return kept;
    }
};

TEST_F(Restore, PutsTheInstalledDocumentBackAndKeepsWhatWasThere) {
    WriteBytes(UserPath(), "broken");
    const ToolRun run = Run({"--json", "restore"});
    EXPECT_EQ(run.status, kDone);
    EXPECT_EQ(ReadBytes(UserPath()), ReadBytes(InstalledPath()));
    EXPECT_EQ(ReadBytes(run.Json()["kept"].get<std::string>()), "broken");
}

TEST_F(Restore, NeverOverwritesWhatItKeptBefore) {
    for (const char* const text : {"first", "second", "third"}) {
        WriteBytes(UserPath(), text);
        Output({"restore"});
    }
    EXPECT_THAT(Kept(), ::testing::UnorderedElementsAre("first", "second", "third"));
}

TEST_F(Restore, CreatesACopyWhereThereWasNone) {
    EXPECT_TRUE(Run({"--json", "restore"}).Json()["kept"].is_null());
    EXPECT_EQ(ReadBytes(UserPath()), ReadBytes(InstalledPath()));
}

TEST_F(Restore, MovesAFolderOutOfTheWay) {
    std::filesystem::create_directories(UserPath());
    Output({"restore"});
    EXPECT_EQ(ReadBytes(UserPath()), ReadBytes(InstalledPath()));
}

TEST_F(Restore, RestoresAPrinterOrTheTextsAlone) {
    Output({"--printer", "Atrium", "restore"});
    EXPECT_EQ(ReadBytes(UserPath("Atrium.xml")), ReadBytes(InstalledPath("Atrium.xml")));
    EXPECT_FALSE(std::filesystem::exists(UserPath()));
    Output({"--language", "German", "restore"});
    EXPECT_TRUE(std::filesystem::exists(UserPath().parent_path().parent_path() / "language/German/Strings.xml"));
    EXPECT_FALSE(std::filesystem::exists(UserPath()));
}

TEST_F(Restore, TakesOneDocumentAtATime) {
    EXPECT_EQ(Run({"--language", "German", "--printer", "Atrium", "restore"}).status, kUsage);
}

TEST_F(Restore, LeavesTheCopyWhenThereIsNothingToPutInItsPlace) {
    WriteBytes(UserPath("Attic.xml"), "mine");
    EXPECT_EQ(Run({"--printer", "Attic", "restore"}).status, kNoDocument);
    EXPECT_EQ(ReadBytes(UserPath("Attic.xml")), "mine");
}
