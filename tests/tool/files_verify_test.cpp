// files verify, files renew, and what files add refuses.

#include "../tool_units/damages.h"
#include "tool_test.h"

#include <algorithm>

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

    /// A listed file whose digest is kept has another content now, which neither its size nor its time tells.
    void ChangeUnderItsDigest() const {
        const std::string file = UserFile("a.mac", "text");
        const auto time = std::filesystem::last_write_time(file);
        Output({"files", "add", "--type", "2", file});
        Output({"files", "verify", "--keep-digests"});
        WriteBytes(file, "TEXT");
        std::filesystem::last_write_time(file, time);
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
    WriteBytes(copies[1], ReadBytes(kMono) + std::string(4, '\0'));
    Output({"files", "renew", "--all"});
    EXPECT_EQ(Codes(), nlohmann::json({"same-postscript-name"}));
}

TEST_F(FilesVerify, AChosenFileIsHeldAgainstAllOthers) {
    const auto copies = CopiesOf(kMono, 2);
    Output({"files", "add", copies[0], copies[1], kSans});
    EXPECT_EQ(Codes({"1"}), nlohmann::json({"same-content"}));
    EXPECT_EQ(Codes({"3"}), nlohmann::json::array());
}

TEST_F(FilesVerify, AnyFontOfACollectionMayHaveTheNameOfAnother) {
    const std::string collection = "/usr/share/fonts/truetype/wqy/wqy-microhei.ttc";
    Output({"files", "add", collection, UserFile("longer.ttc", ReadBytes(collection) + std::string(4, '\0'))});
    const auto findings = Run({"--json", "files", "verify", "2"}).Json();
    ASSERT_EQ(findings.size(), 2u); // of the other one the first name is recorded
    EXPECT_EQ(findings[1]["what"], "file 1 is a font WenQuanYiMicroHei, too");
    const auto all = Codes();
    EXPECT_EQ(std::count(all.begin(), all.end(), "same-postscript-name"), 2);
}

TEST_F(FilesVerify, ASoftFontIsLookedThrough) {
    std::string font = WholeSoftFont();
    Output({"files", "add", UserFile("whole.sfp", font)});
    EXPECT_EQ(Codes(), nlohmann::json::array());
    font.erase(0, font.find('\x1B', 1));
    font.pop_back();
    Output({"files", "add", "--force", "--type", "1", UserFile("cut.sfp", font)});
    EXPECT_EQ(Codes(), nlohmann::json({"truncated", "soft-font-id", "soft-font-count"}));
}

TEST_F(FilesVerify, AFileThatCannotBeReadIsAnError) {
    const auto copies = CopiesOf(kMono, 1);
    Output({"files", "add", copies[0]});
    std::filesystem::resize_file(copies[0], (std::uintmax_t{1} << 30) + 1); // larger than any font
    EXPECT_EQ(Codes(), nlohmann::json({"file-unreadable"}));
}

TEST_F(FilesVerify, AFileOfNoFormMayBeOfAnySize) {
    const std::string file = UserFile("a.mac", "");
    std::filesystem::resize_file(file, (std::uintmax_t{1} << 30) + 1);
    Output({"files", "add", "--type", "2", file});
    EXPECT_EQ(ValueOf(Saved("Files").at(0), "Size"), "1073741825");
}

TEST_F(FilesVerify, AProfileIsHeldAgainstItsSlots) {
    Output({"files", "add", "--profile", "printer", kRgbProfile});
    const ToolRun run = Run({"files", "verify"});
    EXPECT_EQ(run.status, kDone); // a warning
    EXPECT_THAT(run.output, HasSubstr("class-for-slot"));
    EXPECT_THAT(run.output, HasSubstr("choose the slots"));
}

TEST_F(FilesVerify, ARenewedFileIsRenewedAmongTheDigestsToo) {
    ChangeUnderItsDigest();
    Run({"files", "renew", "--all", "--dry-run"});
    EXPECT_EQ(Codes(), nlohmann::json({"file-changed"}));
    EXPECT_EQ(Output({"files", "renew", "--all"}), "1 file recorded anew\n");
    EXPECT_EQ(Codes(), nlohmann::json::array());
}

TEST_F(FilesVerify, DigestsStayAsTheyAreWhenTheCommandFails) {
    ChangeUnderItsDigest();
    const ToolRun batch = Run({"batch"}, "files renew --all\nfiles verify --keep-digests\nfiles remove 99\n");
    EXPECT_EQ(batch.status, kMissing);
    EXPECT_EQ(Codes(), nlohmann::json({"file-changed"}));
    EXPECT_EQ(Run({"batch", "--dry-run"}, "files verify --keep-digests\n").status, kDone);
    EXPECT_EQ(Codes(), nlohmann::json({"file-changed"}));
    Run({"batch"}, "files renew --all\n");
    EXPECT_EQ(Codes(), nlohmann::json::array());
}

TEST_F(FilesVerify, AFileThatIsAddedAgainIsNotHeldAgainstItsOldDigest) {
    const std::string file = UserFile("a.mac", "text");
    Output({"files", "add", "--type", "2", file});
    Output({"files", "verify", "--keep-digests"});
    Output({"files", "remove", "1"});
    WriteBytes(file, "TEXT");
    Output({"files", "add", "--type", "2", file});
    EXPECT_EQ(Codes(), nlohmann::json::array());
}
