// A printer's storage report, recorded as one item per volume.

#include "record_fields.h"
#include "saving_host_test.h"

namespace {

VolumeRecord Volume(const char* name, const char* freeSpace = "600 MB") {
    VolumeRecord volume{};
    SetField(volume.volume, name);
    SetField(volume.totalSpace, "1000 MB");
    SetField(volume.freeSpace, freeSpace);
    SetField(volume.location, "Internal");
    SetField(volume.label, "Fonts");
    SetField(volume.status, "Ready");
    return volume;
}

StorageRecord Device(const char* name, std::vector<VolumeRecord>& volumes) {
    StorageRecord device{};
    SetField(device.name, name);
    device.volumes = volumes.data();
    device.volumeCount = static_cast<uint32_t>(volumes.size());
    return device;
}

uint32_t Report(std::vector<StorageRecord> devices) {
    const PrinterInfo info{devices.data(), static_cast<uint32_t>(devices.size())};
    return PrinterInfoProc(&info);
}

Record VolumeItem(const char* device, const char* name, const char* freeSpace = "600 MB") {
    return {{"StorageName", device},  {"Volume", name},   {"TotalSpace", "1000 MB"}, {"FreeSpace", freeSpace},
            {"Location", "Internal"}, {"Label", "Fonts"}, {"Status", "Ready"}};
}

Record FirstVolumeItem(const char* number, const char* device, const char* name, const char* freeSpace = "600 MB") {
    Record item = VolumeItem(device, name, freeSpace);
    item.insert(item.begin(), {"VolumeNum", number});
    return item;
}

class StorageDevices : public SavingHostTest {};

} // namespace

TEST_F(StorageDevices, AReportWithoutDevicesSavesTheDocumentUnchanged) {
    OpenMain("<Storage><Item Volume='old'/></Storage>");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Report({}); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"Volume", "old"}}}));
}

TEST_F(StorageDevices, NullCountsAsAReportWithoutDevices) {
    OpenMain("<Storage><Item Volume='old'/></Storage>");
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = PrinterInfoProc(nullptr); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"Volume", "old"}}}));
}

TEST_F(StorageDevices, ADeviceWithoutVolumesYieldsNoItem) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> none;
    std::vector<VolumeRecord> one{Volume("0:")};
    EXPECT_EQ(Report({Device("Empty", none), Device("Disk", one)}), 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("1", "Disk", "0:")}));
}

TEST_F(StorageDevices, ADeviceWithOneVolumeYieldsOneItemWithItsNumber) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    EXPECT_EQ(Report({Device("Disk", volumes)}), 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"VolumeNum", "1"},
                                             {"StorageName", "Disk"},
                                             {"Volume", "0:"},
                                             {"TotalSpace", "1000 MB"},
                                             {"FreeSpace", "600 MB"},
                                             {"Location", "Internal"},
                                             {"Label", "Fonts"},
                                             {"Status", "Ready"}}}));
}

TEST_F(StorageDevices, TheWrittenItemsAreNamedItem) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    Report({Device("Disk", volumes)});
    EXPECT_NE(UserMainText().find("<Item "), std::string::npos) << UserMainText();
}

TEST_F(StorageDevices, OnlyTheFirstVolumeOfEachDeviceCarriesTheNumber) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> disk{Volume("0:"), Volume("1:")};
    std::vector<VolumeRecord> flash{Volume("2:"), Volume("3:")};
    EXPECT_EQ(Report({Device("Disk", disk), Device("Flash", flash)}), 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("2", "Disk", "0:"), VolumeItem("Disk", "1:"),
                                            FirstVolumeItem("2", "Flash", "2:"), VolumeItem("Flash", "3:")}));
}

TEST_F(StorageDevices, TheNumberIsTheDevicesVolumeCount) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes;
    for (int i = 0; i < 12; ++i) {
        volumes.push_back(Volume(("v" + std::to_string(i)).c_str()));
    }
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("Storage").size(), 12u);
    EXPECT_EQ(GetAttrValue("Storage", "VolumeNum"), "12");
}

