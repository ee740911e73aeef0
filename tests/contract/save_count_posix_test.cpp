// How often an export saves, counted by the kernel's notices of files put in place: they exist on Linux only.

#include "host_test.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <string>

class SaveCount : public HostTest {
protected:
    /// How often the main document's per-user copy is put in place during the call.
    template <class Call>
    int Saves(Call call) {
        const int nNotices = ::inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
        ::inotify_add_watch(nNotices, UserMainPath().parent_path().c_str(),
                            IN_MOVE); // the two ends apart: equal notices are merged
        call();
        alignas(inotify_event) char buffer[65536];
        const ssize_t nRead = ::read(nNotices, buffer, sizeof buffer);
        ::close(nNotices);
        int nSaves = 0;
        for (ssize_t nAt = 0; nAt < nRead;) {
            const auto* const event = reinterpret_cast<const inotify_event*>(buffer + nAt);
            if ((event->mask & IN_MOVED_TO) != 0 && std::string(event->name) == "Cordelbox.xml") {
                ++nSaves;
            }
            nAt += static_cast<ssize_t>(sizeof(inotify_event) + event->len);
        }
        return nSaves;
    }

    void SetUp() override {
        HostTest::SetUp();
        OpenMain("<Source><Item Key=\"1\" A=\"a\"/><Item Key=\"2\" A=\"b\"/></Source>"
                 "<Target><Item Key=\"2\" A=\"\"/></Target>");
    }
};

TEST_F(SaveCount, CopyElementSavesOncePerKey) {
    EXPECT_EQ(Saves([] { CopyElement("Source", "Target", "Key"); }), 2);
}

TEST_F(SaveCount, CopyElementSavesNotAtAllWithoutAKey) {
    EXPECT_EQ(Saves([] { CopyElement("Target", "Source", "Missing"); }), 0);
}

TEST_F(SaveCount, TheOtherGenericWritersSaveOnce) {
    EXPECT_EQ(Saves([] { CopyProperty("Source", "Target", "A"); }), 1);
    EXPECT_EQ(Saves([] { WriteAttr("Source", "A", "c"); }), 1);
    EXPECT_EQ(Saves([] { WriteAttr("Source", "Missing", "c"); }), 1);
    EXPECT_EQ(Saves([] { DelAllElem("Source"); }), 1);
    EXPECT_EQ(Saves([] { DelAllElem("Nowhere"); }), 1);
}

TEST_F(SaveCount, TheWritersOfListsSaveOnce) {
    const PrinterInfo info{};
    const PartitionRecord partition{};
    const FileItem file{};
    const JobRecord job{};
    EXPECT_EQ(Saves([&] { PrinterInfoProc(&info); }), 1);
    EXPECT_EQ(Saves([&] { WritePartition(&partition, 1); }), 1);
    EXPECT_EQ(Saves([&] { CopyPatition(0); }), 1);
    EXPECT_EQ(Saves([&] { CopyPatition(1); }), 1);
    EXPECT_EQ(Saves([&] { WritePrjFile(&file); }), 1);
    EXPECT_EQ(Saves([&] { WriteTestFileName("Source", "1", "v"); }), 1);
    EXPECT_EQ(Saves([&] { WriteJobList(&job); }), 1);
}

TEST_F(SaveCount, AReportOfManyVolumesIsSavedOnce) {
    CloseAll();
    OpenMain("<Storage/>");
    VolumeRecord volumes[3]{};
    StorageRecord storages[2]{};
    for (StorageRecord& storage : storages) {
        storage.volumes = volumes;
        storage.volumeCount = 3;
    }
    const PrinterInfo info{storages, 2};
    EXPECT_EQ(Saves([&] { PrinterInfoProc(&info); }), 1);
}

TEST_F(SaveCount, ACopyOfManyPartitionsIsSavedOnce) {
    CloseAll();
    OpenMain("<CurrentDisk><Item Partition='A' Percent='1' Size='2'/><Item Partition='B' Percent='3' Size='4'/>"
             "</CurrentDisk><DefaultDisk><Item Partition='A' Percent='' Size=''/></DefaultDisk>");
    EXPECT_EQ(Saves([] { CopyPatition(1); }), 1);
}

TEST_F(SaveCount, TheFreeSpaceIsSavedOnceEmptyAndOnceComplete) {
    const SendSpaceRecord records[3]{};
    EXPECT_EQ(Saves([&] { WriteFreeVolume(records, 3); }), 2);
    EXPECT_EQ(Saves([&] { WriteFreeVolume(nullptr, 0); }), 2);
}

TEST_F(SaveCount, ReadingSavesNotAtAll) {
    EXPECT_EQ(Saves([] { GetAttrValue1("Source", "Key", "2", "A"); }), 0);
}
