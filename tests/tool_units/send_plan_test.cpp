// What sending would do.

#include "planning/send_plan.h"

#include <gtest/gtest.h>

#include <limits>
#include <stdexcept>

namespace {

ProjectFile Ticked(const std::string& fileID, const std::string& path, std::int64_t size, const std::string& id = "",
                   const std::string& type = "2") {
    return {fileID, type, "", id, "0:", path, "/home/" + path, size, true};
}

ProjectFile Unticked(ProjectFile file) {
    file.ticked = false;
    return file;
}

/// FileIDs with what is free after each; those that do not fit in brackets.
std::string Steps(const VolumePlan& plan) {
    std::string text;
    for (const PlanStep& step : plan.steps) {
        const std::string one = step.file.fileID + ":" + std::to_string(step.freeAfter);
        text += (text.empty() ? "" : " ") + (step.fits ? one : "(" + one + ")");
    }
    return text;
}

} // namespace

TEST(SendPlan, WithoutAListingEverythingIsNew) {
    const auto plan =
        MakePlan({Ticked("1", "a", 10), Unticked(Ticked("2", "b", 99)), Ticked("3", "c", 20)}, {{"0:", 100}}, {});
    ASSERT_EQ(plan.volumes.size(), 1u);
    EXPECT_EQ(plan.volumes[0].filesSize, 30);
    EXPECT_EQ(plan.volumes[0].bytesToSend, 30);
    EXPECT_EQ(plan.volumes[0].freeSpaceAfterSend, 70);
    EXPECT_EQ(plan.volumes[0].bytesMissing, 0);
    EXPECT_EQ(Steps(plan.volumes[0]), "1:90 3:70");
    EXPECT_TRUE(plan.Fits());
}

TEST(SendPlan, TellsWhatIsThereAndWhatIsReplaced) {
    const auto plan =
        MakePlan({Ticked("1", "fonts/A.ttf", 10), Ticked("2", "fonts/b.ttf", 20), Ticked("3", "c", 5)}, {{"0:", 100}},
                 std::vector<PrinterFile>{{"0:", "fonts\\a.TTF", 10}, {"0:", "fonts/b.ttf", 50}, {"0:", "other", 7}});
    const VolumePlan& volume = plan.volumes.at(0);
    EXPECT_EQ(volume.steps[0].standing, Standing::IsThere);
    EXPECT_EQ(volume.steps[1].standing, Standing::Replaces);
    EXPECT_EQ(volume.steps[1].sizeThere, 50);
    EXPECT_EQ(volume.steps[2].standing, Standing::New);
    EXPECT_EQ(volume.filesSize, 35);
    EXPECT_EQ(volume.freeSpaceAfterSend, 65);
    EXPECT_EQ(volume.bytesToSend, 25);
    EXPECT_EQ(volume.bytesReplaced, 50);
    EXPECT_EQ(Steps(volume), "1:100 2:130 3:125");
    ASSERT_EQ(volume.inNoProject.size(), 1u);
    EXPECT_EQ(volume.inNoProject[0].path, "other");
}

TEST(SendPlan, AnUntickedFileOfTheProjectIsInAProject) {
    const auto plan =
        MakePlan({Unticked(Ticked("1", "a", 10))}, {{"0:", 100}}, std::vector<PrinterFile>{{"0:", "a", 10}});
    EXPECT_TRUE(plan.volumes.empty());
}

TEST(SendPlan, TellsByHowMuchItDoesNotFitAndWhatDoes) {
    const auto plan = MakePlan({Ticked("1", "a", 70), Ticked("2", "b", 40), Ticked("3", "c", 10)}, {{"0:", 100}}, {});
    EXPECT_FALSE(plan.Fits());
    EXPECT_EQ(plan.volumes[0].bytesMissing, 20);
    EXPECT_EQ(plan.volumes[0].freeSpaceAfterSend, -20);
    EXPECT_EQ(Steps(plan.volumes[0]), "3:90 2:50 (1:50)");
}

