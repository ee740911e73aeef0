// What others may prepare for a save in a folder that they can write to, and what a host may have done to itself.

#include "access_list.h"
#include "saved_info.h"
#include "unprivileged_posix.h"

#include <fcntl.h>
#include <grp.h>
#include <linux/fs.h>
#include <sched.h>
#include <signal.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <fstream>
#include <set>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

namespace fs = std::filesystem;
using namespace std::chrono_literals;

namespace {

constexpr uid_t kOtherUser = 1234;
constexpr gid_t kOtherGroup = 4321;

/// Who the process is while it has no privileges.
uid_t UnprivilegedUser() {
    const CUnprivileged nobody;
    return ::geteuid();
}

/// Runs the work in a process of its own and returns how that ended, as waitpid says.
template <class Work>
int EndOfProcess(Work work) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::_exit(work() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    return status;
}

mode_t ModeOf(const fs::path& file) {
    struct stat status {};
    EXPECT_EQ(::stat(file.c_str(), &status), 0);
    return status.st_mode & 07777;
}

uid_t OwnerOf(const fs::path& file) {
    struct stat status {};
    EXPECT_EQ(::stat(file.c_str(), &status), 0);
    return status.st_uid;
}

/// A process that holds a lock on a file until it is told to end: stopped, as far as anybody can see.
class CLockHolder {
public:
    CLockHolder(const fs::path& file, int flags, short type) {
        int ready[2];
        EXPECT_EQ(::pipe(ready), 0);
        m_nProcess = ::fork();
        if (m_nProcess == 0) {
            struct flock lock {};
            lock.l_type = type;
            const int held = ::open(file.c_str(), flags | O_CLOEXEC);
            const char answer = ::fcntl(held, F_OFD_SETLK, &lock) == 0 ? 'y' : 'n';
            if (::write(ready[1], &answer, 1) == 1) {
                ::pause();
            }
            ::_exit(0);
        }
        char answer = 0;
        EXPECT_EQ(::read(ready[0], &answer, 1), 1);
        EXPECT_EQ(answer, 'y');
        ::close(ready[0]);
        ::close(ready[1]);
    }
    ~CLockHolder() {
        ::kill(m_nProcess, SIGKILL);
        ::waitpid(m_nProcess, nullptr, 0);
    }
    CLockHolder(const CLockHolder&) = delete;
    CLockHolder& operator=(const CLockHolder&) = delete;

private:
    pid_t m_nProcess = -1;
};

/// While it lives, names can be added to a folder, and neither changed nor removed.
class CAppendOnlyFolder {
public:
    explicit CAppendOnlyFolder(const fs::path& folder) : m_folder(folder), m_bSet(Set(true)) {}
    ~CAppendOnlyFolder() { Set(false); }
    CAppendOnlyFolder(const CAppendOnlyFolder&) = delete;
    CAppendOnlyFolder& operator=(const CAppendOnlyFolder&) = delete;