TEST_F(StorageDevices, EmptyFieldsAreWrittenAsEmptyValues) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{VolumeRecord{}};
    Report({Device("", volumes)});
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"VolumeNum", "1"},
                                             {"StorageName", ""},
                                             {"Volume", ""},
                                             {"TotalSpace", ""},
                                             {"FreeSpace", ""},
                                             {"Location", ""},
                                             {"Label", ""},
                                             {"Status", ""}}}));
}

TEST_F(StorageDevices, AFieldOf255BytesIsWrittenWhole) {
    OpenMain("<Storage/>");
    const std::string longest(255, 'x');
    std::vector<VolumeRecord> volumes{Volume("0:")};
    SetField(volumes[0].label, longest);
    Report({Device(longest.c_str(), volumes)});
    EXPECT_EQ(GetAttrValue("Storage", "StorageName"), longest.c_str());
    EXPECT_EQ(GetAttrValue("Storage", "Label"), longest.c_str());
}

TEST_F(StorageDevices, TextsAreStoredUnchanged) {
    OpenMain("<Storage/>");
    const std::string text = "  <a href=\"x\">&amp; 'b' ]]> ";
    std::vector<VolumeRecord> volumes{Volume("0:")};
    SetField(volumes[0].status, text);
    Report({Device("Disk", volumes)});
    EXPECT_EQ(GetAttrValue("Storage", "Status"), text.c_str());
    CloseAll();
    Open();
    EXPECT_EQ(GetAttrValue("Storage", "Status"), text.c_str());
}

TEST_F(StorageDevices, ReportingAVolumeUnchangedAddsNothing) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("0:"), Volume("1:")};
    Report({Device("Disk", volumes)});
    EXPECT_EQ(Report({Device("Disk", volumes)}), 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("2", "Disk", "0:"), VolumeItem("Disk", "1:")}));
}

TEST_F(StorageDevices, ReportingAChangedVolumeAddsASecondItemBesideTheOld) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("0:", "600 MB")};
    Report({Device("Disk", volumes)});
    volumes[0] = Volume("0:", "599 MB");
    EXPECT_EQ(Report({Device("Disk", volumes)}), 1u);
    EXPECT_EQ(SavedItems("Storage"),
              (Items{FirstVolumeItem("1", "Disk", "0:", "600 MB"), FirstVolumeItem("1", "Disk", "0:", "599 MB")}));
}

TEST_F(StorageDevices, AnItemWithFurtherAttributesCountsAsTheSameVolume) {
    OpenMain("<Storage><Item Note='n' VolumeNum='1' StorageName='Disk' Volume='0:' TotalSpace='1000 MB' "
             "FreeSpace='600 MB' Location='Internal' Label='Fonts' Status='Ready'/></Storage>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("Storage").size(), 1u);
}

TEST_F(StorageDevices, ASecondVolumeEqualToTheFirstIsNotAdded) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("0:"), Volume("0:")};
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("2", "Disk", "0:")}));
}

TEST_F(StorageDevices, ValuesThatDifferInCaseAreDifferentVolumes) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("a:")};
    Report({Device("Disk", volumes)});
    volumes[0] = Volume("A:");
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("1", "Disk", "a:"), FirstVolumeItem("1", "Disk", "A:")}));
}

TEST_F(StorageDevices, OlderItemsStayUntilTheyAreDeleted) {
    OpenMain("<Storage><Item Volume='old'/></Storage>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"Volume", "old"}}, FirstVolumeItem("1", "Disk", "0:")}));

    DelAllElem("Storage");
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("1", "Disk", "0:")}));
}

