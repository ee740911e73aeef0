// A save that looks once more, immediately before it replaces the file.

#include "host_test.h"
#include "safe_save.h"

#include <filesystem>
#include <string>

namespace fs = std::filesystem;

class LastLookTest : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        WriteFile(UserMainPath(), "old");
    }

    /// Replaces the file, unless `isAsLoaded` says no, and returns why it did not.
    CReason Replace(const LastLook& isAsLoaded) const {
        CReason reason;
        const bool bReplaced = platform::ReplaceContents(UserMainPath().string().c_str(), "new", &reason, isAsLoaded);
        EXPECT_EQ(bReplaced, !reason);
        return reason;
    }
};

TEST_F(LastLookTest, KeepsWhatAnotherProgramWroteMeanwhile) {
    const fs::path other = UserMainPath().parent_path() / "other";
    WriteFile(other, "another program's");
    EXPECT_EQ(Replace([&] {
                  fs::rename(other, UserMainPath());
                  return false;
              }).m_kind,
              ReasonKind::Overtaken);
    EXPECT_EQ(UserMainText(), "another program's");
    EXPECT_EQ(std::distance(fs::directory_iterator(UserMainPath().parent_path()), fs::directory_iterator()), 1);
}

TEST_F(LastLookTest, ReplacesTheFileWhenItIsAsItWas) {
    EXPECT_EQ(Replace([] { return true; }).m_kind, ReasonKind::None);
    EXPECT_EQ(UserMainText(), "new");
}