    /// False: this file system has no such folders, or this process may not make one.
    bool IsSet() const { return m_bSet; }

private:
    bool Set(bool bOn) const {
        const int folder = ::open(m_folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        int flags = 0;
        bool bDone = ::ioctl(folder, FS_IOC_GETFLAGS, &flags) == 0;
        flags = bOn ? flags | FS_APPEND_FL : flags & ~FS_APPEND_FL;
        bDone = bDone && ::ioctl(folder, FS_IOC_SETFLAGS, &flags) == 0;
        ::close(folder);
        return bDone;
    }

    const fs::path m_folder;
    const bool m_bSet;
};

/// While it lives, the process may not make files longer than this.
class CFileSizeLimit {
public:
    explicit CFileSizeLimit(rlim_t bytes) {
        EXPECT_EQ(::getrlimit(RLIMIT_FSIZE, &m_before), 0);
        const rlimit limit{bytes, m_before.rlim_max};
        EXPECT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    }
    ~CFileSizeLimit() { ::setrlimit(RLIMIT_FSIZE, &m_before); }
    CFileSizeLimit(const CFileSizeLimit&) = delete;
    CFileSizeLimit& operator=(const CFileSizeLimit&) = delete;

private:
    rlimit m_before{};
};

} // namespace

class SaveAttacks : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        OpenMain(kInfo);
    }

    fs::path Folder() const { return UserMainPath().parent_path(); }
    fs::path Beside(const std::string& name) const { return Folder() / name; }
    std::set<std::string> Names() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(Folder())) {
            names.insert(entry.path().filename().string());
        }
        return names;
    }

    static void Change() { WriteAttr("Info", "Name", "after"); }

    /// Another file in the copy's place, with these rights.
    void PutAnother(uid_t owner, gid_t group, mode_t mode) const {
        const fs::path other = Beside("other");
        WriteFile(other, Document(kInfo));
        ASSERT_EQ(::chown(other.c_str(), owner, group), 0);
        ASSERT_EQ(::chmod(other.c_str(), mode), 0);
        fs::rename(other, UserMainPath());
    }

    /// Names that are, or might be taken for, those of temporary files.
    static std::set<std::string> PlantedNames() {
        return {".Cordelbox.xml.saving", ".cordelbox-0123456789abcdef.tmp", "Cordelbox.xml.tmp"};
    }

    /// Gives the copy and its folder to a user without privileges.
    void GiveAway(uid_t owner, gid_t group, mode_t mode) const {
        ASSERT_EQ(::chown(Folder().c_str(), UnprivilegedUser(), static_cast<gid_t>(-1)), 0);
        ASSERT_EQ(::chown(UserMainPath().c_str(), owner, group), 0);
        ASSERT_EQ(::chmod(UserMainPath().c_str(), mode), 0);
    }
};

// Closed standard streams.

TEST_F(SaveAttacks, WhatAHostWithoutStandardStreamsPrintsLandsInNoDocument) {
    const int status = EndOfProcess([&] {
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
            ::close(stream);
        }
        std::atomic<bool> bEnd = false;
        std::atomic<int> landed = 0;
        std::thread printer([&] {
            while (!bEnd) {
                for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
                    landed += ::write(stream, "noise", 5) > 0 ? 1 : 0;
                }
            }
        });
        const auto end = std::chrono::steady_clock::now() + 300ms;
        while (std::chrono::steady_clock::now() < end) {
            Open();
            Change();
            CloseAll();
        }
        bEnd = true;
        printer.join();
        return landed == 0;
    });
    EXPECT_EQ(status, 0);
    EXPECT_EQ(SavedItems("Info"), kAfter);
}

// The temporary file.

TEST_F(SaveAttacks, AFileThatAnotherUserPreparedNeverHoldsTheDocument) {
    std::set<std::string> expected = PlantedNames();
    std::vector<int> spies;
    for (const std::string& name : expected) {
        spies.push_back(::open(Beside(name).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666));
        ASSERT_EQ(::fchmod(spies.back(), 0666), 0);
        if (::geteuid() == 0) {
            ASSERT_EQ(::fchown(spies.back(), kOtherUser, kOtherGroup), 0);
        }
    }
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    for (const int spy : spies) {
        struct stat status {};
        EXPECT_EQ(::fstat(spy, &status), 0);
        EXPECT_EQ(status.st_size, 0);
        ::close(spy);
    }
    if (::geteuid() == 0) {
        expected.insert("Cordelbox.xml");
        EXPECT_EQ(Names(), expected) << "another user's files are none of ours";
    }
}

TEST_F(SaveAttacks, AHardLinkToAnotherFileDoesNotTouchThatFile) {
    WriteFile(PerUserRoot() / "letter.txt", "a letter");
    for (const std::string& name : PlantedNames()) {
        fs::create_hard_link(PerUserRoot() / "letter.txt", Beside(name));
    }
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(ReadFile(PerUserRoot() / "letter.txt"), "a letter");
    EXPECT_EQ(Names().size(), PlantedNames().size() + 1) << "a file with another name is no leftover";
}

