// Every call of a load to the system fails in turn, in every way. Whatever fails, either a document is open, whole, or
// none is, and no lock is held; and the next load works.

#include "file_bytes.h"
#include "platform/semaphore.h"
#include "scratch_folder.h"
#include "store/document_pool.h"
#include "store/xml_object.h"
#include "system_calls.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <thread>
#include <utility>

namespace fs = std::filesystem;

namespace {

const int kLoadErrors[] = {EIO, EINTR, EACCES, EPERM, ENOENT, ENOLCK, EWOULDBLOCK, ENOMEM, EMFILE, EILSEQ};

constexpr const char* kLoadedName = "Cordelbox\\xml\\Loads.xml";

/// A document that is parsed in several pieces, with a document type declaration.
std::string LargeDocument(const std::string& encoding, const std::string& text) {
    std::string xml =
        "<?xml version=\"1.0\" encoding=\"" + encoding + "\"?><!DOCTYPE r [<!ENTITY e 'entity'>]><r><Files>";
    for (int row = 0; row < 8000; ++row) {
        xml += "<Item FileID=\"" + std::to_string(row) + "\" Name=\"" + text + "\"/>";
    }
    return xml + "</Files></r>";
}

class LoadCalls : public ::testing::TestWithParam<const char*> {
protected:
    LoadCalls()
        : m_installed(fs::read_symlink("/proc/self/exe").parent_path() / "Cordelbox" / "xml" / "Loads.xml"),
          m_copy(m_folder.Path() / "Marvane" / "Hollivet" / "Cordelbox" / "xml" / "Loads.xml") {
        ::setenv("XDG_CONFIG_HOME", m_folder.Path().c_str(), 1);
        fs::create_directories(m_installed.parent_path());
        fs::create_directories(m_copy.parent_path());
        std::ofstream(m_installed) << LargeDocument(GetParam(), "installed");
        std::ofstream(m_copy) << LargeDocument(GetParam(), "copied");
        m_owner.semaphore = platform::NewSemaphore();
        m_contents[LoadState::FromUserCopy] = ContentsOf(LoadState::FromUserCopy);
        fs::rename(m_copy, m_folder.Path() / "aside");
        m_contents[LoadState::FromInstallFolder] = ContentsOf(LoadState::FromInstallFolder);
        fs::rename(m_folder.Path() / "aside", m_copy);
    }
    ~LoadCalls() override {
        platform::DeleteSemaphore(m_owner.semaphore);
        fs::remove_all(m_installed.parent_path().parent_path());
    }

    /// Loads while the judge decides, and expects a whole document or none. True when there was one.
    bool LoadsWholeOrNotAtAll(const CSystemCallWatch::Judge& judge) {
        CXmlObject* document = nullptr;
        {
            CSystemCallWatch watch(judge);
            document = OpenDocument(&m_owner, kLoadedName);
        }
        if (document != nullptr) {
            EXPECT_EQ(Contents(*document), m_contents[document->m_file.m_nLoadState]);
            EXPECT_EQ(ReleaseDocument(&m_owner, kLoadedName), 0);
        }
        EXPECT_EQ(m_owner.head, nullptr);
        int value = -1;
        sem_getvalue(m_owner.semaphore, &value);
        EXPECT_EQ(value, 1) << "the pool is locked";
        return document != nullptr;
    }

    std::vector<SystemCall> CallsOfALoad() {
        CSystemCallWatch watch;
        EXPECT_NE(OpenDocument(&m_owner, kLoadedName), nullptr);
        std::vector<SystemCall> calls = watch.Calls();
        ReleaseDocument(&m_owner, kLoadedName);
        return calls;
    }

    void ExpectNextLoadToWork() {
        CXmlObject* const document = OpenDocument(&m_owner, kLoadedName);
        ASSERT_NE(document, nullptr);
        EXPECT_EQ(document->m_file.m_nLoadState, LoadState::FromUserCopy);
        ReleaseDocument(&m_owner, kLoadedName);
    }

    PoolOwner m_owner{};

    bool IsOfCopy(const SystemCall& call) const { return call.path == m_copy; }

