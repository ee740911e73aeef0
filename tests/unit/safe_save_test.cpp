// Replacing a file in one step.

#include "file_bytes.h"
#include "safe_save.h"
#include "size_signal.h"
#include "temporary_file.h"
#include "text_pieces.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <memory>
#include <new>
#include <set>
#include <string>

namespace fs = std::filesystem;

namespace {

ino_t FileNumber(const fs::path& path) {
    struct stat status {};
    return ::stat(path.c_str(), &status) == 0 ? status.st_ino : 0;
}

} // namespace

class SafeSave : public ::testing::Test {
protected:
    SafeSave() {
        fs::remove_all(m_folder);
        fs::create_directories(m_folder);
        std::ofstream(m_file) << "old";
    }
    ~SafeSave() override { fs::remove_all(m_folder); }

    bool Replace(const std::string& contents) { return Replace(m_file, contents); }
    static bool Replace(const fs::path& file, const std::string& contents) {
        return platform::ReplaceContents(file.c_str(), InPieces(contents));
    }
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(m_folder)) {
            names.insert(entry.path().filename());
        }
        return names;
    }

    const fs::path m_folder = fs::read_symlink("/proc/self/exe").parent_path() / "saves";
    const fs::path m_file = m_folder / "a.xml";
};

TEST_F(SafeSave, ReplacesTheContents) {
    EXPECT_TRUE(Replace("new contents"));
    EXPECT_EQ(ReadBytes(m_file), "new contents");
    EXPECT_TRUE(Replace(""));
    EXPECT_EQ(ReadBytes(m_file), "");
    const std::string large(5 << 20, 'x');
    EXPECT_TRUE(Replace(large));
    EXPECT_EQ(ReadBytes(m_file), large);
}

TEST_F(SafeSave, ReplacesAFileOfTheCurrentFolder) {
    const fs::path before = fs::current_path();
    fs::current_path(m_folder);
    fs::create_symlink("a.xml", "link.xml");
    EXPECT_TRUE(Replace("a.xml", "new"));
    EXPECT_EQ(ReadBytes(m_file), "new");
    EXPECT_TRUE(Replace("link.xml", "newer"));
    fs::current_path(before);
    EXPECT_EQ(ReadBytes(m_file), "newer");
    EXPECT_TRUE(fs::is_symlink(m_folder / "link.xml"));
}

TEST_F(SafeSave, TakesPiecesOfAnyLengthAndNone) {
    const std::string long1(100000, '1');
    const std::string long2(3000000, '2');
    EXPECT_TRUE(platform::ReplaceContents(m_file.c_str(), [&](const platform::PieceSink& sink) {
        sink("");
        sink(long1);
        sink("x");
        sink("");
        sink(long2);
        return true;
    }));
    EXPECT_EQ(ReadBytes(m_file), long1 + "x" + long2);
    EXPECT_TRUE(platform::ReplaceContents(m_file.c_str(), [](const platform::PieceSink&) { return true; }));
    EXPECT_EQ(ReadBytes(m_file), "");
}

TEST_F(SafeSave, KeepsTheOldContentsWhenTheNewOnesShallNotBeWritten) {
    const std::string old = ReadBytes(m_file);
    const auto refuse = [](const platform::PieceSink& sink) {
        sink("the beginning");
        return false;
    };
    EXPECT_FALSE(platform::ReplaceContents(m_file.c_str(), refuse));
    EXPECT_EQ(ReadBytes(m_file), old);
    EXPECT_EQ(Names(), std::set<std::string>{"a.xml"});
}

