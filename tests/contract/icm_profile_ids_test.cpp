// The lowest free slot for an ICM profile.

#include "file_rows.h"
#include "saving_host_test.h"

namespace {

/// A profile file of this kind in this slot.
std::string Profile(const std::string& fileId, const std::string& kind, const std::string& slot) {
    return FileRow(fileId, "6", slot, "0", "ProfileType='" + kind + "'");
}

std::string RgbSlots(const std::string& slots) { return "<RGBSource><Item IDArray='" + slots + "'/></RGBSource>"; }

class IcmProfileIds : public SavingHostTest {
protected:
    /// The free slot of the RGB profiles, with these slots and files.
    int32_t FreeSlot(const std::string& slots, const std::string& rows = "") {
        CloseAll();
        OpenMain(RgbSlots(slots) + Files(rows));
        return GetAvailICMID(0);
    }
};

} // namespace

TEST_F(IcmProfileIds, TheFirstSlotThatNoProfileTakesIsFree) {
    EXPECT_EQ(FreeSlot("1111", Profile("a", "0", "1") + Profile("b", "0", "2")), 3);
    EXPECT_EQ(FreeSlot("1111", Profile("a", "0", "2") + Profile("b", "0", "4")), 1);
    EXPECT_EQ(FreeSlot("1111", Profile("a", "0", "1") + Profile("b", "0", "3")), 2);
}

TEST_F(IcmProfileIds, ZeroAndOneBothMarkASlotThatMayBeUsed) {
    EXPECT_EQ(FreeSlot("2100"), 2);
    EXPECT_EQ(FreeSlot("2001"), 2);
    EXPECT_EQ(FreeSlot("2201"), 3);
    EXPECT_EQ(FreeSlot("2210"), 3);
    EXPECT_EQ(FreeSlot("2220"), 4);
    EXPECT_EQ(FreeSlot("2221"), 4);
    EXPECT_EQ(FreeSlot("0"), 1);
    EXPECT_EQ(FreeSlot("1"), 1);
}

TEST_F(IcmProfileIds, OtherCharactersAreNeverOffered) {
    EXPECT_EQ(FreeSlot("3x 91"), 5);
    EXPECT_EQ(FreeSlot("abc"), 0);
}

TEST_F(IcmProfileIds, WithoutAFreeSlotItIsZero) {
    EXPECT_EQ(FreeSlot(""), 0);
    EXPECT_EQ(FreeSlot("2222"), 0);
    EXPECT_EQ(FreeSlot("11", Profile("a", "0", "2") + Profile("b", "0", "1")), 0);
}

TEST_F(IcmProfileIds, EachKindHasItsElementAndItsFiles) {
    OpenMain(RgbSlots("111") +
             "<PrinterProfile><Item IDArray='1111'/></PrinterProfile><LinkedProfile><Item IDArray='11111'/>"
             "</LinkedProfile>" +
             Files(Profile("a", "0", "1") + Profile("b", "2", "1") + Profile("c", "2", "2") + Profile("d", "3", "1") +
                   Profile("e", "3", "2") + Profile("f", "3", "3")));
    EXPECT_EQ(GetAvailICMID(0), 2);
    EXPECT_EQ(GetAvailICMID(2), 3);
    EXPECT_EQ(GetAvailICMID(3), 4);
}

TEST_F(IcmProfileIds, FilesOfOtherKindsAreNotCounted) {
    EXPECT_EQ(FreeSlot("0", Profile("a", "2", "1") + Profile("b", "3", "1") + Profile("c", "00", "1")), 1);
}

TEST_F(IcmProfileIds, AFileWithoutAProfileTypeIsNotCounted) {
    EXPECT_EQ(FreeSlot("11", FileRow("a", "6", "1") + FileRow("0", "0", "1")), 1);
}

TEST_F(IcmProfileIds, TheTypeOfAFileIsNotLookedAt) {
    EXPECT_EQ(FreeSlot("11", FileRow("a", "2", "1", "1", "ProfileType='0'")), 2);
}

TEST_F(IcmProfileIds, AnUnknownKindHasNoSlots) {
    OpenMain(RgbSlots("111"));
    EXPECT_EQ(GetAvailICMID(1), 0);
    EXPECT_EQ(GetAvailICMID(4), 0);
    EXPECT_EQ(GetAvailICMID(UINT32_MAX), 0);
    EXPECT_EQ(GetAvailICMID(0x80000000u), 0);
}

TEST_F(IcmProfileIds, WithoutTheElementThereIsNoSlot) {
    OpenMain(RgbSlots("111") + "<PrinterProfile/><LinkedProfile><Item Slots='1'/></LinkedProfile>");
    EXPECT_EQ(GetAvailICMID(2), 0);
    EXPECT_EQ(GetAvailICMID(3), 0);
}

TEST_F(IcmProfileIds, TheSlotsComeFromTheFirstItemThatHasThem) {
    OpenMain("<RGBSource><Item Name='n'/><Item IDArray='21'/><Item IDArray='11'/></RGBSource>");
    EXPECT_EQ(GetAvailICMID(0), 2);
}

TEST_F(IcmProfileIds, IdsAreReadLeniently) {
    EXPECT_EQ(FreeSlot("11", Profile("a", "0", " 1")), 2);
    EXPECT_EQ(FreeSlot("11", Profile("a", "0", "+1")), 2);
    EXPECT_EQ(FreeSlot("11", Profile("a", "0", "01")), 2);
    EXPECT_EQ(FreeSlot("11", Profile("a", "0", "1st")), 2);
}

TEST_F(IcmProfileIds, AnIdThatIsNoSlotIsIgnored) {
    for (const char* id :
         {"0", "-1", "", "abc", "3", "99999999999999999999", "-99999999999999999999", "2147483647", "-2147483648"}) {
        EXPECT_EQ(FreeSlot("11", Profile("a", "0", id)), 1) << id;
    }
}

TEST_F(IcmProfileIds, AFileWithoutAnIdDoesNotKeepTheOthersFromCounting) {
    EXPECT_EQ(FreeSlot("11", "<Item FileID='a' ProfileType='0'/>" + Profile("b", "0", "1")), 2);
}

TEST_F(IcmProfileIds, OfFilesOfOneFileIdOnlyTheFirstOfTheKindCounts) {
    EXPECT_EQ(FreeSlot("111", Profile("a", "0", "1") + Profile("a", "0", "2")), 2);
    EXPECT_EQ(FreeSlot("111", Profile("a", "2", "2") + Profile("a", "0", "1")), 2);
}

TEST_F(IcmProfileIds, FilesBehindACommentAreNotCounted) {
    EXPECT_EQ(FreeSlot("111", Profile("a", "0", "1") + "<!-- note -->" + Profile("b", "0", "2")), 2);
}

TEST_F(IcmProfileIds, TheDocumentsSlotsAreNotChanged) {
    OpenMain(RgbSlots("1111") + Files(Profile("a", "0", "1")));
    EXPECT_FALSE(Saves([] { EXPECT_EQ(GetAvailICMID(0), 2); }));
    EXPECT_EQ(GetAttrValue("RGBSource", "IDArray"), "1111");
}

TEST_F(IcmProfileIds, WithoutAnOpenDocumentThereIsNoSlot) {
    Open();
    EXPECT_EQ(GetAvailICMID(0), 0);
    EXPECT_EQ(GetAvailICMID(2), 0);
    EXPECT_EQ(GetAvailICMID(3), 0);
}
