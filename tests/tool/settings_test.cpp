// pcl: the settings of the PCL filter.

#include "tool_test.h"

class Settings : public ToolTest {};

TEST_F(Settings, AllAreShownInTheirOrder) {
    const auto settings = nlohmann::ordered_json::parse(Output({"--json", "pcl"}));
    ASSERT_EQ(settings.size(), 28u);
    EXPECT_EQ(settings.begin().key(), "CMFORMFEED");
    EXPECT_EQ(settings["CMPAGELENGTH"], 66);
    EXPECT_EQ((--settings.end()).key(), "CMFRAGMENT_CHECK");
}

TEST_F(Settings, AChangedSettingIsShown) {
    Init();
    Output({"set", "PCLCurrentSetting", "CMCOPIES", "3"});
    EXPECT_EQ(Run({"--json", "pcl"}).Json()["CMCOPIES"], 3);
}
