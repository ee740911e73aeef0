// Every function is safe before the first GetXmlObj: it finds no document.

#include "host_test.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <string>

class BeforeOpening : public HostTest {
protected:
    /// Runs the check in a process in which the library has not been called yet.
    template <class Check>
    static void ExpectInFreshProcess(Check check) {
        EXPECT_EXIT(std::exit(check() ? 0 : 1), ::testing::ExitedWithCode(0), "");
    }
};

TEST_F(BeforeOpening, ReleaseAllReportsFailure) {
    ExpectInFreshProcess([] { return ReleaseAll() == 1; });
}

TEST_F(BeforeOpening, ReleaseXmlObjReportsFailure) {
    ExpectInFreshProcess([] { return ReleaseXmlObj("printer.xml") == 1; });
}

TEST_F(BeforeOpening, APrinterDocumentDoesNotOpen) {
    ExpectInFreshProcess([this] {
        InstallPrinter("printer.xml", Document(""));
        return GetPrinterXmlObj("printer.xml") == nullptr;
    });
}

TEST_F(BeforeOpening, TheGettersMiss) {
    ExpectInFreshProcess([] {
        return GetAttrValue("Files", "Path") == "" && GetAttrValue1("Files", "FileID", "7", "Path") == "7" &&
               GetXMLString("Main", "Title") == "" && GetXMLString1("ProjectFilter", "ID", "2", "Value") == "2";
    });
}

TEST_F(BeforeOpening, TheGenericWritersWriteNothing) {
    ExpectInFreshProcess([] { return WriteAttr("List", "Name", "value") == 1 && DelAllElem("List") == 0; });
}

TEST_F(BeforeOpening, TheCopiesCopyNothing) {
    ExpectInFreshProcess(
        [] { return CopyProperty("List", "Other", "Name") == 1 && CopyElement("List", "Other", "Name") == 1; });
}

TEST_F(BeforeOpening, AStorageReportIsNotRecorded) {
    ExpectInFreshProcess([] {
        VolumeRecord volume{};
        StorageRecord storage{};
        storage.volumes = &volume;
        storage.volumeCount = 1;
        const PrinterInfo info{&storage, 1};
        return PrinterInfoProc(&info) == 1;
    });
}

TEST_F(BeforeOpening, FreeSpaceIsNotRecorded) {
    ExpectInFreshProcess([] {
        const SendSpaceRecord record{"Disk", "1", "2", "1"};
        return WriteFreeVolume(&record, 1) == 1;
    });
}

TEST_F(BeforeOpening, ThereAreNoPartitions) {
    ExpectInFreshProcess([] {
        const PartitionRecord record{1, "P1", 1024, 50};
        WritePartition(&record, 1);
        CopyPatition(0);
        CopyPatition(1);
        return GetDiskPercent() == "";
    });
}

TEST_F(BeforeOpening, ThereAreNoFiles) {
    ExpectInFreshProcess([] {
        FileItem item{};
        WriteTestFileName("Files", "1", "name");
        return WritePrjFile(&item) == 1 && GetFiles(&item) == 0 && IsPathConflict("") == 0;
    });
}

TEST_F(BeforeOpening, AFilterListIsEmpty) {
    ExpectInFreshProcess([] {
        std::string buffer = "abcd";
        return GetFilter("Filters", buffer.data(), 4) == 1 && buffer == std::string(4, '\0');
    });
}

TEST_F(BeforeOpening, EveryPclSettingIsZero) {
    ExpectInFreshProcess([] {
        int32_t settings[28];
        std::fill(std::begin(settings), std::end(settings), 5);
        return ReadPCLFilter(settings) == 1 && std::count(std::begin(settings), std::end(settings), 0) == 28;
    });
}

TEST_F(BeforeOpening, NoIdClashes) {
    ExpectInFreshProcess([] {
        int32_t nId = 5;
        int32_t nKind = 5;
        return CheckID(&nId, &nKind, nullptr) == 1 && nId == 0 && nKind == 5 && IdsAreValid(nullptr) == 1;
    });
}

TEST_F(BeforeOpening, EveryIdIsFreeAndNoSlotIsOffered) {
    ExpectInFreshProcess([] { return GetValidID(0) == 0 && GetValidID(1) == 0 && GetAvailICMID(0) == 0; });
}

TEST_F(BeforeOpening, ThereAreNoJobs) {
    ExpectInFreshProcess([] {
        const JobRecord job{};
        int32_t nCount = 5;
        return WriteJobList(&job) == 1 && GetJobs(&nCount) == nullptr && nCount == 0;
    });
}
