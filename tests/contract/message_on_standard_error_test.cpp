// A host that supplies no message box gets the message of an ID clash on standard error. In a program of its own,
// since whether a host supplies one is settled when it is linked.

#include "file_rows.h"
#include "host_test.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace {

constexpr const char* kStrings = "<Main><Item Title='Storage manager'/></Main><StringTable><Item "
                                 "DuplicateID_EditingFile_SendingProject='Two of %s have the ID %d.'/></StringTable>"
                                 "<ProjectFilter><Item ID='2' Value='macros'/></ProjectFilter>";

const std::string kClash =
    "<Property><Item FileID='a'/></Property>" + Files(FileRow("a", "2", "12") + FileRow("b", "2", "12"));

class MessageOnStandardErrorDeathTest : public HostTest {};

} // namespace

TEST_F(MessageOnStandardErrorDeathTest, TheDuplicateIdCheckPrintsCaptionAndText) {
    OpenMain(kClash, kStrings);
    EXPECT_EXIT(std::exit(CheckID(nullptr, nullptr, nullptr)), ::testing::ExitedWithCode(0),
                ::testing::AllOf(::testing::HasSubstr("Storage manager"),
                                 ::testing::HasSubstr("Two of macros have the ID 12.")));
}

TEST_F(MessageOnStandardErrorDeathTest, TheIdValidationPrintsCaptionAndText) {
    OpenMain(kClash, kStrings);
    EXPECT_EXIT(std::exit(IdsAreValid(nullptr)), ::testing::ExitedWithCode(0),
                ::testing::AllOf(::testing::HasSubstr("Storage manager"),
                                 ::testing::HasSubstr("Two of macros have the ID 12.")));
}

TEST_F(MessageOnStandardErrorDeathTest, LentWindowsAreLeftAlone) {
    OpenMain(kClash, kStrings);
    int window = 0;
    WindowHandle handle = &window;
    MessageWindows windows{};
    windows.owner = &handle;
    windows.windows[0] = &handle;
    EXPECT_EXIT(std::exit(IdsAreValid(&windows)), ::testing::ExitedWithCode(0), "Two of macros");
}

TEST_F(MessageOnStandardErrorDeathTest, WithoutAClashNothingIsPrinted) {
    OpenMain("<Property><Item FileID='a'/></Property>" + Files(FileRow("a", "2", "12")), kStrings);
    EXPECT_EXIT(std::exit(CheckID(nullptr, nullptr, nullptr) + IdsAreValid(nullptr)), ::testing::ExitedWithCode(2),
                ::testing::StrEq(""));
}