    /// The tree as text.
    std::string Contents(CXmlObject& document) const {
        const fs::path file = m_folder.Path() / "contents";
        std::ofstream(file) << "";
        document.m_pDom->Save(file.c_str());
        return ReadBytes(file);
    }

private:
    std::string ContentsOf(LoadState state) {
        CXmlObject* const document = OpenDocument(&m_owner, kLoadedName);
        if (document == nullptr || document->m_file.m_nLoadState != state) {
            throw std::runtime_error("the document does not load");
        }
        std::string contents = Contents(*document);
        ReleaseDocument(&m_owner, kLoadedName);
        return contents;
    }

protected:
    const CScratchFolder m_folder;
    const fs::path m_installed;
    const fs::path m_copy;
    std::map<LoadState, std::string> m_contents; // of the installed document and of the per-user copy
};

} // namespace

TEST_P(LoadCalls, AreTheOnesThatTheseTestsKnow) {
    std::map<std::string, int> counts;
    for (const SystemCall& call : CallsOfALoad()) {
        ++counts[call.name];
    }
    for (const char* const name : {"open", "flock", "fstat", "fgetxattr", "pread", "close"}) {
        EXPECT_GE(counts[name], 1) << name;
    }
    const bool bConverted = GetParam() != std::string("UTF-8");
    EXPECT_EQ(counts["iconv_open"], bConverted ? 1 : 0);
    EXPECT_EQ(counts["iconv"] > 1, bConverted) << "in several pieces";
    EXPECT_EQ(counts["pread"], 1) << "a load reads its bytes once";
    EXPECT_EQ(counts["fstat"], 4) << "of the existence test, for the rights, and on each side of the reading";
    EXPECT_EQ(counts["write"], 0);
    EXPECT_EQ(counts["renameat"], 0);
}

TEST_P(LoadCalls, FailingOneByOneLeaveAWholeDocumentOrNone) {
    const std::size_t count = CallsOfALoad().size();
    int failures = 0;
    int refused = 0;
    for (const int error : kLoadErrors) {
        for (std::size_t failing = 0; failing < count; ++failing, ++failures) {
            std::string failed;
            const bool bLoaded = LoadsWholeOrNotAtAll([&](std::size_t number, const SystemCall& call) {
                if (number == failing) {
                    failed = call.name;
                }
                return Fate{number == failing ? error : 0};
            });
            SCOPED_TRACE(failed + ": " + std::strerror(error));
            refused += bLoaded ? 0 : 1;
            if (failed == "pread") {
                EXPECT_EQ(bLoaded, error == EINTR) << "an interrupted read is made again, every other fails the load";
            }
            ExpectNextLoadToWork();
            if (HasFailure()) {
                return;
            }
        }
    }
    EXPECT_GT(refused, 20);
    std::printf("%d calls failed, one by one, %d of which kept the document closed\n", failures, refused);
}

TEST_P(LoadCalls, FailingFromOneOnLeaveNoDocument) {
    const std::size_t count = CallsOfALoad().size();
    for (const int error : {EIO, ENOMEM, EMFILE}) {
        for (std::size_t failing = 0; failing < count; ++failing) {
            const bool bLoaded = LoadsWholeOrNotAtAll(
                [&](std::size_t number, const SystemCall&) { return Fate{number >= failing ? error : 0}; });
            // Closing the file is the last thing that a load does.
            EXPECT_EQ(bLoaded, failing == count - 1) << failing << ": " << std::strerror(error);
            ExpectNextLoadToWork();
        }
    }
}

TEST_P(LoadCalls, FailingTwiceLeaveAWholeDocumentOrNone) {
    const std::size_t count = CallsOfALoad().size();
    for (std::size_t first = 0; first < count; ++first) {
        for (std::size_t second = first + 1; second < count; ++second) {
            LoadsWholeOrNotAtAll([&](std::size_t number, const SystemCall&) {
                return Fate{number == first || number == second ? EIO : 0};
            });
            ASSERT_FALSE(HasFailure()) << first << " and " << second;
        }
    }
    ExpectNextLoadToWork();
}