TEST_F(SafeSave, LooksOnceMoreImmediatelyBeforeItReplacesTheFile) {
    const fs::path other = m_folder / "other";
    std::ofstream(other) << "another program's";
    std::string found;
    CReason reason;
    EXPECT_FALSE(platform::ReplaceContents(m_file.c_str(), InPieces("new"), &reason, [&] {
        for (const std::string& name : Names()) {
            found = name != "a.xml" && name != "other" ? ReadBytes(m_folder / name) : found;
        }
        fs::rename(other, m_file);
        return false;
    }));
    EXPECT_EQ(found, "new"); // it was whole already
    EXPECT_EQ(reason.m_kind, ReasonKind::Overtaken);
    EXPECT_EQ(ReadBytes(m_file), "another program's");
    EXPECT_EQ(Names(), std::set<std::string>{"a.xml"});
    EXPECT_TRUE(platform::ReplaceContents(m_file.c_str(), InPieces("new"), &reason, [] { return true; }));
    EXPECT_EQ(ReadBytes(m_file), "new");
}

TEST_F(SafeSave, MakesANewFileOfThatName) {
    const ino_t before = FileNumber(m_file);
    Replace("new");
    EXPECT_NE(FileNumber(m_file), before);
    EXPECT_EQ(Names(), std::set<std::string>{"a.xml"});
}

TEST_F(SafeSave, DoesNotCreateAFile) {
    fs::remove(m_file);
    EXPECT_FALSE(Replace("new"));
    EXPECT_EQ(Names(), std::set<std::string>{});
}

TEST_F(SafeSave, ReplacesNothingButAFile) {
    const fs::path pipe = m_folder / "pipe";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    CReason reason;
    EXPECT_FALSE(platform::ReplaceContents(pipe.c_str(), InPieces("new"), &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::NotRegular);
    EXPECT_TRUE(fs::is_fifo(pipe));
    EXPECT_FALSE(Replace(m_folder, "new"));
    EXPECT_EQ(Names(), (std::set<std::string>{"a.xml", "pipe"}));
}

TEST_F(SafeSave, DoesNotFollowALinkThatLeadsNowhere) {
    fs::remove(m_file);
    fs::create_symlink("b.xml", m_file);
    EXPECT_FALSE(Replace("new"));
    EXPECT_EQ(Names(), std::set<std::string>{"a.xml"});
}

TEST_F(SafeSave, KeepsEveryPermission) {
    for (mode_t mode = 0; mode <= 07777; mode += 0111) {
        ASSERT_EQ(::chmod(m_file.c_str(), mode), 0);
        struct stat before {};
        ::stat(m_file.c_str(), &before);
        if (!Replace("new")) {
            continue; // as an ordinary user not every file can be replaced
        }
        struct stat after {};
        ::stat(m_file.c_str(), &after);
        EXPECT_EQ(after.st_mode, before.st_mode);
    }
}

TEST_F(SafeSave, KeepsOwnerAndGroupWhereItMay) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser may";
    }
    ASSERT_EQ(::chown(m_file.c_str(), 1234, 4321), 0);
    ASSERT_EQ(::chmod(m_file.c_str(), 06755), 0);
    EXPECT_TRUE(Replace("new"));
    struct stat after {};
    ::stat(m_file.c_str(), &after);
    EXPECT_EQ(after.st_uid, 1234u);
    EXPECT_EQ(after.st_gid, 4321u);
    EXPECT_EQ(after.st_mode & 07777u, 06755u);
}

TEST_F(SafeSave, RemovesTemporaryFilesThatWereLeftBehind) {
    std::ofstream(m_folder / ".cordelbox-0123456789abcdef.tmp") << "longer than what is saved now";
    std::ofstream(m_folder / ".cordelbox-fedcba9876543210.tmp") << "";
    EXPECT_TRUE(Replace("new"));
    EXPECT_EQ(ReadBytes(m_file), "new");
    EXPECT_EQ(Names(), std::set<std::string>{"a.xml"});
}

