// Whether a change is kept, and what is said when it is not.

#include "tool_test.h"

#include <sys/file.h>
#include <unistd.h>

#include <fcntl.h>

using ::testing::HasSubstr;

class KeptChanges : public ToolTest {};

TEST_F(KeptChanges, WithoutAPerUserCopyNothingIsChanged) {
    const ToolRun run = Run({"set", "Project", "Name", "Changed"});
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("nothing was changed"));
    EXPECT_THAT(run.errors, HasSubstr("cordelctl init"));
    EXPECT_EQ(Output({"get", "Project", "Name"}), "Untitled\n");
}

TEST_F(KeptChanges, WithAPerUserCopyItStays) {
    Init();
    Output({"set", "Project", "Name", "Changed"});
    EXPECT_EQ(Output({"get", "Project", "Name"}), "Changed\n");
    EXPECT_EQ(ReadBytes(InstalledPath()),
              ReadBytes(std::filesystem::path(SAMPLES_PATH) / "Cordelbox/xml/Cordelbox.xml"));
}

TEST_F(KeptChanges, AValueThatIsThereAlreadyCountsAsKept) {
    Init();
    Output({"set", "Project", "Name", "Untitled"});
}

TEST_F(KeptChanges, ACopyThatAnotherProgramHoldsIsReported) {
    Init();
    const int file = ::open(UserPath().c_str(), O_RDONLY | O_CLOEXEC);
    ASSERT_EQ(::flock(file, LOCK_EX), 0);
    const ToolRun run = Run({"set", "Project", "Name", "Changed", "--wait", "0"});
    ::close(file);
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("another program holds"));
}

TEST_F(KeptChanges, AFolderInTheCopysPlaceIsReported) {
    std::filesystem::create_directories(UserPath());
    const ToolRun run = Run({"set", "Project", "Name", "Changed"});
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("is not a file"));
}

TEST_F(KeptChanges, ACopyThatMayNotBeWrittenIsReported) {
    Init();
    std::filesystem::permissions(UserPath(), std::filesystem::perms::owner_read);
    const ToolRun run = Run({"set", "Project", "Name", "Changed"});
    EXPECT_EQ(run.status, kNotKept);
    EXPECT_THAT(run.errors, HasSubstr("may not be read and written"));
}

TEST_F(KeptChanges, EveryVerbThatChangesSaysSo) {
    const std::string report = std::string(SAMPLES_PATH) + "/storage-report.json";
    const std::vector<std::vector<std::string>> commands{
        {"set", "Project", "Name", "x"},
        {"set", "CurrentDisk", "Image", "9", "--where", "Partition=Fonts", "--printer", "Atrium"},
        {"clear", "Jobs"},
        {"copy", "property", "Project", "CurrentChosePartition", "Name"},
        {"copy", "element", "CurrentDisk", "DefaultDisk", "Partition", "--printer", "Atrium"},
        {"storage", "report", report},
        {"space"},
        {"partition", "add", "New", "--size", "1024"},
        {"partition", "copy", "--printer", "Atrium"},
        {"partition", "copy", "--image", "Fonts", "--printer", "Atrium"},
        {"files", "add", kSans},
        {"job", "add", "1", "A job"},
    };
    for (const auto& command : commands) {
        EXPECT_EQ(Run(command).status, kNotKept) << ::testing::PrintToString(command);
    }
}
