#include "core/util/FileBufferStream.h"

#include <array>
#include <cstring>
#include <filesystem>
#include <numeric>
#include <string>

#include <gtest/gtest.h>

#include "support/TempFolder.h"

namespace {

using vpc::test::readBytes;
using vpc::test::TempFolder;
using vpc::test::toWx;
using vpc::test::writeBytes;

class FileBufferStreamTest : public testing::Test {
protected:
    bool open(VpcFileMode mode, bool append = false) {
        return stream.StreamOpen(toWx(file), mode, append);
    }
    /// Closes the stream; what the file holds then.
    std::string written() {
        stream.StreamClose();
        EXPECT_TRUE(stream.IsStreamGood());
        return readBytes(file);
    }

    TempFolder folder;
    std::filesystem::path file = folder.path() / "Größe \u70b9\U0001F600.bin";
    FileBufferStream stream;
};

TEST_F(FileBufferStreamTest, OpensOneFileAtATimeAndNoFolder) {
    EXPECT_FALSE(stream.ReadFile2Buffer() || stream.IsStreamGood()) << "there is no file to read";
    EXPECT_FALSE(open(FileModeRead) || stream.IsStreamGood());
    EXPECT_EQ(stream.SystemError(), ENOENT);
    EXPECT_FALSE(stream.StreamOpen(toWx(folder.path()), FileModeRead) || stream.IsStreamOpen());
    EXPECT_EQ(stream.SystemError(), EISDIR);
    writeBytes(file, "12345678");
    EXPECT_TRUE(open(FileModeRead) && stream.IsStreamGood()) << "opening clears the fail state";
    EXPECT_STREQ(stream.fileName.data(), file.c_str());
    EXPECT_FALSE(stream.StreamOpen(toWx(folder.path() / "other"), FileModeWrite));
    EXPECT_FALSE(stream.IsStreamGood() || std::filesystem::exists(folder.path() / "other"));
    EXPECT_EQ(stream.mode, FileModeWrite) << "as asked for last";
    stream.StreamClose();
    EXPECT_FALSE(stream.StreamOpen(wxString('x', 5000), FileModeRead)) << "cut to fit its field";
}

TEST_F(FileBufferStreamTest, TypedValuesLieOneAfterAnother) {
    writeBytes(file, "old content");
    ASSERT_TRUE(open(FileModeWrite));
    stream.StreamWriteDouble(-1.5);
    stream.StreamWriteBool(true);
    stream.StreamWriteUint64(0x1122334455667788ULL);
    stream.StreamWriteUint16(0xABCD);
    stream.StreamWriteString("abc");
    stream.StreamWriteAtUint64(9, 5);
    EXPECT_EQ(stream.StreamPosition(), 17U) << "left after the patched value";
    stream.StreamWriteAtBool(8, false);
    stream.StreamWriteAtUint16(17, 7);
    stream.StreamWriteAtString(19, wxString::FromUTF8("\U0001F600"));
    EXPECT_EQ(written().substr(8),
              std::string("\0\5\0\0\0\0\0\0\0\7\0\0\xF6\1\0b\0\0\0c\0\0\0", 23));

    ASSERT_TRUE(open(FileModeRead));
    EXPECT_EQ(stream.StreamReadDouble(), -1.5);
    EXPECT_FALSE(stream.StreamReadBool());
    EXPECT_EQ(stream.StreamReadUint64(), 5U);
    EXPECT_EQ(stream.StreamReadUint16(), 7U);
    EXPECT_EQ(stream.StreamReadString(3), wxString::FromUTF8("\U0001F600bc"));
    EXPECT_EQ(stream.StreamReadAtUint64(9), 5U);
    EXPECT_EQ(stream.StreamSize(), 31U);
    EXPECT_EQ(stream.StreamPosition(), 17U) << "measuring goes back";
    stream.StreamClose();
    EXPECT_TRUE(open(FileModeWrite, true));
    stream.StreamWriteBool(true);
    EXPECT_EQ(written().size(), 32U) << "appended";
}

TEST_F(FileBufferStreamTest, StringsHoldAtMost1024Characters) {
    ASSERT_TRUE(open(FileModeWrite));
    const wxString longest('x', 1024);
    stream.StreamWriteString(longest + wxString("a\0b", 3) + wxString('y', 1024));
    written();
    ASSERT_TRUE(open(FileModeRead));
    EXPECT_EQ(stream.StreamReadString(1024), longest);
    EXPECT_EQ(stream.StreamReadString(3), wxString("a\0b", 3)) << "zeros count as characters";
    EXPECT_EQ(stream.StreamReadAtString(4 * 1020, wxString::npos), "xxxxa") << "up to a zero";
    EXPECT_TRUE(stream.IsStreamGood());
    EXPECT_TRUE(stream.StreamReadAtString(0, 1025).empty() && !stream.IsStreamGood());
}

TEST_F(FileBufferStreamTest, FailuresStayUntilCleared) {
    writeBytes(file, "1234567");
    ASSERT_TRUE(open(FileModeRead));
    EXPECT_EQ(stream.StreamReadDouble(), 0.0);
    EXPECT_EQ(stream.StreamReadAtUint16(0), 0U) << "nothing works in the fail state";
    EXPECT_EQ(stream.SystemError(), 0) << "the file's end is no failure of the system's";
    stream.StreamClearState();
    EXPECT_EQ(stream.StreamReadAtUint16(0), 0x3231U);
    stream.StreamSeek(~0ULL);
    EXPECT_FALSE(stream.IsStreamGood()) << "no file is that long";
    stream.StreamClearState();
    stream.StreamWriteUint16(1);
    EXPECT_FALSE(stream.IsStreamGood()) << "opened for reading";
    EXPECT_EQ(stream.SystemError(), EOVERFLOW) << "the first failure's";
    stream.StreamClose();
    for (const std::size_t size : {8U, 1U << 20}) {
        ASSERT_TRUE(stream.StreamOpen("/dev/full", FileModeWrite));
        stream.WriteCharArray2File(std::string(size, 'x').data(), size);
        stream.StreamClose();
        EXPECT_FALSE(stream.IsStreamGood()) << "shows at the latest when closing";
        EXPECT_EQ(stream.SystemError(), ENOSPC);
    }
}

TEST_F(FileBufferStreamTest, WorksPastFourGibibytes) {
    constexpr unsigned long long far = (5ULL << 30) + 3;
    ASSERT_TRUE(open(FileModeWrite));
    stream.StreamWriteAtUint64(far, 42);
    stream.StreamClose();
    ASSERT_TRUE(open(FileModeRead));
    EXPECT_EQ(stream.StreamSize(), far + 8);
    EXPECT_EQ(stream.StreamReadAtUint64(far), 42U);
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(far, 8));
    EXPECT_EQ(stream.BufferReadUint64(), 42U);
}

