// copy property, copy element.

#include "tool_test.h"

class Copy : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        Init();
    }
};

TEST_F(Copy, APropertyGoesFromFirstItemToFirstItem) {
    Output({"copy", "property", "Project", "CurrentChosePartition", "Name"});
    EXPECT_EQ(Output({"get", "CurrentChosePartition", "Name"}), "Untitled\n");
}

TEST_F(Copy, AMissingSourceDoesNotBlankTheTarget) {
    EXPECT_EQ(Run({"copy", "property", "Property", "Project", "Name"}).status, kMissing);
    EXPECT_EQ(Output({"get", "Project", "Name"}), "Untitled\n");
}

TEST_F(Copy, ATargetWithoutThePropertyIsReported) {
    EXPECT_EQ(Run({"copy", "property", "Project", "Property", "Name"}).status, kMissing);
}

TEST_F(Copy, ElementsGoOverThoseWithTheSameKey) {
    Output({"set", "CurrentDisk", "Size", "7", "--where", "Partition=Fonts", "--printer", "Atrium"});
    Output({"copy", "element", "CurrentDisk", "DefaultDisk", "Partition", "--printer", "Atrium"});
    EXPECT_EQ(Saved("DefaultDisk", "Atrium.xml"), Saved("CurrentDisk", "Atrium.xml"));
    EXPECT_EQ(ValueOf(Saved("DefaultDisk", "Atrium.xml")[1], "Size"), "7");
}

TEST_F(Copy, ASourceWithoutTheKeyIsReported) {
    EXPECT_EQ(Run({"copy", "element", "CurrentDisk", "DefaultDisk", "Nothing", "--printer", "Atrium"}).status,
              kMissing);
}
