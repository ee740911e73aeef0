// id check, id validate, id next.

#include "tool_test.h"

using ::testing::HasSubstr;

class Ids : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
        Output({"files", "add", kSans, kSansBold, kRgbProfile});
    }

    void MakeClash() const { EXPECT_EQ(Run({"files", "edit", "2", "--id", "0"}).status, kNo); }
};

TEST_F(Ids, CheckFindsNoClash) {
    const auto result = Run({"--json", "id", "check", "2"}).Json();
    EXPECT_EQ(result, (nlohmann::json{{"file", "2"}, {"id", "1"}, {"group", "fonts"}, {"clash", false}}));
}

TEST_F(Ids, CheckShowsAClash) {
    MakeClash();
    const ToolRun run = Run({"--json", "id", "check", kSans});
    EXPECT_EQ(run.status, kNo);
    EXPECT_EQ(run.Json()["clash"], true);
    EXPECT_THAT(run.errors, HasSubstr("Two files of the kind font have the ID 0."));
}

TEST_F(Ids, CheckWithoutAFileTakesTheOneBeingEdited) {
    MakeClash();
    EXPECT_EQ(Run({"id", "check"}).status, kMissing);
    Output({"set", "Property", "FileID", "2"});
    EXPECT_EQ(Run({"id", "check"}).status, kNo);
}

TEST_F(Ids, ProfilesAreNotChecked) { EXPECT_EQ(Run({"--json", "id", "check", "3"}).Json()["group"], "none"); }

TEST_F(Ids, CheckOfAnUnknownFileIsReported) { EXPECT_EQ(Run({"id", "check", "99"}).status, kMissing); }

TEST_F(Ids, ValidateLooksAtTickedFilesOnly) {
    MakeClash();
    Output({"files", "tick", "1"});
    Output({"id", "validate"});
    Output({"files", "tick", "2"});
    const ToolRun run = Run({"id", "validate"});
    EXPECT_EQ(run.status, kNo);
    EXPECT_THAT(run.errors, HasSubstr("have the ID 0"));
}

TEST_F(Ids, MessagesComeInTheLanguageChosen) {
    MakeClash();
    Output({"files", "tick", "--all"});
    EXPECT_THAT(Run({"--language", "German", "id", "validate"}).errors,
                HasSubstr("Zwei Dateien der Art Schrift haben die ID 0."));
}

TEST_F(Ids, EveryLanguageHasAMessageForEveryGroup) {
    Output({"files", "add", "--type", "2", UserFile("a.mac", "a"), UserFile("b.mac", "b")});
    Output({"files", "add", "--type", "8", UserFile("a.ovl", "a"), UserFile("b.ovl", "b")});
    EXPECT_EQ(Run({"files", "edit", "5", "--id", "0"}).status, kNo);
    EXPECT_EQ(Run({"files", "edit", "7", "--id", "0"}).status, kNo);
    EXPECT_THAT(Run({"id", "check", "5"}).errors, HasSubstr("of the kind macro have the ID 0."));
    EXPECT_THAT(Run({"id", "check", "7"}).errors, HasSubstr("of the kind form overlay have the ID 0."));
    EXPECT_THAT(Run({"id", "check", "5", "--language", "German"}).errors, HasSubstr("Art Makro haben die ID 0."));
    EXPECT_THAT(Run({"id", "check", "7", "--language", "German"}).errors, HasSubstr("Formularüberlagerung"));
    Output({"files", "tick", "4", "5"});
    EXPECT_THAT(Run({"id", "validate"}).errors, HasSubstr("give one of those with ID 0 another"));
}

TEST_F(Ids, NextGivesTheLowestFreeNumberOfEachGroup) {
    const auto next = [this](const char* group) { return std::stoi(Output({"id", "next", group})); };
    EXPECT_EQ(next("font"), 3); // once a font was found, the profile's 2 counts as taken
    EXPECT_EQ(next("macro"), 0);
    EXPECT_EQ(next("overlay"), 0);
    EXPECT_EQ(next("rgb"), 3);
    EXPECT_EQ(next("printer"), 3);
    EXPECT_EQ(next("linked"), 1);
}

TEST_F(Ids, NextWithoutAFreeSlotIsRefused) {
    Output({"set", "LinkedProfile", "IDArray", "222"});
    EXPECT_EQ(Run({"id", "next", "linked"}).status, kRefused);
}

TEST_F(Ids, AnUnknownGroupIsMisuse) { EXPECT_EQ(Run({"id", "next", "everything"}).status, kUsage); }
