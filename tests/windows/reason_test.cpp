// Why something could not be done, and what tells the states of a file apart, as this system says it.

#include "host_test.h"
#include "platform/dom.h"
#include "platform/folders.h"
#include "platform/reason.h"

namespace fs = std::filesystem;

class Reasons : public HostTest {
protected:
    /// Why a file of these bytes is not loaded.
    CReason OfLoading(const std::string& bytes) const {
        WriteFile(UserMainPath(), bytes);
        CReason reason;
        EXPECT_FALSE(DomDocument::Create()->Load(UserMainPath().string().c_str(), &reason));
        return reason;
    }

    /// Why the per-user copy does not count.
    CReason OfAbsence() const {
        CReason reason;
        EXPECT_FALSE(platform::IsPresentAndWritable(UserMainPath().string().c_str(), &reason));
        return reason;
    }
};

TEST_F(Reasons, OfAnErrorOfTheSystemAreOfItsKind) {
    for (const DWORD error : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_INVALID_NAME}) {
        EXPECT_EQ(platform::KindOfError(error), ReasonKind::Absent) << error;
    }
    for (const DWORD error : {ERROR_ACCESS_DENIED, ERROR_WRITE_PROTECT, ERROR_PRIVILEGE_NOT_HELD}) {
        EXPECT_EQ(platform::KindOfError(error), ReasonKind::NotPermitted) << error;
    }
    for (const DWORD error : {ERROR_SHARING_VIOLATION, ERROR_LOCK_VIOLATION}) {
        EXPECT_EQ(platform::KindOfError(error), ReasonKind::InUse) << error;
    }
    for (const DWORD error :
         {DWORD{ERROR_NOT_ENOUGH_MEMORY}, DWORD{ERROR_OUTOFMEMORY}, static_cast<DWORD>(E_OUTOFMEMORY)}) {
        EXPECT_EQ(platform::KindOfError(error), ReasonKind::OutOfMemory) << error;
    }
    EXPECT_EQ(platform::KindOfError(ERROR_DISK_FULL), ReasonKind::CallFailed);
}

TEST_F(Reasons, OfAnErrorOfTheSystemHaveItsWordsWithoutTheLineEnd) {
    for (const DWORD error : {ERROR_FILE_NOT_FOUND, ERROR_ACCESS_DENIED, ERROR_DISK_FULL}) {
        char words[512] = {};
        ASSERT_NE(::FormatMessageA(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0, words,
                                   sizeof words, nullptr),
                  0u);
        const std::string_view text = words;
        EXPECT_EQ(platform::WordsOfError(error), AnsiString(words, text.find_last_not_of("\r\n ") + 1));
    }
    EXPECT_EQ(platform::WordsOfError(0xDEADBEEF), "") << "no error of the system's";
}

TEST_F(Reasons, OfAFileThatIsNotThereNameTheCallAndItsError) {
    CReason reason;
    EXPECT_FALSE(DomDocument::Create()->Load(UserMainPath().string().c_str(), &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::Absent);
    EXPECT_STREQ(reason.m_pCall, "CreateFileW");
    const CReason absence = OfAbsence();
    EXPECT_EQ(absence.m_kind, ReasonKind::Absent);
    EXPECT_STREQ(absence.m_pCall, "CreateFile");
}

TEST_F(Reasons, OfWhatIsNoDocumentSayWhatItLacks) {
    EXPECT_EQ(OfLoading("<r>").m_kind, ReasonKind::Malformed);
    const CReason prefix = OfLoading("<r><p:a xmlns:p='u'/><r p:b='1'/></r>");
    EXPECT_EQ(prefix.m_kind, ReasonKind::Malformed);
    EXPECT_FALSE(prefix.m_strWords.empty());
    std::string deep;
    for (int depth = 0; depth <= 1000; ++depth) {
        deep = "<a>" + deep + "</a>";
    }
    // Some DOMs refuse so many levels themselves.
    const ReasonKind tooDeep = OfLoading(deep).m_kind;
    EXPECT_TRUE(tooDeep == ReasonKind::TooDeep || tooDeep == ReasonKind::Malformed);
    EXPECT_EQ(OfLoading("\xEF\xBB\xBF<?xml version='1.0' encoding='windows-1252'?><r/>").m_kind, ReasonKind::Encoding);
}

TEST_F(Reasons, OfAFileThatMayNotBeWrittenOrIsHeldSaySo) {
    CopyMainForUser(Document(""));
    CReason none;
    EXPECT_TRUE(platform::IsPresentAndWritable(UserMainPath().string().c_str(), &none));
    EXPECT_FALSE(none);
    {
        const CReadOnlyFile readOnly(UserMainPath());
        EXPECT_EQ(OfAbsence().m_kind, ReasonKind::NotPermitted);
    }
    const CLockedFile locked(UserMainPath());
    EXPECT_EQ(OfAbsence().m_kind, ReasonKind::InUse);
}

TEST_F(Reasons, OfADeviceAreThatItIsNoFile) {
    CReason reason;
    EXPECT_FALSE(platform::IsPresentAndWritable("NUL", &reason));
    EXPECT_EQ(reason.m_kind, ReasonKind::NotRegular);
}

TEST_F(Reasons, OfAFileWhoseStateCannotBeToldNameTheCall) {
    CReason reason;
    EXPECT_EQ(platform::StampOf(UserMainPath().string().c_str(), &reason), platform::FileStamp());
    EXPECT_EQ(reason.m_kind, ReasonKind::Absent);
    EXPECT_STREQ(reason.m_pCall, "CreateFile");
    EXPECT_EQ(reason.m_nError, DWORD{ERROR_PATH_NOT_FOUND});
}

class Stamps : public HostTest {
protected:
    std::string Path() const { return UserMainPath().string(); }
    platform::FileStamp Stamp() const { return platform::StampOf(Path().c_str()); }

    void SetWriteTime(FILETIME time) const {
        const HANDLE file = ::CreateFileA(Path().c_str(), FILE_WRITE_ATTRIBUTES, 0, nullptr, OPEN_EXISTING, 0, nullptr);
        ASSERT_NE(::SetFileTime(file, nullptr, nullptr, &time), FALSE);
        ::CloseHandle(file);
    }
};

TEST_F(Stamps, StayAsLongAsTheFileDoes) {
    WriteFile(UserMainPath(), "one");
    const platform::FileStamp first = Stamp();
    EXPECT_NE(first, platform::FileStamp());
    EXPECT_EQ(Stamp(), first);
    const HANDLE held =
        ::CreateFileA(Path().c_str(), GENERIC_READ | GENERIC_WRITE | DELETE,
                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr);
    EXPECT_EQ(Stamp(), first) << "while another program has it open";
    ::CloseHandle(held);
}

TEST_F(Stamps, HoldTheSizeTheTimeAndTheFileItself) {
    WriteFile(UserMainPath(), "four");
    constexpr FILETIME kTime = {0x11223300, 0x01D60000};
    SetWriteTime(kTime);
    const platform::FileStamp stamp = Stamp();
    EXPECT_EQ(stamp.size, 4u);
    EXPECT_EQ(stamp.modified, 0x01D6000011223300u);
    EXPECT_NE(stamp.changed, 0u);
    WriteFile(UserMainPath().parent_path() / "other", "four");
    const platform::FileStamp other = platform::StampOf((UserMainPath().parent_path() / "other").string().c_str());
    EXPECT_NE(other.file, stamp.file);
    EXPECT_EQ(other.device, stamp.device);
}
