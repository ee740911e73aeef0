// files verify, files renew, and what files add refuses.

#include "tool_test.h"

using ::testing::HasSubstr;

class FilesVerify : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    /// The font with this text in the place of the fsType.
    std::string RestrictedFont() const {
        std::string bytes = ReadBytes(kMono);
        const auto entry = bytes.find("OS/2");
        std::size_t table = 0;
        for (std::size_t i = 0; i < 4; ++i) {
            table = table << 8 | static_cast<unsigned char>(bytes[entry + 8 + i]);
        }
        bytes[table + 9] = 2;
        return UserFile("restricted.ttf", bytes);
    }

    nlohmann::json Codes(const std::vector<std::string>& options = {}) const {
        std::vector<std::string> command{"--json", "files", "verify"};
        command.insert(command.end(), options.begin(), options.end());
        nlohmann::json codes = nlohmann::json::array();
        for (const auto& finding : Run(command).Json()) {
            codes.push_back(finding["code"]);
        }
        return codes;
    }
};

TEST_F(FilesVerify, WholeFilesPass) {
    Output({"files", "add", kSans, kRgbProfile});
    EXPECT_EQ(Output({"files", "verify"}), "2 files verified: 0 errors, 0 warnings\n");
}

TEST_F(FilesVerify, AFontThatMustNotBeStoredIsRefusedUnlessForced) {
    const std::string font = RestrictedFont();
    const ToolRun refused = Run({"files", "add", font});
    EXPECT_EQ(refused.status, kRefused);
    EXPECT_THAT(refused.errors, HasSubstr("rights-restricted"));
    EXPECT_THAT(refused.errors, HasSubstr("--force"));
    EXPECT_TRUE(Saved("Files").empty());
    const ToolRun forced = Run({"files", "add", "--force", font});
    EXPECT_EQ(forced.status, kDone);
    EXPECT_THAT(forced.output, HasSubstr("rights-restricted"));
    EXPECT_EQ(Saved("Files").size(), 1u);
    EXPECT_EQ(Run({"files", "verify"}).status, kNo);
}

TEST_F(FilesVerify, AFontHasToCoverTheText) {
    EXPECT_EQ(Run({"files", "add", "--covers", "\xE6\xBC\xA2", kSans}).status, kRefused);
    Output({"files", "add", "--covers",
            "Gr\xC3\xBC\xC3\x9F"
            "e",
            kSans});
    EXPECT_EQ(Codes({"--covers", "\xE6\xBC\xA2"}), nlohmann::json({"not-covered"}));
}

TEST_F(FilesVerify, AMissingFileIsAnError) {
    const std::string file = UserFile("a.mac", "text");
    Output({"files", "add", "--type", "2", file});
    std::filesystem::remove(file);
    EXPECT_EQ(Run({"files", "verify"}).status, kNo);
    EXPECT_EQ(Codes(), nlohmann::json({"file-missing"}));
}

TEST_F(FilesVerify, AChangedFileIsToldAndRenewed) {
    const std::string file = UserFile("a.mac", "text");
    Output({"files", "add", "--type", "2", file});
    WriteBytes(file, "longer text");
    EXPECT_EQ(Codes(), nlohmann::json({"file-changed"}));
    Output({"files", "renew", "--all"});
    EXPECT_EQ(ValueOf(Saved("Files").at(0), "Size"), "11");
    EXPECT_EQ(Codes(), nlohmann::json::array());
}

TEST_F(FilesVerify, ADigestTellsOfAChangeThatLeavesTheSize) {
    const std::string file = UserFile("a.mac", "text");
    const auto time = std::filesystem::last_write_time(file);
    Output({"files", "add", "--type", "2", file});
    const std::string before = ReadBytes(UserPath());
    Output({"files", "verify", "--keep-digests"});
    EXPECT_EQ(ReadBytes(UserPath()), before);
    WriteBytes(file, "TEXT");
    std::filesystem::last_write_time(file, time);
    EXPECT_EQ(Codes(), nlohmann::json({"file-changed"}));
}

TEST_F(FilesVerify, EqualFilesAndEqualNamesAreTold) {
    const auto copies = CopiesOf(kMono, 2);
    Output({"files", "add", copies[0], copies[1]});
    EXPECT_EQ(Codes(), nlohmann::json({"same-content"}));
}
