// The stream that the DOM writes a document to.

#include "byte_stream.h"

#include <gtest/gtest.h>

TEST(ByteStream, KeepsWhatIsWritten) {
    CByteStream stream;
    ULONG written = 0;
    EXPECT_EQ(stream.Write("one", 3, &written), S_OK);
    EXPECT_EQ(written, 3u);
    EXPECT_EQ(stream.Write(" two", 4, nullptr), S_OK);
    EXPECT_EQ(stream.Commit(0), S_OK);
    EXPECT_EQ(stream.View(), "one two");
}

TEST(ByteStream, IsAStreamAndNothingElse) {
    CByteStream stream;
    for (const IID& interfaceId : {IID_IUnknown, IID_ISequentialStream, IID_IStream}) {
        void* object = nullptr;
        EXPECT_EQ(stream.QueryInterface(interfaceId, &object), S_OK);
        EXPECT_EQ(object, static_cast<IStream*>(&stream));
    }
    void* object = &stream;
    EXPECT_EQ(stream.QueryInterface(IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
}

TEST(ByteStream, StaysWhoeverReleasesIt) {
    CByteStream stream;
    EXPECT_GT(stream.AddRef(), 0u);
    EXPECT_GT(stream.Release(), 0u);
    EXPECT_GT(stream.Release(), 0u);
    EXPECT_EQ(stream.Write("still", 5, nullptr), S_OK);
}

TEST(ByteStream, CanOnlyBeWritten) {
    CByteStream stream;
    char place = 0;
    ULONG count = 0;
    ULARGE_INTEGER size{};
    STATSTG state{};
    IStream* other = nullptr;
    EXPECT_EQ(stream.Read(&place, 1, &count), E_NOTIMPL);
    EXPECT_EQ(stream.Seek({}, STREAM_SEEK_SET, &size), E_NOTIMPL);
    EXPECT_EQ(stream.SetSize(size), E_NOTIMPL);
    EXPECT_EQ(stream.CopyTo(&stream, size, &size, &size), E_NOTIMPL);
    EXPECT_EQ(stream.Revert(), E_NOTIMPL);
    EXPECT_EQ(stream.LockRegion(size, size, 0), E_NOTIMPL);
    EXPECT_EQ(stream.UnlockRegion(size, size, 0), E_NOTIMPL);
    EXPECT_EQ(stream.Stat(&state, 0), E_NOTIMPL);
    EXPECT_EQ(stream.Clone(&other), E_NOTIMPL);
}