TEST_P(LoadCalls, ThatFailAreNamedInTheReasonWithTheirError) {
    const auto reasonWhere = [this](const CSystemCallWatch::Judge& judge) {
        CXmlObject document;
        CReason reason;
        CSystemCallWatch watch(judge);
        EXPECT_EQ(document.OpenFile(m_copy.c_str(), &reason), 1);
        return reason;
    };
    for (const char* const name : {"open", "fstat", "pread"}) {
        const CReason reason = reasonWhere(
            [&](std::size_t, const SystemCall& call) { return Fate{call.name == name && IsOfCopy(call) ? EIO : 0}; });
        EXPECT_EQ(reason.m_kind, ReasonKind::CallFailed);
        EXPECT_STREQ(reason.m_pCall, name);
        EXPECT_EQ(reason.m_nError, static_cast<std::uint32_t>(EIO));
    }
    for (const int failing : {1, 2, 3}) { // for the rights, and on each side of the reading
        int looks = 0;
        const CReason reason = reasonWhere([&](std::size_t, const SystemCall& call) {
            looks += call.name == "fstat" && IsOfCopy(call) ? 1 : 0;
            return Fate{call.name == "fstat" && IsOfCopy(call) && looks == failing ? EIO : 0};
        });
        EXPECT_EQ(reason.m_kind, ReasonKind::CallFailed) << failing;
        EXPECT_STREQ(reason.m_pCall, "fstat") << failing;
    }
    for (const std::size_t nAtMost : {std::size_t(-1), std::size_t{0}}) {
        bool bRead = false;
        const CReason afterwards = reasonWhere([&](std::size_t, const SystemCall& call) {
            bRead = bRead || call.name == "pread";
            return Fate{bRead && call.name == "fstat" ? ENOMEM : 0, false, nAtMost};
        });
        EXPECT_EQ(afterwards.m_kind, ReasonKind::OutOfMemory);
        EXPECT_STREQ(afterwards.m_pCall, "fstat");
    }
    const CReason changing = reasonWhere([](std::size_t, const SystemCall& call) {
        return Fate{0, false, call.name == "pread" ? 0 : std::size_t(-1)};
    });
    EXPECT_EQ(changing.m_kind, ReasonKind::InUse);
}

TEST_P(LoadCalls, OfTheExistenceTestThatFailAreNamedInTheReason) {
    for (const char* const name : {"open", "fstat", "flock"}) {
        bool bFailed = false;
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            const bool bFails = !bFailed && call.name == name && IsOfCopy(call);
            bFailed = bFailed || bFails;
            return Fate{bFails ? EIO : 0};
        });
        CXmlObject document;
        EXPECT_EQ(document.Open(kLoadedName), 0);
        EXPECT_EQ(document.m_file.m_nLoadState, LoadState::FromInstallFolder) << name;
        EXPECT_STREQ(document.m_file.m_whyNotUserCopy.m_pCall, name);
        EXPECT_EQ(document.m_file.m_whyNotUserCopy.m_nError, static_cast<std::uint32_t>(EIO));
    }
}

TEST_P(LoadCalls, ThatReadLessThanWasAskedForReadOn) {
    for (const std::size_t nAtMost : {std::size_t{997}, std::size_t{100000}}) {
        EXPECT_TRUE(LoadsWholeOrNotAtAll([&](std::size_t, const SystemCall&) { return Fate{0, false, nAtMost}; }));
    }
}

TEST_P(LoadCalls, ThatFindTheFileRewrittenMeanwhileAtTheSameLengthReadItAgain) {
    const std::string rewritten = LargeDocument(GetParam(), "COPIED");
    bool bRead = false;
    bool bRewritten = false;
    CXmlObject document;
    {
        CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
            bRead = bRead || call.name == "pread";
            if (bRead && call.name == "fstat" && !std::exchange(bRewritten, true)) {
                WriteBytes(m_copy, rewritten);
                fs::last_write_time(m_copy, fs::file_time_type::clock::now() + std::chrono::hours(1));
            }
            return Fate{};
        });
        EXPECT_EQ(document.Open(kLoadedName), 0);
    }
    EXPECT_NE(Contents(document).find("COPIED"), std::string::npos);
}

