// Every operation on a document, and every save, is made under that document's lock: the calls that take and give
// semaphores back are noted in their order, and so is the moment at which a save put a new file in place.

#include "host_test.h"

#include <dlfcn.h>
#include <semaphore.h>
#include <sys/stat.h>

#include <map>

namespace {

class CTrace;
CTrace* s_pTrace = nullptr; // the live one

/// Notes what happens to semaphores while it lives.
class CTrace {
public:
    CTrace(const std::map<sem_t*, std::string>& names, std::filesystem::path saved)
        : m_names(names), m_saved(std::move(saved)), m_nInode(Inode()) {
        s_pTrace = this;
    }
    ~CTrace() { s_pTrace = nullptr; }
    CTrace(const CTrace&) = delete;
    CTrace& operator=(const CTrace&) = delete;

    void Note(sem_t* semaphore, const char* what) {
        if (const ino_t inode = Inode(); inode != m_nInode) {
            m_nInode = inode;
            Append("saved");
        }
        const auto name = m_names.find(semaphore);
        Append((name != m_names.end() ? name->second : "other") + what);
        m_pLast = semaphore;
    }

    const std::string& Text() const noexcept { return m_strText; }
    sem_t* Last() const noexcept { return m_pLast; }

private:
    ino_t Inode() const {
        struct stat status = {};
        return ::stat(m_saved.c_str(), &status) == 0 ? status.st_ino : 0;
    }
    void Append(const std::string& event) { m_strText += (m_strText.empty() ? "" : " ") + event; }

    const std::map<sem_t*, std::string>& m_names;
    const std::filesystem::path m_saved;
    ino_t m_nInode;
    std::string m_strText;
    sem_t* m_pLast = nullptr;
};

using SemaphoreCall = int (*)(sem_t*);

/// What the call would have been, had this program not stood before it.
SemaphoreCall Real(const char* name) { return reinterpret_cast<SemaphoreCall>(::dlsym(RTLD_NEXT, name)); }

} // namespace

extern "C" {

// A lock counts as taken when it has been, and as held until it is given back.

CORDELBOX_API int sem_wait(sem_t* semaphore) {
    static const SemaphoreCall s_real = Real("sem_wait");
    const int result = s_real(semaphore);
    if (s_pTrace != nullptr) {
        s_pTrace->Note(semaphore, "+");
    }
    return result;
}

CORDELBOX_API int sem_post(sem_t* semaphore) {
    static const SemaphoreCall s_real = Real("sem_post");
    if (s_pTrace != nullptr) {
        s_pTrace->Note(semaphore, "-");
    }
    return s_real(semaphore);
}

} // extern "C"

class LockTrace : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        OpenMain("<Source><Item Key='1' A='a'/></Source><Target><Item Key='1' A=''/></Target>"
                 "<Files><Item FileID='f' LocalPath='a'/></Files><Jobs><Item Name='n' ID='1'/></Jobs>"
                 "<Storage/><SendProject/><CurrentDisk/><DefaultDisk/><CurrentFlash/><DefaultFlash/>",
                 "<Main><Item Title='t'/></Main>");
        m_names[m_owner.semaphore] = "pool";
        m_names[SemaphoreOf([] { GetAttrValue("Source", "A"); })] = "main";
        m_names[SemaphoreOf([] { GetXMLString("Main", "Title"); })] = "strings";
        ASSERT_EQ(m_names.size(), 3u) << "each has a semaphore of its own";
    }

    /// The semaphores that a call takes (+) and gives back (-), and its saves of the main document, in order.
    template <class Call>
    std::string Trace(Call call) {
        const CTrace trace(m_names, UserMainPath());
        call();
        return trace.Text();
    }

private:
    template <class Call>
    sem_t* SemaphoreOf(Call call) {
        const CTrace trace(m_names, UserMainPath());
        call();
        return trace.Last();
    }

    std::map<sem_t*, std::string> m_names;
};

namespace {

const std::string kOperation = "main+ main-";
const std::string kSave = " main+ saved main-";

} // namespace

