// files add on damaged fonts and profiles: on both targets each is refused for its cause, and taken by force.

#include "../tool_units/damages.h"
#include "tool_test.h"

#include <map>

using ::testing::HasSubstr;

class FilesDamages : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }

    /// A folder with all damages of this kind that are errors, and for each file the code of its cause.
    std::filesystem::path Damaged(FileKind kind, std::map<std::string, std::string>& codes) const {
        const auto folder = m_folder / "damaged";
        std::filesystem::create_directory(folder);
        for (const Damage& damage : MakeDamages()) {
            const CauseText& cause = TextOf(damage.cause);
            if (damage.kind == kind && cause.severity == Severity::Error) {
                const std::string name = std::to_string(codes.size()) + ".bin";
                WriteBytes(folder / name, damage.bytes);
                codes.emplace(name, cause.code);
            }
        }
        return folder;
    }

    void ExpectRefused(FileKind kind, const std::vector<std::string>& options) const {
        std::map<std::string, std::string> codes;
        std::vector<std::string> command{"--json", "files", "add", "--recursive", Damaged(kind, codes).string()};
        command.insert(command.end(), options.begin(), options.end());
        const ToolRun run = Run(command);
        EXPECT_EQ(run.status, kRefused);
        const auto rows = run.Json();
        ASSERT_EQ(rows.size(), codes.size());
        for (const auto& row : rows) {
            const std::string file = std::filesystem::path(row["file"].get<std::string>()).filename().string();
            EXPECT_EQ(row["added"], false) << row;
            EXPECT_THAT(row["findings"].dump(), HasSubstr("\"code\":\"" + codes.at(file) + "\"")) << row;
        }
        EXPECT_TRUE(Saved("Files").empty());
    }
};

TEST_F(FilesDamages, OfFontsAreRefusedAndTakenByForce) {
    ExpectRefused(FileKind::Font, {"--type", "5"});
    EXPECT_EQ(Run({"files", "add", "--force", "--recursive", (m_folder / "damaged").string(), "--type", "5"}).status,
              kDone);
    EXPECT_GT(Saved("Files").size(), 100u);
}

TEST_F(FilesDamages, OfSoftFontsAreRefusedAndTakenByForce) {
    ExpectRefused(FileKind::SoftFont, {"--type", "1"});
    EXPECT_EQ(Run({"files", "add", "--force", "--recursive", (m_folder / "damaged").string(), "--type", "1"}).status,
              kDone);
    EXPECT_GT(Saved("Files").size(), 10u);
}

TEST_F(FilesDamages, OfProfilesAreRefused) { ExpectRefused(FileKind::Profile, {"--type", "6", "--profile", "rgb"}); }
