// Which file is behind a link, and which links nobody is led by.

#include "links.h"

#include "scratch_folder.h"
#include "unprivileged_posix.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <string>

namespace fs = std::filesystem;

namespace {

constexpr uid_t kSomebody = 1234;
constexpr uid_t kSomebodyElse = 4321;

class Links : public ::testing::Test {
protected:
    Links() {
        fs::create_directory(m_folder.Path() / "inner");
        std::ofstream(m_file) << "text";
    }

    fs::path Link(const std::string& name, const fs::path& target) const {
        fs::create_symlink(target, m_folder.Path() / name);
        return m_folder.Path() / name;
    }

    /// The path of the file that is opened, with the reason in its place when none is.
    std::string Behind(const fs::path& path) {
        std::string found = path;
        m_reason = CReason();
        const platform::CFile file =
            platform::OpenBehindLinks(platform::CFileOpener(), found, O_RDONLY | O_NONBLOCK, &m_reason);
        return file.IsOpen() ? found : "(none)";
    }

    static void Give(const fs::path& path, uid_t owner) {
        ASSERT_EQ(::lchown(path.c_str(), owner, static_cast<gid_t>(-1)), 0);
    }

    const CScratchFolder m_folder;
    const fs::path m_file = m_folder.Path() / "file";
    CReason m_reason;
};

} // namespace

TEST_F(Links, LeadFromTheirOwnFolderOrFromTheRoot) {
    EXPECT_EQ(Behind(m_file), m_file);
    EXPECT_EQ(Behind(Link("beside", "file")), m_file);
    EXPECT_EQ(Behind(Link("inner/above", "../file")), m_folder.Path() / "inner" / "../file");
    EXPECT_EQ(Behind(Link("inner/absolute", m_file)), m_file);
    EXPECT_EQ(Behind(Link("twice", "beside")), m_file);
}

TEST_F(Links, AreFollowedAsOftenAsTheSystemFollowsThem) {
    fs::path last = m_file;
    for (int number = 1; number <= 41; ++number) {
        last = Link("link" + std::to_string(number), last.filename());
    }
    EXPECT_EQ(Behind(m_folder.Path() / "link40"), m_file);
    EXPECT_EQ(Behind(m_folder.Path() / "link41"), "(none)");
    EXPECT_STREQ(m_reason.m_pCall, "open");
    EXPECT_EQ(m_reason.m_nError, static_cast<std::uint32_t>(ELOOP));
}

TEST_F(Links, ThatLeadNowhereAreNamedByTheCallThatFound) {
    EXPECT_EQ(Behind(Link("nowhere", "gone")), "(none)");
    EXPECT_EQ(m_reason.m_kind, ReasonKind::Absent);
    EXPECT_STREQ(m_reason.m_pCall, "open");
    EXPECT_EQ(Behind(m_folder.Path() / "gone"), "(none)");
    EXPECT_EQ(m_reason.m_kind, ReasonKind::Absent);
}

TEST_F(Links, OfSomebodyLeadToFilesOfTheirsOnly) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    const fs::path link = Link("theirs", "file");
    Give(link, kSomebody);
    EXPECT_EQ(Behind(link), "(none)");
    EXPECT_EQ(m_reason.m_kind, ReasonKind::NotPermitted);
    EXPECT_EQ(m_reason.m_strWords, "the link to it is somebody else's");
    Give(m_file, kSomebody);
    EXPECT_EQ(Behind(link), m_file);
    // Through one more link: of the superuser, of the same, and of yet another.
    const fs::path outer = Link("outer", "theirs");
    EXPECT_EQ(Behind(outer), m_file);
    Give(outer, kSomebody);
    EXPECT_EQ(Behind(outer), m_file);
    Give(outer, kSomebodyElse);
    EXPECT_EQ(Behind(outer), "(none)");
    EXPECT_EQ(m_reason.m_nError, static_cast<std::uint32_t>(EACCES));
    Give(link, 0);
    EXPECT_EQ(Behind(outer), "(none)") << "the first link's owner counts";
    EXPECT_EQ(m_reason.m_kind, ReasonKind::NotPermitted);
}

TEST_F(Links, OfTheSuperuserAndOfTheProcessLeadAnywhere) {
    if (::geteuid() != 0) {
        GTEST_SKIP() << "needs the right to give files away";
    }
    Give(m_file, kSomebody);
    const fs::path ofRoot = Link("of root", "file");
    const fs::path own = Link("own", "file");
    const CUnprivileged nobody;
    const uid_t user = ::geteuid();
    EXPECT_EQ(Behind(ofRoot), m_file);
    {
        ::seteuid(0);
        Give(own, user);
        ASSERT_EQ(::seteuid(user), 0);
    }
    EXPECT_EQ(Behind(own), m_file);
}
