// Why something could not be done.

#include "platform/reason.h"

#include <gtest/gtest.h>

#include <cerrno>

TEST(Reason, IsNoneWhereNothingWentWrong) {
    const CReason none;
    EXPECT_FALSE(none);
    EXPECT_EQ(none.m_kind, ReasonKind::None);
    EXPECT_STREQ(none.m_pCall, "");
    EXPECT_EQ(none.m_nError, 0u);
    EXPECT_EQ(none.m_nLine, 0u);
    EXPECT_EQ(none.m_nColumn, 0u);
    EXPECT_TRUE(none.m_strWords.empty());
}

TEST(Reason, OfAKindHasNothingElse) {
    const CReason reason = CReason::Of(ReasonKind::TooLarge);
    EXPECT_TRUE(reason);
    EXPECT_EQ(reason.m_kind, ReasonKind::TooLarge);
    EXPECT_STREQ(reason.m_pCall, "");
    EXPECT_TRUE(reason.m_strWords.empty());
}

TEST(Reason, MayHaveWordsOfOnesOwn) {
    const CReason reason = CReason::Of(ReasonKind::Refused, "not this one");
    EXPECT_EQ(reason.m_kind, ReasonKind::Refused);
    EXPECT_STREQ(reason.m_strWords.c_str(), "not this one");
}

TEST(Reason, OfACallHasItsNameAndItsErrorAndTheKindThatFollows) {
    const CReason reason = CReason::OfCall("openat", EACCES);
    EXPECT_EQ(reason.m_kind, ReasonKind::NotPermitted);
    EXPECT_STREQ(reason.m_pCall, "openat");
    EXPECT_EQ(reason.m_nError, static_cast<std::uint32_t>(EACCES));
}

TEST(Reason, OfAReaderHasAPlaceAndWords) {
    const CReason reason = CReason::OfReader(3, 7, "mismatched tag");
    EXPECT_EQ(reason.m_kind, ReasonKind::Malformed);
    EXPECT_EQ(reason.m_nLine, 3u);
    EXPECT_EQ(reason.m_nColumn, 7u);
    EXPECT_STREQ(reason.m_strWords.c_str(), "mismatched tag");
}

TEST(Reason, IsStoredOnlyWhereOneIsWanted) {
    CReason wanted;
    GiveReason(&wanted, CReason::Of(ReasonKind::InUse));
    EXPECT_EQ(wanted.m_kind, ReasonKind::InUse);
    GiveReason(nullptr, CReason::Of(ReasonKind::InUse));
}

TEST(Reason, OfAnErrorOfTheSystemIsOfItsKind) {
    for (const int error : {ENOENT, ENOTDIR}) {
        EXPECT_EQ(platform::KindOfError(static_cast<std::uint32_t>(error)), ReasonKind::Absent) << error;
    }
    EXPECT_EQ(platform::KindOfError(EISDIR), ReasonKind::NotRegular);
    for (const int error : {EACCES, EPERM, EROFS}) {
        EXPECT_EQ(platform::KindOfError(static_cast<std::uint32_t>(error)), ReasonKind::NotPermitted) << error;
    }
    for (const int error : {EAGAIN, EBUSY, ETXTBSY}) {
        EXPECT_EQ(platform::KindOfError(static_cast<std::uint32_t>(error)), ReasonKind::InUse) << error;
    }
    EXPECT_EQ(platform::KindOfError(ENOMEM), ReasonKind::OutOfMemory);
    for (const int error : {EIO, ENOSPC, EDQUOT}) {
        EXPECT_EQ(platform::KindOfError(static_cast<std::uint32_t>(error)), ReasonKind::CallFailed) << error;
    }
}

TEST(Reason, OfAnErrorOfTheSystemHasTheSystemsWords) {
    EXPECT_STREQ(platform::WordsOfError(ENOENT).c_str(), "No such file or directory");
}