TEST_F(FileBufferStreamTest, BlockReadsFillTheBufferWhichOnlyGrows) {
    std::string bytes(120, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    writeBytes(file, bytes);
    ASSERT_TRUE(open(FileModeRead));
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(0, 100));
    stream.BufferReadUint16();
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(10, 10));
    EXPECT_EQ(std::string(stream.bufferStart, stream.bufferSize), bytes.substr(10, 100));
    EXPECT_EQ(stream.LastBlockSize(), 100U);
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(30, 100)) << "cut short";
    EXPECT_FALSE(stream.IsStreamGood());
    EXPECT_EQ(stream.LastBlockSize(), 90U);
    EXPECT_EQ(stream.bufferCursor - stream.bufferStart, 2) << "the cursor stays";
    EXPECT_FALSE(stream.ReadFileBlock2Buffer(0, 10));
    EXPECT_EQ(stream.LastBlockSize(), 0U);
    EXPECT_FALSE(stream.ReadFileBlock2Buffer(0, 110));
    EXPECT_EQ(stream.bufferSize, 110U) << "it grows before the stream is looked at";
    FileBufferStream whole;
    ASSERT_TRUE(whole.StreamOpen(toWx(file), FileModeRead));
    whole.StreamSeek(50);
    EXPECT_TRUE(whole.ReadFile2Buffer());
    EXPECT_EQ(std::string(whole.bufferStart, whole.bufferSize), bytes);
    whole.ReleaseBuffer();
    EXPECT_EQ(whole.bufferSize + whole.LastBlockSize(), 0U);
}

TEST_F(FileBufferStreamTest, WritesNothingFromBeyondTheBuffer) {
    std::strcpy(stream.CreateInternalBuffer(10), "012345678");
    ASSERT_TRUE(open(FileModeWrite));
    stream.WriteBuffer2File(7, false, 2);
    stream.WriteBuffer2File(8, true, 1);
    stream.WriteBuffer2File(11, true, 1);
    EXPECT_EQ(written(), std::string("788\0", 4));
}

}  // namespace
