// The calls of a load to the system, and of the look at a file: what fails is named, and nothing is half a document.

#include "host_test.h"
#include "platform/dom.h"
#include "platform/folders.h"
#include "system_calls_windows.h"

class LoadCalls : public HostTest {
protected:
    void SetUp() override {
        HostTest::SetUp();
        CopyMainForUser(Document("<Files><Item ID=\"1\"/></Files>"));
    }

    std::string Path() const { return UserMainPath().string(); }

    /// Why the copy is not loaded when the calls of that name have that fate.
    CReason OfLoading(const char* name, const Fate& fate) const {
        const auto dom = DomDocument::Create();
        const std::string path = Path();
        CReason reason;
        bool bLoaded = true;
        {
            // The DOM's own calls are another program's business.
            const CSystemCallWatch watch(
                [&](std::size_t, const SystemCall& call) { return call.name == name ? fate : Fate(); });
            bLoaded = dom->Load(path.c_str(), &reason);
        }
        EXPECT_FALSE(bLoaded) << name;
        return reason;
    }

    static Fate Saying(LONGLONG size) {
        Fate fate;
        fate.nSize = size;
        return fate;
    }
};

TEST_F(LoadCalls, ThatFailAreNamedInTheReasonWithTheirError) {
    for (const char* const name : {"CreateFileW", "GetFileSizeEx", "ReadFile"}) {
        const CReason reason = OfLoading(name, Fate{ERROR_CRC});
        EXPECT_STREQ(reason.m_pCall, name);
        EXPECT_EQ(reason.m_nError, DWORD{ERROR_CRC}) << name;
    }
}

TEST_F(LoadCalls, ThatReadLessThanTheWholeFileLeaveNoDocument) {
    EXPECT_STREQ(OfLoading("ReadFile", Fate{0, false, 10}).m_pCall, "ReadFile");
}

TEST_F(LoadCalls, TellAFileThatIsTooLargeByOneByteFromTheLargest) {
    constexpr LONGLONG kLargest = LONGLONG{256} * 1024 * 1024;
    EXPECT_EQ(OfLoading("GetFileSizeEx", Saying(kLargest + 1)).m_kind, ReasonKind::TooLarge);
    EXPECT_STREQ(OfLoading("GetFileSizeEx", Saying(kLargest)).m_pCall, "ReadFile") << "there is not so much to read";
}

TEST_F(LoadCalls, OfTheLookAtAFileAreNamedInTheReason) {
    const std::string path = Path();
    for (const char* const name : {"CreateFileA", "GetFileInformationByHandle"}) {
        CReason absence;
        CReason noStamp;
        platform::FileStamp stamp;
        bool bPresent = true;
        {
            const CSystemCallWatch watch(
                [&](std::size_t, const SystemCall& call) { return Fate{call.name == name ? DWORD{ERROR_CRC} : 0}; });
            bPresent = platform::IsPresentAndWritable(path.c_str(), &absence);
            stamp = platform::StampOf(path.c_str(), &noStamp);
        }
        EXPECT_FALSE(bPresent);
        EXPECT_EQ(stamp, platform::FileStamp());
        for (const CReason& reason : {absence, noStamp}) {
            EXPECT_TRUE(std::string(name).starts_with(reason.m_pCall)) << name << ": " << reason.m_pCall;
            EXPECT_STRNE(reason.m_pCall, "");
            EXPECT_EQ(reason.m_nError, DWORD{ERROR_CRC}) << name;
        }
    }
}

TEST_F(LoadCalls, OfAStampNeedNotKnowWhenAFileChanged) {
    const std::string path = Path();
    platform::FileStamp stamp;
    {
        const CSystemCallWatch watch([](std::size_t, const SystemCall& call) {
            return Fate{call.name == "GetFileInformationByHandleEx" ? DWORD{ERROR_INVALID_PARAMETER} : 0};
        });
        stamp = platform::StampOf(path.c_str());
    }
    EXPECT_EQ(stamp.changed, 0u);
    EXPECT_EQ(stamp.size, Document("<Files><Item ID=\"1\"/></Files>").size());
}