TEST_F(SaveAttacks, ALinkDoesNotTouchWhatItLeadsTo) {
    WriteFile(PerUserRoot() / "letter.txt", "a letter");
    for (const std::string& name : PlantedNames()) {
        fs::create_symlink(PerUserRoot() / "letter.txt", Beside(name));
    }
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(ReadFile(PerUserRoot() / "letter.txt"), "a letter");
}

// Other files in the copy's place.

TEST_F(SaveAttacks, ALinkThatAnotherUserPutInTheCopysPlaceIsNotFollowedToWhatIsNotTheirs) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    const fs::path letter = PerUserRoot() / "letter.txt";
    for (const uid_t owner : {uid_t{0}, kOtherUser + 1}) {
        WriteFile(letter, Document(kInfo));
        ASSERT_EQ(::chown(letter.c_str(), owner, kOtherGroup), 0);
        fs::remove(UserMainPath());
        fs::create_symlink("../../../../letter.txt", UserMainPath());
        ASSERT_EQ(::lchown(UserMainPath().c_str(), kOtherUser, kOtherGroup), 0);
        Change();
        EXPECT_EQ(ReadFile(letter), Document(kInfo)) << owner;
        EXPECT_TRUE(fs::is_symlink(UserMainPath()));
        CloseAll();
        InstallMain(Document("<Info><Item Name=\"installed\"/></Info>"));
        Open();
        EXPECT_EQ(GetAttrValue("Info", "Name"), "installed") << "such a copy is none";
    }
}

TEST_F(SaveAttacks, ALinkThroughALinkOfAnotherUserIsNotFollowedToWhatIsNotTheirs) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    WriteFile(PerUserRoot() / "letter.txt", "a letter");
    ASSERT_EQ(::chown((PerUserRoot() / "letter.txt").c_str(), kOtherUser + 1, kOtherGroup), 0);
    fs::remove(UserMainPath());
    for (const auto& [name, target, owner] :
         {std::tuple<const char*, fs::path, uid_t>{"second", "../../../../letter.txt", kOtherUser + 1},
          {"first", "second", kOtherUser},
          {"Cordelbox.xml", Beside("first"), uid_t{0}}}) {
        fs::create_symlink(target, Beside(name));
        ASSERT_EQ(::lchown(Beside(name).c_str(), owner, kOtherGroup), 0);
    }
    Change();
    EXPECT_EQ(ReadFile(PerUserRoot() / "letter.txt"), "a letter");
}

TEST_F(SaveAttacks, ALinkOfTheAdministratorIsFollowed) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    GiveAway(UnprivilegedUser(), ::getegid(), 0600);
    fs::rename(UserMainPath(), Beside("real.xml"));
    fs::create_symlink("real.xml", UserMainPath());
    {
        const CUnprivileged nobody;
        Change();
    }
    EXPECT_TRUE(fs::is_symlink(UserMainPath()));
    EXPECT_EQ(SavedItems("Info"), kAfter);
}

TEST_F(SaveAttacks, ALinkOfAnotherUserToAFileOfThatUserIsFollowed) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    const fs::path theirs = PerUserRoot() / "theirs.xml";
    fs::rename(UserMainPath(), theirs);
    ASSERT_EQ(::chown(theirs.c_str(), kOtherUser, kOtherGroup), 0);
    fs::create_symlink(theirs, UserMainPath());
    ASSERT_EQ(::lchown(UserMainPath().c_str(), kOtherUser, kOtherGroup), 0);
    Change();
    EXPECT_TRUE(fs::is_symlink(UserMainPath()));
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(OwnerOf(theirs), kOtherUser);
}

TEST_F(SaveAttacks, AFileThatSomebodyPutInTheCopysPlaceOpensTheDocumentToNobody) {
    ASSERT_EQ(::chmod(UserMainPath().c_str(), 0600), 0);
    CloseAll();
    Open();
    PutAnother(::geteuid(), ::getegid(), 0666);
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(ModeOf(UserMainPath()), 0600u);
    ASSERT_EQ(::chmod(UserMainPath().c_str(), 0644), 0);
    WriteAttr("Info", "Name", "again");
    EXPECT_EQ(ModeOf(UserMainPath()), 0644u) << "the document's own rights may be made wider";
    PutAnother(::geteuid(), ::getegid(), 0640);
    Change();
    EXPECT_EQ(ModeOf(UserMainPath()), 0640u) << "what takes its place may narrow them";
}