TEST_F(StorageDevices, NothingElseChanges) {
    OpenMain("<SendProject><Item Volume='0:'/></SendProject><Storage/><Jobs><Item Name='n'/></Jobs>"
             "<Later><Storage><Item Volume='second'/></Storage></Later>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("SendProject"), (Items{{{"Volume", "0:"}}}));
    EXPECT_EQ(SavedItems("Jobs"), (Items{{{"Name", "n"}}}));
    const std::string saved = UserMainText();
    EXPECT_NE(saved.find("second"), std::string::npos) << saved;
    EXPECT_EQ(saved.find("VolumeNum"), saved.rfind("VolumeNum")) << "the second container was written as well";
}

TEST_F(StorageDevices, TheFirstContainerInDocumentOrderIsWrittenAlsoWhenItIsNested) {
    OpenMain("<Printers><Item><Storage/></Item></Printers><Storage><Item Volume='second'/></Storage>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("1", "Disk", "0:")}));
    EXPECT_EQ(GetAttrValue("Storage", "Volume"), "0:");
}

TEST_F(StorageDevices, WithoutTheContainerNothingIsWrittenAndTheDocumentIsSaved) {
    OpenMain("<Jobs/>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Report({Device("Disk", volumes)}); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(UserMainText().find("Storage"), std::string::npos) << UserMainText();
}

TEST_F(StorageDevices, TheDocumentElementIsNoContainer) {
    InstallMain("<Storage><Item Volume='old'/></Storage>");
    CopyMainForUser("<Storage><Item Volume='old'/></Storage>");
    Open();
    std::vector<VolumeRecord> volumes{Volume("0:")};
    EXPECT_EQ(Report({Device("Disk", volumes)}), 1u);
    EXPECT_EQ(UserMainText().find("StorageName"), std::string::npos) << UserMainText();
}

TEST_F(StorageDevices, ACommentAmongTheItemsKeepsAllVolumesOut) {
    OpenMain("<Storage><Item Volume='old'/><!-- note --></Storage>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    uint32_t result = 0;
    EXPECT_TRUE(Saves([&] { result = Report({Device("Disk", volumes)}); }));
    EXPECT_EQ(result, 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{{{"Volume", "old"}}}));
    EXPECT_NE(UserMainText().find("<!-- note -->"), std::string::npos) << UserMainText();
}

TEST_F(StorageDevices, AVolumeThatXmlCannotHoldIsLeftOutAndTheOthersAreWritten) {
    OpenMain("<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("0:"), Volume("\x01"), Volume("2:")};
    EXPECT_EQ(Report({Device("Disk", volumes)}), 1u);
    EXPECT_EQ(SavedItems("Storage"), (Items{FirstVolumeItem("3", "Disk", "0:"), VolumeItem("Disk", "2:")}));
}

TEST_F(StorageDevices, WithoutAPerUserCopyTheReportStaysInMemory) {
    InstallMain(Document("<Storage/>"));
    const std::string installed = ReadFile(InstalledMainPath());
    Open();
    std::vector<VolumeRecord> volumes{Volume("0:")};
    EXPECT_EQ(Report({Device("Disk", volumes)}), 1u);
    EXPECT_EQ(GetAttrValue("Storage", "Volume"), "0:");
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
    EXPECT_EQ(ReadFile(InstalledMainPath()), installed);
}

TEST_F(StorageDevices, TheReportGoesToTheCurrentPrinterDocument) {
    OpenMain("<Storage/>");
    const std::string mainText = UserMainText();
    OpenPrinterWith("Office.xml", "<Storage/>");
    std::vector<VolumeRecord> volumes{Volume("0:")};
    Report({Device("Disk", volumes)});
    EXPECT_EQ(SavedPrinterItems("Office.xml", "Storage"), (Items{FirstVolumeItem("1", "Disk", "0:")}));
    EXPECT_EQ(UserMainText(), mainText);
}

TEST_F(StorageDevices, WithoutAnOpenDocumentTheResultIsStillOne) {
    Open();
    std::vector<VolumeRecord> volumes{Volume("0:")};
    EXPECT_EQ(Report({Device("Disk", volumes)}), 1u);
    EXPECT_EQ(Report({}), 1u);
    EXPECT_FALSE(std::filesystem::exists(UserMainPath()));
}