TEST_P(LoadCalls, ThatFindTheFileCutOffMeanwhileReadAgainAndThenLeaveNoDocument) {
    for (const int readings : {1, 2, 3}) {
        int cutOff = 0;
        EXPECT_EQ(LoadsWholeOrNotAtAll([&](std::size_t, const SystemCall& call) {
                      const bool bCut = call.name == "pread" && cutOff < readings;
                      cutOff += bCut ? 1 : 0;
                      errno = EINTR; // as a call before may leave it
                      return Fate{0, false, bCut ? 0 : std::size_t(-1)};
                  }),
                  readings < 3)
            << readings;
        ExpectNextLoadToWork();
    }
}

TEST_P(LoadCalls, DuringWhichTheFileIsRewrittenGiveOneWholeReadingOrNone) {
    const std::string before = LargeDocument(GetParam(), "copied");
    const std::string after = LargeDocument(GetParam(), "COPIED");
    ASSERT_EQ(before.size(), after.size());
    for (const int rewritten : {1, 3}) {
        std::ofstream(m_copy) << before;
        int readings = 0;
        // The first half has been read when the whole file is written anew, as long as it goes on.
        const auto rewrite = [&](std::size_t, const SystemCall& call) {
            Fate fate;
            if (call.name == "pread") {
                fate.nAtMost = readings % 2 == 0 ? before.size() / 2 : before.size();
                if (readings % 2 == 1 && readings / 2 < rewritten) {
                    std::ofstream(m_copy, std::ios::in) << (readings / 2 % 2 == 0 ? after : before);
                }
                ++readings;
            }
            return fate;
        };
        CXmlObject* document = nullptr;
        {
            CSystemCallWatch watch(rewrite);
            document = OpenDocument(&m_owner, kLoadedName);
        }
        EXPECT_EQ(document != nullptr, rewritten == 1);
        if (document != nullptr) {
            std::string expected = m_contents[LoadState::FromUserCopy];
            for (std::size_t at = 0; (at = expected.find("copied", at)) != std::string::npos;) {
                expected.replace(at, 6, "COPIED");
            }
            EXPECT_EQ(Contents(*document), expected);
            EXPECT_EQ(ReleaseDocument(&m_owner, kLoadedName), 0);
        }
    }
    std::ofstream(m_copy) << before;
    ExpectNextLoadToWork();
}

TEST_P(LoadCalls, DuringWhichTheFileGrowsOrIsDatedAnewReadAgain) {
    const auto grow = [this] { std::ofstream(m_copy, std::ios::app) << "<!--more-->"; };
    const auto date = [this](timespec time) {
        const timespec times[] = {{0, UTIME_OMIT}, time};
        ASSERT_EQ(::utimensat(AT_FDCWD, m_copy.c_str(), times, 0), 0);
    };
    const timespec once = {1000000000, 0};
    const timespec momentLater = {1000000000, 1};
    const timespec secondLater = {1000000001, 0};
    // The last change leaves no trace but the moment of the change itself.
    const std::function<void()> changes[] = {grow, [&] { date(secondLater); }, [&] { date(momentLater); },
                                             [&] { date(once); }};
    for (const std::function<void()>& change : changes) {
        date(once);
        int readings = 0;
        CXmlObject* document = nullptr;
        {
            const CSystemCallWatch watch([&](std::size_t, const SystemCall& call) {
                if (call.name == "pread" && ++readings == 1) {
                    std::this_thread::sleep_for(std::chrono::milliseconds(20)); // longer than the clock's step
                    change();
                }
                return Fate{};
            });
            document = OpenDocument(&m_owner, kLoadedName);
        }
        EXPECT_EQ(readings, 2) << &change - changes;
        EXPECT_NE(document, nullptr);
        EXPECT_EQ(ReleaseDocument(&m_owner, kLoadedName), 0);
    }
}

INSTANTIATE_TEST_SUITE_P(Each, LoadCalls, ::testing::Values("UTF-8", "ISO-8859-1"), [](const auto& instance) {
    return std::string(instance.index == 0 ? "AsItIs" : "Converted");
});