TEST_F(LockTrace, AReadIsOneLockedPass) {
    EXPECT_EQ(Trace([] { GetAttrValue("Source", "A"); }), kOperation);
    EXPECT_EQ(Trace([] { GetAttrValue("Nowhere", "A"); }), kOperation);
    EXPECT_EQ(Trace([] { GetAttrValue1("Source", "Key", "1", "A"); }), kOperation);
    EXPECT_EQ(Trace([] { IsPathConflict("b"); }), kOperation);
}

TEST_F(LockTrace, AReadOfTextsLocksTheirOwnDocument) {
    EXPECT_EQ(Trace([] { GetXMLString("Main", "Title"); }), "strings+ strings-");
    EXPECT_EQ(Trace([] { GetXMLString1("Main", "Title", "t", "Title"); }), "strings+ strings-");
    char buffer[64];
    EXPECT_EQ(Trace([&] { GetFilter("Main", buffer, sizeof buffer); }), "strings+ strings-");
}

TEST_F(LockTrace, AWriterLocksForItsChangeAndOnceMoreForTheSave) {
    EXPECT_EQ(Trace([] { WriteAttr("Source", "A", "b"); }), kOperation + kSave);
    EXPECT_EQ(Trace([] { WriteTestFileName("Source", "1", "v"); }), kOperation + kSave);
    EXPECT_EQ(Trace([] { DelAllElem("Source"); }), kOperation + kSave);
    EXPECT_EQ(Trace([] { DelAllElem("Nowhere"); }), kOperation + kSave);
    const JobRecord job{};
    EXPECT_EQ(Trace([&] { WriteJobList(&job); }), kOperation + kSave);
    const FileItem file{};
    EXPECT_EQ(Trace([&] { WritePrjFile(&file); }), kOperation + kSave);
}

TEST_F(LockTrace, AWriterOfTwoContainersLocksForEach) {
    const PartitionRecord partition{};
    EXPECT_EQ(Trace([&] { WritePartition(&partition, 1); }), kOperation + " " + kOperation + kSave);
    EXPECT_EQ(Trace([&] { WritePartition(&partition, 0); }), kOperation + " " + kOperation + kSave);
}

TEST_F(LockTrace, ACopyLocksForItsReadsItsWritesAndEachSave) {
    EXPECT_EQ(Trace([] { CopyProperty("Source", "Target", "A"); }), kOperation + " " + kOperation + kSave);
    // The keys, then for the one key a child's attributes, its partner's change, and a save.
    EXPECT_EQ(Trace([] { CopyElement("Source", "Target", "Key"); }),
              kOperation + " " + kOperation + " " + kOperation + kSave);
}

TEST_F(LockTrace, AReportLocksForEachVolumeAndOnceForTheSave) {
    VolumeRecord volumes[2]{};
    volumes[1].volume[0] = 'b';
    StorageRecord storage{};
    storage.volumes = volumes;
    storage.volumeCount = 2;
    const PrinterInfo info{&storage, 1};
    EXPECT_EQ(Trace([&] { PrinterInfoProc(&info); }), kOperation + " " + kOperation + kSave);
    const PrinterInfo none{};
    EXPECT_EQ(Trace([&] { PrinterInfoProc(&none); }), "main+ saved main-");
}

TEST_F(LockTrace, TheJobsAreReadUnderALockEach) {
    int32_t count = 0;
    JobRecord* jobs = nullptr;
    EXPECT_EQ(Trace([&] { jobs = GetJobs(&count); }), kOperation + " " + kOperation);
    EXPECT_EQ(count, 1);
    DelJobList(jobs);
}

TEST_F(LockTrace, AnOpenTakesThePoolsLockBeforeTheDocuments) {
    InstallPrinter("p.xml", Document(""));
    EXPECT_EQ(Trace([this] { OpenPrinter("p.xml"); }), "pool+ other+ other- pool-");
    EXPECT_EQ(Trace([this] { OpenPrinter("p.xml"); }), "pool+ other+ other- pool-");
    EXPECT_EQ(Trace([] { ReleaseXmlObj("p.xml"); }), "pool+ other+ other- pool-");
    EXPECT_EQ(Trace([] { ReleaseXmlObj("none.xml"); }), "pool+ pool-");
}
