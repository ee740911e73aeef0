// Threads that read and write one document through every export that may be called so, and several documents one after
// the other. In the end every row is where it belongs, in memory and on disk.

#include "thread_host.h"

#include "store/module_state.h"
#include "store/node_readers.h"

#include <array>
#include <atomic>
#include <cstring>

namespace {

constexpr int kThreads = 6;
constexpr int kRounds = 25;

std::atomic<int> g_messages{0};

std::string Number(int number) { return std::to_string(number); }

std::string Id(int thread, int round) { return Number(thread * 1000 + round); }

template <std::size_t size>
void Fill(char (&field)[size], const std::string& value) {
    ASSERT_LT(value.size(), size);
    std::memcpy(field, value.c_str(), value.size() + 1);
}

std::string Containers() {
    std::string xml = "<List/><Files/><Jobs/><Storage/><SendProject/><CurrentDisk/><DefaultDisk/><CurrentFlash/>"
                      "<DefaultFlash/><CurrentChosePartition><Item Name=\"none\"/></CurrentChosePartition>"
                      "<Property><Item FileID=\"1\"/></Property><RGBSource><Item IDArray=\"0000\"/></RGBSource>"
                      "<PCLCurrentSetting><Item CMCOPIES=\"3\"/></PCLCurrentSetting>";
    for (int thread = 0; thread < kThreads; ++thread) {
        const std::string number = Number(thread);
        xml += "<Own" + number + "><Item V=\"\" W=\"\" K=\"k\"/></Own" + number + "><Copy" + number +
               "><Item V=\"\" K=\"k\"/></Copy" + number + "><Emptied" + number + "/>";
    }
    return xml;
}

/// One round of everything that writes.
void Write(int thread, int round) {
    const std::string id = Id(thread, round);
    const std::string own = "Own" + Number(thread);
    const std::string copy = "Copy" + Number(thread);
    const std::string emptied = "Emptied" + Number(thread);
    WriteTestFileName("List", id.c_str(), ("value " + id).c_str());
    FileItem file{};
    TrueTypeDetail detail{};
    file.detail = &detail;
    Fill(file.FileID, id);
    Fill(file.ID, id);
    Fill(file.Type, "5");
    Fill(file.LocalPath, "/path/" + id);
    WritePrjFile(&file);
    JobRecord job{};
    Fill(job.id, id);
    Fill(job.name, "job " + id);
    WriteJobList(&job);
    VolumeRecord volume{};
    Fill(volume.volume, id);
    StorageRecord storage{};
    storage.volumes = &volume;
    storage.volumeCount = 1;
    const PrinterInfo info{&storage, 1};
    PrinterInfoProc(&info);
    const PartitionRecord partition{round, id.c_str(), round * 1024, round};
    WritePartition(&partition, round % 2 == 0 ? 1u : 0u);
    WriteAttr(own.c_str(), "V", id.c_str());
    CopyProperty(own.c_str(), copy.c_str(), "V");
    CopyElement(own.c_str(), copy.c_str(), "K");
    CopyPatition(round % 2);
    WriteTestFileName(emptied.c_str(), id.c_str(), "x");
    DelAllElem(emptied.c_str());
    const SendSpaceRecord record{id.c_str(), "1", "2", "3"};
    WriteFreeVolume(&record, 1);
}

/// One round of everything that reads. Each value that is found is one that was written as a whole.
void Read(int thread, int round) {
    const std::string id = Id(thread, round);
    const std::string own = "Own" + Number(thread);
    EXPECT_EQ(GetAttrValue(own.c_str(), "V"), id.c_str()) << "nobody else writes there";
    EXPECT_EQ(GetAttrValue(("Copy" + Number(thread)).c_str(), "V"), id.c_str());
    EXPECT_EQ(GetAttrValue1("List", "ID", id.c_str(), "Value"), ("value " + id).c_str());
    EXPECT_EQ(GetAttrValue1("Files", "FileID", id.c_str(), "LocalPath"), ("/path/" + id).c_str());
    EXPECT_EQ(IsPathConflict(("/PATH/" + id).c_str()), 1u);
    EXPECT_EQ(GetXMLString("Main", "Title"), "Title");
    EXPECT_EQ(GetXMLString1("ProjectFilter", "ID", "2", "Value"), "Macro");
    std::array<char, 64> buffer{};
    GetFilter("ProjectFilter", buffer.data(), static_cast<uint32_t>(buffer.size()));
    EXPECT_STREQ(buffer.data(), "2");
    int32_t count = 0;
    JobRecord* const jobs = GetJobs(&count);
    EXPECT_GT(count, 0);
    for (int32_t index = 0; index < count; ++index) {
        EXPECT_EQ(jobs[index].name, "job " + std::string(jobs[index].id)) << "two jobs were mixed";
    }
    DelJobList(jobs);
    FileItem first{};
    EXPECT_EQ(GetFiles(&first), 0) << "no file is ticked";
    GetDiskPercent();
    EXPECT_GE(GetValidID(0), 0);
    EXPECT_EQ(GetAvailICMID(0), 1);
    std::array<int32_t, 28> settings{};
    ReadPCLFilter(settings.data());
    EXPECT_EQ(settings[14], 3);
}

} // namespace

// The host's message box and windows.
extern "C" int MessageBoxA(WindowHandle, const char*, const char*, unsigned int) {
    ++g_messages;
    return 0;
}
extern "C" int EnableWindow(WindowHandle, int) { return 0; }