TEST_F(SaveAttacks, AFileThatAnotherUserPutInTheCopysPlaceDoesNotMakeTheDocumentTheirs) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    ASSERT_EQ(::chmod(UserMainPath().c_str(), 0600), 0);
    CloseAll();
    Open();
    PutAnother(kOtherUser, kOtherGroup, 0666);
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(OwnerOf(UserMainPath()), ::geteuid());
    EXPECT_EQ(ModeOf(UserMainPath()), 0600u);
}

TEST_F(SaveAttacks, AFileThatAnotherOfTheGroupSavedLeavesTheDocumentToTheGroup) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    GiveAway(kOtherUser, kOtherGroup, 0660);
    CloseAll();
    Open();
    PutAnother(kOtherUser + 1, kOtherGroup, 0660);
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(ModeOf(UserMainPath()), 0660u);
    struct stat status {};
    ASSERT_EQ(::stat(UserMainPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, kOtherGroup);
}

TEST_F(SaveAttacks, AListThatCameWithAnotherFileOpensTheDocumentToNobody) {
    using enum AccessEntry::Tag;
    const std::string list =
        AccessListBytes({{Owner, 6}, {User, 6, kOtherUser}, {OwningGroup, 0}, {Mask, 6}, {Others, 0}});
    ASSERT_EQ(::chmod(UserMainPath().c_str(), 0660), 0);
    CloseAll();
    Open();
    PutAnother(::geteuid(), ::getegid(), 0660);
    if (!SetFileAttribute(UserMainPath(), kAccessList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(FileAttribute(UserMainPath(), kAccessList), "(none)");
    EXPECT_EQ(ModeOf(UserMainPath()), 0600u);
}

TEST_F(SaveAttacks, AFileWithoutTheListThatTheDocumentHadOpensItToNobody) {
    using enum AccessEntry::Tag;
    const std::string list =
        AccessListBytes({{Owner, 6}, {User, 0, kOtherUser}, {OwningGroup, 4}, {Mask, 4}, {Others, 4}});
    if (!SetFileAttribute(UserMainPath(), kAccessList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    CloseAll();
    Open();
    PutAnother(::geteuid(), ::getegid(), 0644);
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(ModeOf(UserMainPath()), 0600u);
}

TEST_F(SaveAttacks, AListOfBothFilesIsKept) {
    using enum AccessEntry::Tag;
    const std::string list =
        AccessListBytes({{Owner, 6}, {User, 6, kOtherUser}, {OwningGroup, 0}, {Mask, 6}, {Others, 0}});
    if (!SetFileAttribute(UserMainPath(), kAccessList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    CloseAll();
    Open();
    PutAnother(::geteuid(), ::getegid(), 0660);
    ASSERT_TRUE(SetFileAttribute(UserMainPath(), kAccessList, list));
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(FileAttribute(UserMainPath(), kAccessList), list);
}

TEST_F(SaveAttacks, InPlaceNoFileIsWrittenThatSomebodyPutThereAndOthersMayOpen) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    for (const bool bWider : {true, false}) {
        CopyMainForUser(Document(kInfo));
        GiveAway(UnprivilegedUser(), kOtherGroup, 0600);
        CloseAll();
        {
            const CUnprivileged nobody;
            Open();
        }
        PutAnother(UnprivilegedUser(), kOtherGroup, bWider ? 0644 : 0600);
        ASSERT_EQ(::chmod(Folder().c_str(), 0555), 0);
        {
            const CUnprivileged nobody;
            Change();
        }
        ASSERT_EQ(::chmod(Folder().c_str(), 0755), 0);
        EXPECT_EQ(SavedItems("Info"), bWider ? kBefore : kAfter);
    }
}

TEST_F(SaveAttacks, InPlaceNoFileIsWrittenThatHasAnotherName) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    const fs::path letter = PerUserRoot() / "letter.txt";
    WriteFile(letter, "a letter");
    ASSERT_EQ(::chmod(letter.c_str(), 0666), 0);
    fs::remove(UserMainPath());
    fs::create_hard_link(letter, UserMainPath());
    fs::permissions(Folder(), static_cast<fs::perms>(0555));
    {
        const CUnprivileged nobody;
        Change();
    }
    fs::permissions(Folder(), static_cast<fs::perms>(0755));
    EXPECT_EQ(ReadFile(letter), "a letter");
}

TEST_F(SaveAttacks, ASocketAFifoOrAFolderHoldsNoSaveUp) {
    for (const std::string& name : PlantedNames()) {
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        const int nFolder = ::open(Folder().c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC); // however long its path is
        const std::string path = "/proc/self/fd/" + std::to_string(nFolder) + "/" + name;
        const int nSocket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
        path.copy(address.sun_path, sizeof address.sun_path - 1);
        ASSERT_EQ(::bind(nSocket, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0) << path;
        ::close(nFolder);
        Change();
        EXPECT_EQ(SavedItems("Info"), kAfter) << "a socket " << name;
        ::close(nSocket);
        fs::remove(Beside(name));
        ASSERT_EQ(::mkfifo(Beside(name).c_str(), 0666), 0);
        WriteAttr("Info", "Name", "again");
        EXPECT_EQ(SavedItems("Info"), (Records{Record{{"Name", "again"}}})) << "a FIFO " << name;
        fs::remove(Beside(name));
        fs::create_directory(Beside(name));
        const ino_t before = [&] {
            struct stat status {};
            ::stat(UserMainPath().c_str(), &status);
            return status.st_ino;
        }();
        Change();
        struct stat status {};
        ::stat(UserMainPath().c_str(), &status);
        EXPECT_EQ(SavedItems("Info"), kAfter) << "a folder " << name;
        EXPECT_NE(status.st_ino, before) << "replaced, not written in place";
    }
}

TEST_F(SaveAttacks, ALeftoverThatSomebodyIsAtWorkOnStays) {
    WriteFile(Beside(".cordelbox-0123456789abcdef.tmp"), "half a document");
    const CLockHolder writer(Beside(".cordelbox-0123456789abcdef.tmp"), O_WRONLY, F_WRLCK);
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(Names().count(".cordelbox-0123456789abcdef.tmp"), 1u);
}

// Locks.

TEST_F(SaveAttacks, ALockOnTheDocumentOrOnATemporaryFileHoldsNoSaveUp) {
    for (const std::string& name : PlantedNames()) {
        WriteFile(Beside(name), "");
    }
    const CLockHolder first(Beside(".Cordelbox.xml.saving"), O_WRONLY, F_WRLCK);
    const CLockHolder second(UserMainPath(), O_WRONLY, F_WRLCK);
    const auto start = std::chrono::steady_clock::now();
    Change();
    EXPECT_LT(std::chrono::steady_clock::now() - start, 1s);
    EXPECT_EQ(SavedItems("Info"), kAfter);
}

TEST_F(SaveAttacks, InPlaceALockEndsTheSaveAfterAWhileAndTheDocumentIsTheOldOne) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    fs::permissions(UserMainPath(), static_cast<fs::perms>(0666));
    fs::permissions(Folder(), static_cast<fs::perms>(0555));
    for (const bool bReaderOnly : {true, false}) {
        const CLockHolder other(UserMainPath(), bReaderOnly ? O_RDONLY : O_WRONLY, bReaderOnly ? F_RDLCK : F_WRLCK);
        const auto start = std::chrono::steady_clock::now();
        {
            const CUnprivileged nobody;
            Change();
        }
        EXPECT_LT(std::chrono::steady_clock::now() - start, 5s);
        EXPECT_EQ(SavedItems("Info"), kBefore);
    }
    {
        const CUnprivileged nobody;
        Change();
    }
    EXPECT_EQ(SavedItems("Info"), kAfter) << "the lock is gone";
    fs::permissions(Folder(), static_cast<fs::perms>(0755));
}

// A limit on the sizes of files.

TEST_F(SaveAttacks, ALimitOnFileSizesFailsTheSaveAndNothingElse) {
    const std::string large(200000, 'l');
    const int status = EndOfProcess([&] {
        ::signal(SIGXFSZ, SIG_DFL);
        const CFileSizeLimit limit(100000);
        WriteAttr("Info", "Name", large.c_str());
        sigset_t waiting;
        return ::sigpending(&waiting) == 0 && ::sigismember(&waiting, SIGXFSZ) == 0 &&
               ::signal(SIGXFSZ, SIG_DFL) == SIG_DFL;
    });
    EXPECT_EQ(status, 0) << "signal " << (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
    EXPECT_EQ(SavedItems("Info"), kBefore);
    EXPECT_EQ(Names(), std::set<std::string>{"Cordelbox.xml"});
}

TEST_F(SaveAttacks, ALimitOnFileSizesFailsASaveInPlaceAndLeavesTheOldDocument) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    fs::permissions(UserMainPath(), static_cast<fs::perms>(0666));
    fs::permissions(Folder(), static_cast<fs::perms>(0555));
    const std::string large(200000, 'l');
    const int status = EndOfProcess([&] {
        const CUnprivileged nobody;
        const CFileSizeLimit limit(100000);
        WriteAttr("Info", "Name", large.c_str());
        return true;
    });
    fs::permissions(Folder(), static_cast<fs::perms>(0755));
    EXPECT_EQ(status, 0) << "signal " << (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
    EXPECT_EQ(SavedItems("Info"), kBefore);
}

TEST_F(SaveAttacks, ALimitOnFileSizesFailsASaveInPlaceOfADocumentThatIsBeyondItAlready) {
    // Space that the file has need not be reserved: the limit would be met in the middle.
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    WriteAttr("Info", "Name", std::string(20000, 'n').c_str());
    fs::permissions(UserMainPath(), static_cast<fs::perms>(0666));
    fs::permissions(Folder(), static_cast<fs::perms>(0555));
    const std::string before = ReadFile(UserMainPath());
    {
        const CFileSizeLimit limit(5000);
        const CUnprivileged nobody;
        WriteAttr("Info", "Name", std::string(10000, 'm').c_str());
    }
    fs::permissions(Folder(), static_cast<fs::perms>(0755));
    EXPECT_EQ(ReadFile(UserMainPath()), before);
}

TEST_F(SaveAttacks, ASignalOfThatLimitThatWaitsAlreadyStillComes) {
    const std::string large(200000, 'l');
    const int status = EndOfProcess([&] {
        static volatile sig_atomic_t s_nSignals = 0;
        ::signal(SIGXFSZ, [](int) { s_nSignals = s_nSignals + 1; });
        sigset_t signal;
        sigemptyset(&signal);
        sigaddset(&signal, SIGXFSZ);
        ::pthread_sigmask(SIG_BLOCK, &signal, nullptr);
        ::raise(SIGXFSZ);
        const CFileSizeLimit limit(100000);
        WriteAttr("Info", "Name", large.c_str());
        const bool bNone = s_nSignals == 0;
        ::pthread_sigmask(SIG_UNBLOCK, &signal, nullptr);
        WriteAttr("Info", "Name", large.c_str());
        return bNone && s_nSignals == 1;
    });
    EXPECT_EQ(status, 0) << "signal " << (WIFSIGNALED(status) ? WTERMSIG(status) : 0);
}

TEST_F(SaveAttacks, ASaveLeavesTheThreadTheSignalsThatItTakes) {
    sigset_t blocked;
    sigset_t before;
    sigset_t after;
    sigemptyset(&blocked);
    sigaddset(&blocked, SIGUSR1);
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, &blocked, &before), 0);
    Change();
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, &before, &after), 0);
    for (int signal = 1; signal < NSIG; ++signal) {
        EXPECT_EQ(::sigismember(&after, signal) == 1, signal == SIGUSR1) << signal;
    }
    EXPECT_EQ(SavedItems("Info"), kAfter);
}

// Access rights.

TEST_F(SaveAttacks, AnAccessControlListIsKept) {
    using enum AccessEntry::Tag;
    const std::string list = AccessListBytes(
        {{Owner, 6}, {User, 4, kOtherUser}, {OwningGroup, 0}, {Group, 6, kOtherGroup}, {Mask, 6}, {Others, 0}});
    if (!SetFileAttribute(UserMainPath(), kAccessList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(FileAttribute(UserMainPath(), kAccessList), list);
    EXPECT_EQ(ModeOf(UserMainPath()), 0660u) << "the group's bits are the list's mask";
}

TEST_F(SaveAttacks, AListThatTheFolderHandsDownIsNotInherited) {
    using enum AccessEntry::Tag;
    const std::string list =
        AccessListBytes({{Owner, 7}, {User, 6, kOtherUser}, {OwningGroup, 5}, {Mask, 7}, {Others, 0}});
    ASSERT_EQ(::chmod(UserMainPath().c_str(), 0640), 0);
    if (!SetFileAttribute(Folder(), kDefaultAccessList, list)) {
        GTEST_SKIP() << "no access control lists here";
    }
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(FileAttribute(UserMainPath(), kAccessList), "(none)");
    EXPECT_EQ(ModeOf(UserMainPath()), 0640u);
}

TEST_F(SaveAttacks, AttributesAreKept) {
    const std::string binary("a\0b", 3);
    if (!SetFileAttribute(UserMainPath(), "user.note", "a note") ||
        !SetFileAttribute(UserMainPath(), "user.empty", "") ||
        !SetFileAttribute(UserMainPath(), "user.binary", binary)) {
        GTEST_SKIP() << "no attributes here";
    }
    Change();
    EXPECT_EQ(FileAttribute(UserMainPath(), "user.note"), "a note");
    EXPECT_EQ(FileAttribute(UserMainPath(), "user.empty"), "");
    EXPECT_EQ(FileAttribute(UserMainPath(), "user.binary"), binary);
}

TEST_F(SaveAttacks, AGroupThatCannotBeKeptLendsItsRightsToNoOther) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    for (const auto& [before, after] : {std::pair<mode_t, mode_t>{0640, 0600}, {0664, 0644}, {0604, 0600}}) {
        CopyMainForUser(Document(kInfo));
        GiveAway(UnprivilegedUser(), kOtherGroup, before);
        {
            const CUnprivileged nobody;
            Change();
        }
        EXPECT_EQ(SavedItems("Info"), kAfter);
        EXPECT_EQ(ModeOf(UserMainPath()), after);
    }
}

TEST_F(SaveAttacks, AnOwnerThatCannotBeKeptLendsItsRightsToNobody) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    for (const auto& [before, after] : {std::pair<mode_t, mode_t>{0664, 0664}, {0464, 0644}, {04775, 0675}}) {
        CopyMainForUser(Document(kInfo));
        GiveAway(kOtherUser, ::getegid(), before);
        {
            const CUnprivileged nobody;
            Change();
        }
        EXPECT_EQ(SavedItems("Info"), kAfter);
        EXPECT_EQ(OwnerOf(UserMainPath()), UnprivilegedUser());
        EXPECT_EQ(ModeOf(UserMainPath()), after);
    }
}

TEST_F(SaveAttacks, AGroupThatTheSaverIsOfIsKeptWithoutTheOwner) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    GiveAway(kOtherUser, kOtherGroup, 0664);
    std::vector<gid_t> before(static_cast<std::size_t>(::getgroups(0, nullptr)));
    ASSERT_GE(::getgroups(static_cast<int>(before.size()), before.data()), 0);
    ASSERT_EQ(::setgroups(1, &kOtherGroup), 0);
    {
        const CUnprivileged nobody;
        Change();
    }
    ASSERT_EQ(::setgroups(before.size(), before.data()), 0);
    EXPECT_EQ(SavedItems("Info"), kAfter);
    struct stat status {};
    ASSERT_EQ(::stat(UserMainPath().c_str(), &status), 0);
    EXPECT_EQ(status.st_gid, kOtherGroup);
    EXPECT_EQ(ModeOf(UserMainPath()), 0664u);
}

