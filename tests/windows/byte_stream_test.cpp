// The stream that the DOM writes a document to.

#include "byte_stream.h"

#include <gtest/gtest.h>

namespace {

/// The stream as a writer knows it.
IStream& AsWriter(CByteStream& stream) {
    void* object = nullptr;
    EXPECT_EQ(stream.QueryInterface(IID_IStream, &object), S_OK);
    return *static_cast<IStream*>(object);
}

} // namespace

TEST(ByteStream, KeepsWhatIsWritten) {
    CByteStream stream;
    IStream& writer = AsWriter(stream);
    ULONG written = 0;
    EXPECT_EQ(writer.Write("one", 3, &written), S_OK);
    EXPECT_EQ(written, 3u);
    EXPECT_EQ(writer.Write(" two", 4, nullptr), S_OK);
    EXPECT_EQ(writer.Commit(0), S_OK);
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
    IStream& writer = AsWriter(stream);
    EXPECT_GT(writer.AddRef(), 0u);
    EXPECT_GT(writer.Release(), 0u);
    EXPECT_GT(writer.Release(), 0u);
    EXPECT_EQ(writer.Write("still", 5, nullptr), S_OK);
}

TEST(ByteStream, CanOnlyBeWritten) {
    CByteStream stream;
    IStream& writer = AsWriter(stream);
    char place = 0;
    ULONG count = 0;
    ULARGE_INTEGER size{};
    STATSTG state{};
    IStream* other = nullptr;
    EXPECT_EQ(writer.Read(&place, 1, &count), E_NOTIMPL);
    EXPECT_EQ(writer.Seek({}, STREAM_SEEK_SET, &size), E_NOTIMPL);
    EXPECT_EQ(writer.SetSize(size), E_NOTIMPL);
    EXPECT_EQ(writer.CopyTo(&writer, size, &size, &size), E_NOTIMPL);
    EXPECT_EQ(writer.Revert(), E_NOTIMPL);
    EXPECT_EQ(writer.LockRegion(size, size, 0), E_NOTIMPL);
    EXPECT_EQ(writer.UnlockRegion(size, size, 0), E_NOTIMPL);
    EXPECT_EQ(writer.Stat(&state, 0), E_NOTIMPL);
    EXPECT_EQ(writer.Clone(&other), E_NOTIMPL);
}