TEST_F(SafeSave, RemovesLeftoversOfTheSaverAndOfTheOwnerAndOfNobodyElse) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    constexpr uid_t kOwner = 1234;
    const auto leave = [this](const char* name, uid_t owner) {
        std::ofstream(m_folder / name) << "half a document";
        ASSERT_EQ(::chown((m_folder / name).c_str(), owner, static_cast<gid_t>(-1)), 0);
    };
    leave("a.xml", kOwner);
    leave(".cordelbox-0000000000000001.tmp", kOwner);
    leave(".cordelbox-0000000000000002.tmp", ::geteuid());
    leave(".cordelbox-0000000000000003.tmp", kOwner + 1);
    EXPECT_TRUE(Replace("new"));
    EXPECT_EQ(Names(), (std::set<std::string>{"a.xml", ".cordelbox-0000000000000003.tmp"}));
}

TEST_F(SafeSave, LeavesOtherFilesOfTheFolderAlone) {
    const std::set<std::string> others{".cordelbox-01.tmp~", "cordelbox-01.tmp", ".cordelbox-", ".tmp"};
    for (const std::string& name : others) {
        std::ofstream(m_folder / name) << "somebody's";
    }
    EXPECT_TRUE(Replace("new"));
    std::set<std::string> all = others;
    all.insert("a.xml");
    EXPECT_EQ(Names(), all);
}

TEST_F(SafeSave, LooksForLeftoversAmongSoManyNamesAtMost) {
    for (int number = 0; number < 3 * platform::kMostNamesLookedAt; ++number) {
        std::ofstream(m_folder / (".cordelbox-" + std::to_string(number) + ".tmp"));
    }
    const auto count = [this] { return static_cast<int>(Names().size()); };
    const int before = count();
    EXPECT_TRUE(Replace("new"));
    EXPECT_LT(count(), before);
    EXPECT_GT(count(), platform::kMostNamesLookedAt) << "the rest waits for the next saves";
    EXPECT_TRUE(Replace("new"));
    EXPECT_TRUE(Replace("new"));
    EXPECT_TRUE(Replace("new"));
    EXPECT_EQ(count(), 1);
}

TEST_F(SafeSave, TakesTheLongestNameWithATemporaryFile) {
    const fs::path file = m_folder / std::string(255, 'n');
    std::ofstream(file) << "old";
    const ino_t before = FileNumber(file);
    EXPECT_TRUE(Replace(file, "new"));
    EXPECT_EQ(ReadBytes(file), "new");
    EXPECT_NE(FileNumber(file), before);
}

TEST_F(SafeSave, ReplacesTheTargetOfALink) {
    fs::create_symlink("a.xml", m_folder / "link.xml");
    EXPECT_TRUE(Replace(m_folder / "link.xml", "new"));
    EXPECT_TRUE(fs::is_symlink(m_folder / "link.xml"));
    EXPECT_FALSE(fs::is_symlink(m_file));
    EXPECT_EQ(ReadBytes(m_file), "new");
}

TEST_F(SafeSave, LeavesAnotherNameOfTheFileWithTheOldContents) {
    fs::create_hard_link(m_file, m_folder / "b.xml");
    EXPECT_TRUE(Replace("new"));
    EXPECT_EQ(ReadBytes(m_folder / "b.xml"), "old");
}

TEST(SizeSignal, IsTheOnlyOneThatIsHeldBack) {
    alignas(platform::CNoSizeSignal) std::array<std::byte, sizeof(platform::CNoSizeSignal)> memory;
    memory.fill(std::byte{0xFF}); // as the stack may be
    auto* const held = new (memory.data()) platform::CNoSizeSignal();
    sigset_t blocked;
    pthread_sigmask(SIG_BLOCK, nullptr, &blocked);
    std::destroy_at(held);
    EXPECT_EQ(sigismember(&blocked, SIGXFSZ), 1);
    for (const int signal : {SIGHUP, SIGINT, SIGTERM, SIGCHLD, SIGUSR1}) {
        EXPECT_EQ(sigismember(&blocked, signal), 0) << signal;
    }
}