TEST_F(SaveAttacks, AListGoesWithTheGroupItSpeaksOf) {
    using enum AccessEntry::Tag;
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    GiveAway(UnprivilegedUser(), kOtherGroup, 0660);
    if (!SetFileAttribute(
            UserMainPath(), kAccessList,
            AccessListBytes({{Owner, 6}, {User, 6, kOtherUser}, {OwningGroup, 6}, {Mask, 6}, {Others, 0}}))) {
        GTEST_SKIP() << "no access control lists here";
    }
    {
        const CUnprivileged nobody;
        Change();
    }
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(FileAttribute(UserMainPath(), kAccessList), "(none)");
    EXPECT_EQ(ModeOf(UserMainPath()), 0600u);
}

TEST_F(SaveAttacks, TheDocumentIsReadableByNobodyElseWhileItIsWritten) {
    // Another user looks at every file of the folder all the time.
    ASSERT_EQ(::chmod(UserMainPath().c_str(), 0600), 0);
    std::atomic<bool> bEnd = false;
    std::atomic<int> open = 0;
    std::thread watcher([&] {
        while (!bEnd) {
            std::error_code none;
            for (const auto& entry : fs::directory_iterator(Folder(), none)) {
                struct stat status {};
                if (::lstat(entry.path().c_str(), &status) == 0 && (status.st_mode & 077) != 0) {
                    ++open;
                }
            }
        }
    });
    const mode_t before = ::umask(0);
    for (int save = 0; save < 100; ++save) {
        WriteAttr("Info", "Name", std::string(20000, 'n').c_str());
    }
    ::umask(before);
    bEnd = true;
    watcher.join();
    EXPECT_EQ(open, 0);
}

