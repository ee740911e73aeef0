// files edit.

#include "tool_test.h"

using ::testing::HasSubstr;

class FilesEdit : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
        Output({"files", "add", kSans, kSansBold, kRgbProfile});
    }

    std::string Stored(std::size_t file, const char* attribute) const {
        return ValueOf(Saved("Files").at(file), attribute);
    }
};

TEST_F(FilesEdit, ChangesWhereAFileIsStored) {
    auto expected = Saved("Files");
    Output({"files", "edit", "2", "--volume", "1:", "--path", "x/y.ttf", "--component", "Mine"});
    expected[1][1].second = "Mine";
    expected[1][4].second = "1:";
    expected[1][5].second = "x/y.ttf";
    EXPECT_EQ(Saved("Files"), expected);
}

TEST_F(FilesEdit, SetsAnIDThatIsFree) {
    Output({"files", "edit", kSansBold, "--id", "17"});
    EXPECT_EQ(Stored(1, "ID"), "17");
}

TEST_F(FilesEdit, ShowsAClashAndSaysHowToResolveIt) {
    const ToolRun run = Run({"files", "edit", "2", "--id", "0"});
    EXPECT_EQ(run.status, kNo);
    EXPECT_THAT(run.errors, HasSubstr("Two files of the kind font have the ID 0."));
    EXPECT_THAT(run.errors, HasSubstr("cordelctl files edit 2 --id next"));
    EXPECT_EQ(Stored(1, "ID"), "0");
}

TEST_F(FilesEdit, NextTakesTheLowestFreeID) {
    Output({"files", "edit", "1", "--id", "5"});
    Output({"files", "edit", "2", "--id", "next"});
    EXPECT_EQ(Stored(1, "ID"), "0");
}

TEST_F(FilesEdit, NextTakesASlotForAProfile) {
    Output({"files", "edit", "3", "--id", "next"});
    EXPECT_EQ(Stored(2, "ID"), "3");
}

TEST_F(FilesEdit, AnIDThatIsNoPlainNumberIsRefused) {
    for (const char* const id : {"x", "07", "-1", "32768", "1.5"}) {
        EXPECT_EQ(Run({"files", "edit", "2", std::string("--id=") + id}).status, kRefused) << id;
    }
}

TEST_F(FilesEdit, WithoutAVolumeOrAPathNoFileIsLeft) {
    const auto before = Saved("Files");
    for (const char* const option : {"--volume", "--local-path"}) {
        const ToolRun run = Run({"files", "edit", "2", option, ""});
        EXPECT_EQ(run.status, kUsage) << option;
        EXPECT_THAT(run.errors, HasSubstr(std::string("the value behind ") + option + " is empty"));
    }
    EXPECT_EQ(Saved("Files"), before);
}

TEST_F(FilesEdit, NothingToChangeIsMisuse) { EXPECT_EQ(Run({"files", "edit", "2"}).status, kUsage); }

TEST_F(FilesEdit, AnUnknownFileIsReported) {
    EXPECT_EQ(Run({"files", "edit", "9", "--volume", "1:"}).status, kMissing);
}

TEST_F(FilesEdit, AValueThatAHostCouldNotReadIsRefused) {
    EXPECT_EQ(Run({"files", "edit", "2", "--path", std::string(256, 'p')}).status, kRefused);
    Output({"files", "edit", "2", "--path", std::string(255, 'p')});
    EXPECT_EQ(Stored(1, "Path"), std::string(255, 'p'));
}