TEST(SendPlan, FindsTheOrderInWhichItFits) {
    // The second makes room for the first.
    const auto plan =
        MakePlan({Ticked("1", "a", 30), Ticked("2", "b", 5)}, {{"0:", 10}}, std::vector<PrinterFile>{{"0:", "b", 40}});
    EXPECT_TRUE(plan.Fits());
    EXPECT_EQ(Steps(plan.volumes[0]), "2:45 1:15");
}

TEST(SendPlan, ExactlyFullFits) {
    EXPECT_TRUE(MakePlan({Ticked("1", "a", 100)}, {{"0:", 100}}, {}).Fits());
    EXPECT_FALSE(MakePlan({Ticked("1", "a", 101)}, {{"0:", 100}}, {}).Fits());
}

TEST(SendPlan, FilesOfOneGroupClashOverAnID) {
    const auto plan =
        MakePlan({Ticked("1", "a", 1, "3", "1"), Ticked("2", "b", 1, "3", "5"), Ticked("3", "c", 1, "3", "2"),
                  Ticked("4", "d", 1, "03", "2"), Ticked("5", "e", 1, "3", "7")},
                 {{"0:", 100}}, {});
    ASSERT_EQ(plan.clashes.size(), 1u);
    EXPECT_EQ(plan.clashes[0].group, "fonts");
    EXPECT_EQ(plan.clashes[0].id, "3");
    EXPECT_EQ(plan.clashes[0].fileIDs, (std::vector<std::string>{"1", "2"}));
}

TEST(SendPlan, ProfilesOfOtherSlotsDoNotClash) {
    ProjectFile rgb = Ticked("1", "a", 1, "2", "6");
    ProjectFile printer = Ticked("2", "b", 1, "2", "6");
    rgb.profileType = "0";
    printer.profileType = "2";
    EXPECT_TRUE(MakePlan({rgb, printer}, {{"0:", 100}}, {}).clashes.empty());
    printer.profileType = "0";
    EXPECT_EQ(MakePlan({rgb, printer}, {{"0:", 100}}, {}).clashes.size(), 1u);
}

TEST(SendPlan, AnIDClashesWithThatOfAFileOnThePrinter) {
    const std::vector<ProjectFile> files{Ticked("1", "a", 1, "3"), Unticked(Ticked("2", "b", 1, "3"))};
    EXPECT_TRUE(MakePlan(files, {{"0:", 100}}, {}).clashes.empty());
    const auto plan = MakePlan(files, {{"0:", 100}}, std::vector<PrinterFile>{{"0:", "b", 9}});
    ASSERT_EQ(plan.clashes.size(), 1u);
    EXPECT_EQ(plan.clashes[0].kind, PlanClash::Kind::WithPrinter);
    EXPECT_EQ(plan.clashes[0].fileIDs, (std::vector<std::string>{"1", "2"}));
}

TEST(SendPlan, TwoFilesForOnePathClash) {
    const auto plan = MakePlan({Ticked("1", "f/a", 1), Ticked("2", "F\\A", 2)}, {{"0:", 100}}, {});
    ASSERT_EQ(plan.clashes.size(), 1u);
    EXPECT_EQ(plan.clashes[0].kind, PlanClash::Kind::OnePath);
}

TEST(SendPlan, VolumesAreApart) {
    ProjectFile other = Ticked("2", "a", 20);
    other.volume = "1:";
    const auto plan = MakePlan({Ticked("1", "a", 10), other}, {{"0:", 100}, {"1:", 10}, {"2:", 10}}, {});
    ASSERT_EQ(plan.volumes.size(), 2u);
    EXPECT_EQ(plan.volumes[0].bytesMissing, 0);
    EXPECT_EQ(plan.volumes[1].bytesMissing, 10);
}

TEST(SendPlan, RefusesWhatCannotBeWorkedOut) {
    EXPECT_THROW(MakePlan({Ticked("1", "a", 1)}, {{"9:", 1}}, {}), std::out_of_range);
    constexpr auto kLargest = std::numeric_limits<std::int64_t>::max();
    EXPECT_THROW(MakePlan({Ticked("1", "a", kLargest), Ticked("2", "b", 1)}, {{"0:", 1}}, {}), std::overflow_error);
}