// Documents that cannot be replaced.

TEST_F(SaveAttacks, ADocumentThatIsAMountOfItsOwnIsWrittenInPlace) {
    const int status = EndOfProcess([&] {
        const bool bMounted = ::unshare(CLONE_NEWNS) == 0 &&
                              ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                              ::mount(UserMainPath().c_str(), UserMainPath().c_str(), nullptr, MS_BIND, nullptr) == 0;
        if (!bMounted) {
            ::_exit(2);
        }
        Change();
        return true;
    });
    if (WIFEXITED(status) && WEXITSTATUS(status) == 2) {
        GTEST_SKIP() << "this process may not mount";
    }
    EXPECT_EQ(status, 0);
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(Names(), std::set<std::string>{"Cordelbox.xml"});
}

TEST_F(SaveAttacks, ADocumentThatOnlyItsOwnerMayReplaceIsWrittenInPlace) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    ASSERT_EQ(::chown(UserMainPath().c_str(), kOtherUser, kOtherGroup), 0);
    ASSERT_EQ(::chmod(UserMainPath().c_str(), 0666), 0);
    ASSERT_EQ(::chown(Folder().c_str(), kOtherUser, kOtherGroup), 0);
    ASSERT_EQ(::chmod(Folder().c_str(), 01777), 0);
    {
        const CUnprivileged nobody;
        Change();
    }
    ASSERT_EQ(::chmod(Folder().c_str(), 0755), 0);
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(OwnerOf(UserMainPath()), kOtherUser);
    EXPECT_EQ(ModeOf(UserMainPath()), 0666u);
    EXPECT_EQ(Names(), std::set<std::string>{"Cordelbox.xml"});
}

TEST_F(SaveAttacks, InAFolderThatKeepsEveryNameTheDocumentIsWrittenInPlaceAndNothingIsLeftBehind) {
    const CAppendOnlyFolder folder(Folder());
    if (!folder.IsSet()) {
        GTEST_SKIP() << "no folders to which names can only be added";
    }
    Change();
    EXPECT_EQ(SavedItems("Info"), kAfter);
    EXPECT_EQ(Names(), std::set<std::string>{"Cordelbox.xml"});
}