class DocumentThreads : public ThreadTest {
protected:
    DocumentThreads() {
        for (const char* const name : {"Cordelbox.xml", "A.xml", "B.xml"}) {
            WriteDocument(CopyPath(name), Containers());
        }
        WriteDocument(
            StringsPath(),
            "<Main><Item Title=\"Title\"/></Main><ProjectFilter><Item ID=\"2\" Value=\"Macro\"/></ProjectFilter>");
        EXPECT_NE(GetXmlObj(&m_owner, "English"), nullptr);
    }
    ~DocumentThreads() override { ReleaseAll(); }

    void ExpectEveryRow(const std::string& name) const {
        std::set<std::string> ids;
        std::set<std::string> disk;
        std::set<std::string> flash;
        for (int thread = 0; thread < kThreads; ++thread) {
            for (int round = 0; round < kRounds; ++round) {
                ids.insert(Id(thread, round));
                (round % 2 == 0 ? disk : flash).insert(Id(thread, round));
            }
        }
        EXPECT_EQ(SavedValues(name, "List", "ID"), ids);
        EXPECT_EQ(SavedValues(name, "Files", "FileID"), ids);
        EXPECT_EQ(SavedValues(name, "Jobs", "ID"), ids);
        EXPECT_EQ(SavedValues(name, "Storage", "Volume"), ids);
        EXPECT_EQ(SavedValues(name, "CurrentDisk", "Partition"), disk);
        EXPECT_EQ(SavedValues(name, "DefaultDisk", "Partition"), disk);
        EXPECT_EQ(SavedValues(name, "CurrentFlash", "Partition"), flash);
        for (int thread = 0; thread < kThreads; ++thread) {
            const std::set<std::string> last{Id(thread, kRounds - 1)};
            EXPECT_EQ(SavedValues(name, ("Own" + Number(thread)).c_str(), "V"), last);
            EXPECT_EQ(SavedValues(name, ("Copy" + Number(thread)).c_str(), "V"), last);
            EXPECT_EQ(SavedValues(name, ("Emptied" + Number(thread)).c_str(), "ID"), std::set<std::string>{});
        }
    }

    /// All threads work on the current document, and this one meanwhile checks IDs as the user interface does.
    void WorkOnCurrentDocument() {
        std::atomic<int> running{kThreads};
        std::thread workers([&] {
            RunInThreads(kThreads, [&](int thread) {
                for (int round = 0; round < kRounds; ++round) {
                    Write(thread, round);
                    Read(thread, round);
                }
                --running;
            });
        });
        while (running > 0) {
            int32_t id = -1;
            EXPECT_EQ(CheckID(&id, nullptr, nullptr), 1);
            EXPECT_EQ(IdsAreValid(nullptr), 1);
        }
        workers.join();
    }
};

TEST_F(DocumentThreads, LoseNoRowOfOneDocumentNorOfSeveral) {
    WorkOnCurrentDocument();
    ASSERT_NE(GetPrinterXmlObj("A.xml"), nullptr);
    WorkOnCurrentDocument();
    ASSERT_NE(GetPrinterXmlObj("B.xml"), nullptr);
    WorkOnCurrentDocument();
    for (const char* const name : {"Cordelbox.xml", "A.xml", "B.xml"}) {
        SCOPED_TRACE(name);
        ExpectEveryRow(name);
    }
    EXPECT_EQ(g_messages, 0);
    ReleaseXmlObj("A.xml");
    ReleaseXmlObj("B.xml");
}

TEST_F(DocumentThreads, ReadOneDocumentWhileOthersWriteAnother) {
    CXmlObject* const main = State().currentDocument;
    WriteAttr("Own0", "V", "of the main document");
    ASSERT_NE(GetPrinterXmlObj("A.xml"), nullptr);
    std::atomic<bool> bDone{false};
    std::thread reader([&] {
        while (!bDone) {
            CXmlQuery query("Own0", "V");
            EXPECT_EQ(ReadAttribute(main, &query), 0);
            EXPECT_EQ(query.FirstValue(), "of the main document");
            CXmlQuery all("Own1", {});
            EXPECT_EQ(ListAllAttributes(main, &all), 0);
        }
    });
    WorkOnCurrentDocument();
    bDone = true;
    reader.join();
    ExpectEveryRow("A.xml");
    ReleaseXmlObj("A.xml");
}

TEST_F(DocumentThreads, SeeAWholeValueWhileItIsOverwritten) {
    const std::array<std::string, 3> texts{std::string(10, 'a'), std::string(5000, 'b'), std::string(100, 'c')};
    WriteAttr("Own0", "V", texts[0].c_str());
    std::atomic<bool> bDone{false};
    std::thread writer([&] {
        for (int round = 0; round < 300; ++round) {
            WriteAttr("Own0", "V", texts[static_cast<std::size_t>(round) % texts.size()].c_str());
        }
        bDone = true;
    });
    RunInThreads(3, [&](int) {
        while (!bDone) {
            const AnsiString value = GetAttrValue("Own0", "V");
            EXPECT_TRUE(value == texts[0].c_str() || value == texts[1].c_str() || value == texts[2].c_str());
        }
    });
    writer.join();
}

TEST_F(DocumentThreads, AddEqualItemsOnlyOnce) {
    RunInThreads(kThreads, [](int) {
        for (int round = 0; round < 50; ++round) {
            WriteTestFileName("List", Number(round).c_str(), "same");
        }
    });
    EXPECT_EQ(SavedValues("Cordelbox.xml", "List", "ID").size(), 50u);
}
