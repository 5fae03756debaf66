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
    bool openForReading(const std::string& bytes) {
        writeBytes(file, bytes);
        return stream.StreamOpen(toWx(file), FileModeRead);
    }
    bool openForWriting(bool append = false) {
        return stream.StreamOpen(toWx(file), FileModeWrite, append);
    }
    std::string written() {
        stream.StreamClose();
        EXPECT_TRUE(stream.IsStreamGood());
        return readBytes(file);
    }

    TempFolder folder;
    std::filesystem::path file = folder.path() / "stream.bin";
    FileBufferStream stream;
};

/// 0, 1, 2, ... as bytes.
std::string counting(std::size_t size) {
    std::string bytes(size, '\0');
    std::iota(bytes.begin(), bytes.end(), '\0');
    return bytes;
}

TEST_F(FileBufferStreamTest, StartsWithNothing) {
    EXPECT_FALSE(stream.IsStreamOpen());
    EXPECT_EQ(stream.bufferStart, nullptr);
    EXPECT_EQ(stream.bufferCursor, nullptr);
    EXPECT_EQ(stream.bufferSize, 0U);
    EXPECT_FALSE(stream.externalBuffer);
    EXPECT_FALSE(stream.ReadFile2Buffer());
    EXPECT_FALSE(stream.IsStreamGood()) << "there is no file to read";
}

TEST_F(FileBufferStreamTest, OpeningFailsWithoutAFileOnAFolderAndTwice) {
    EXPECT_FALSE(stream.StreamOpen(toWx(file), FileModeRead));
    EXPECT_FALSE(stream.IsStreamGood());
    EXPECT_FALSE(stream.StreamOpen(toWx(folder.path()), FileModeRead));
    EXPECT_FALSE(stream.IsStreamOpen());
    EXPECT_TRUE(openForReading("12345678"));
    EXPECT_TRUE(stream.IsStreamGood()) << "a successful open clears the fail state";
    EXPECT_STREQ(stream.fileName.data(), file.c_str());
    EXPECT_FALSE(stream.StreamOpen(toWx(folder.path() / "other"), FileModeWrite));
    EXPECT_FALSE(stream.IsStreamGood());
    EXPECT_EQ(stream.mode, FileModeWrite) << "the mode of the last attempt";
    EXPECT_FALSE(std::filesystem::exists(folder.path() / "other"));
    stream.StreamClose();
    EXPECT_TRUE(stream.StreamOpen(toWx(file), static_cast<VpcFileMode>(7)));
    EXPECT_EQ(stream.StreamReadUint16(), 0x3231) << "any other mode reads";
}

TEST_F(FileBufferStreamTest, OpensNamesOfAnyCharacter) {
    const wxString name = toWx(folder.path()) + wxString::FromUTF8("/Größe \u70b9\U0001F600.bin");
    EXPECT_TRUE(stream.StreamOpen(name, FileModeWrite));
    stream.StreamWriteUint16(1);
    stream.StreamClose();
    EXPECT_EQ(folder.names(), std::set<std::string>{"Größe \u70b9\U0001F600.bin"});
    EXPECT_FALSE(stream.StreamOpen(wxString('x', 5000), FileModeRead));
    EXPECT_EQ(std::strlen(stream.fileName.data()), 4095U);
}

TEST_F(FileBufferStreamTest, WritesFromEmptyOrAtTheEnd) {
    writeBytes(file, "old content");
    ASSERT_TRUE(openForWriting());
    stream.StreamWriteUint16(0x4241);
    EXPECT_EQ(written(), "AB");
    ASSERT_TRUE(openForWriting(true));
    stream.StreamWriteBool(true);
    EXPECT_EQ(written(), "AB\x01");
}

TEST_F(FileBufferStreamTest, TypedValuesLieOneAfterAnother) {
    ASSERT_TRUE(openForWriting());
    stream.StreamWriteDouble(-1.5);
    stream.StreamWriteBool(true);
    stream.StreamWriteUint64(0x1122334455667788ULL);
    stream.StreamWriteUint16(0xABCD);
    stream.StreamWriteString("abc");
    EXPECT_EQ(stream.StreamPosition(), 31U);
    EXPECT_EQ(stream.StreamSize(), 31U);
    stream.StreamWriteAtUint64(9, 5);
    EXPECT_EQ(stream.StreamPosition(), 17U) << "left after the patched value";
    stream.StreamWriteAtBool(8, false);
    stream.StreamWriteAtUint16(17, 7);
    stream.StreamWriteAtString(19, wxString::FromUTF8("\U0001F600"));
    const std::string bytes = written();
    EXPECT_EQ(bytes.substr(8), std::string("\0\5\0\0\0\0\0\0\0\7\0\0\xF6\1\0b\0\0\0c\0\0\0", 23));

    ASSERT_TRUE(stream.StreamOpen(toWx(file), FileModeRead));
    EXPECT_EQ(stream.StreamReadDouble(), -1.5);
    EXPECT_FALSE(stream.StreamReadBool());
    EXPECT_EQ(stream.StreamReadUint64(), 5U);
    EXPECT_EQ(stream.StreamReadUint16(), 7U);
    EXPECT_EQ(stream.StreamReadString(3), wxString::FromUTF8("\U0001F600bc"));
    EXPECT_EQ(stream.StreamReadAtString(23, 2), "bc");
    EXPECT_EQ(stream.StreamReadAtDouble(0), -1.5);
    EXPECT_EQ(stream.StreamReadAtUint16(17), 7U);
    EXPECT_FALSE(stream.StreamReadAtBool(8));
    EXPECT_EQ(stream.StreamReadAtUint64(9), 5U);
    EXPECT_EQ(stream.StreamPosition(), 17U);
    EXPECT_EQ(stream.StreamSize(), 31U);
    EXPECT_EQ(stream.StreamPosition(), 17U) << "measuring goes back";
}

TEST_F(FileBufferStreamTest, StringsHoldAtMost1024Characters) {
    ASSERT_TRUE(openForWriting());
    const wxString longest('x', 1024);
    stream.StreamWriteString(longest);
    stream.StreamWriteString(wxString("a\0b", 3));
    stream.StreamWriteString(wxString('y', 1024));
    written();
    ASSERT_TRUE(stream.StreamOpen(toWx(file), FileModeRead));
    EXPECT_EQ(stream.StreamReadString(1024), longest);
    EXPECT_EQ(stream.StreamReadString(3), wxString("a\0b", 3)) << "zeros count as characters";
    EXPECT_EQ(stream.StreamReadAtString(4 * 1020, wxString::npos), "xxxxa") << "up to a zero";
    EXPECT_EQ(stream.StreamReadString(0), "");
    EXPECT_TRUE(stream.IsStreamGood());
    EXPECT_EQ(stream.StreamReadAtString(0, 1025), "");
    EXPECT_FALSE(stream.IsStreamGood());
}

TEST_F(FileBufferStreamTest, ShortReadsFailUntilCleared) {
    ASSERT_TRUE(openForReading("1234567"));
    EXPECT_EQ(stream.StreamReadDouble(), 0.0);
    EXPECT_FALSE(stream.IsStreamGood());
    EXPECT_EQ(stream.StreamReadAtUint16(0), 0U) << "nothing works in the fail state";
    stream.StreamClearState();
    EXPECT_EQ(stream.StreamReadAtUint16(0), 0x3231U);
    stream.StreamSeek(~0ULL);
    EXPECT_FALSE(stream.IsStreamGood()) << "no file is that long";
    stream.StreamClearState();
    stream.StreamWriteUint16(1);
    EXPECT_FALSE(stream.IsStreamGood()) << "opened for reading";
}

TEST_F(FileBufferStreamTest, AFullDiskShowsAtTheLatestWhenClosing) {
    ASSERT_TRUE(stream.StreamOpen("/dev/full", FileModeWrite));
    stream.StreamWriteUint64(1);
    stream.StreamClose();
    EXPECT_FALSE(stream.IsStreamOpen());
    EXPECT_FALSE(stream.IsStreamGood());
    ASSERT_TRUE(stream.StreamOpen("/dev/full", FileModeWrite));
    const std::string block(1 << 20, 'x');
    stream.WriteCharArray2File(block.data(), block.size());
    EXPECT_FALSE(stream.IsStreamGood());
}

TEST_F(FileBufferStreamTest, WorksPastFourGibibytes) {
    constexpr unsigned long long far = (5ULL << 30) + 3;
    ASSERT_TRUE(openForWriting());
    stream.StreamWriteAtUint64(far, 42);
    EXPECT_EQ(stream.StreamPosition(), far + 8);
    stream.StreamClose();
    ASSERT_TRUE(stream.IsStreamGood());
    ASSERT_TRUE(stream.StreamOpen(toWx(file), FileModeRead));
    EXPECT_EQ(stream.StreamSize(), far + 8);
    EXPECT_EQ(stream.StreamReadAtUint64(far), 42U);
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(far, 8));
    EXPECT_EQ(stream.BufferReadUint64(), 42U);
}

TEST_F(FileBufferStreamTest, CursorValuesTakeTheirSize) {
    char* const start = stream.CreateInternalBuffer(64);
    EXPECT_EQ(start, stream.bufferStart);
    for (int i = 0; i < 5; ++i) stream.BufferWriteDouble(i);
    EXPECT_EQ(stream.bufferCursor - stream.bufferStart, 40);
    stream.bufferCursor = stream.bufferStart;
    stream.BufferWriteChar('c');
    stream.BufferWriteBool(true);
    stream.BufferWriteInt16(-2);
    stream.BufferWriteUint16(0xFFFE);
    stream.BufferWriteInt32(-3);
    stream.BufferWriteUint32(0xFFFFFFFD);
    stream.BufferWriteUint64(~0ULL);
    stream.BufferWriteDouble(0.1);
    EXPECT_EQ(stream.bufferCursor - stream.bufferStart, 30);
    EXPECT_EQ(std::string(start, 6), std::string("c\1\xFE\xFF\xFE\xFF"));
    stream.bufferCursor = stream.bufferStart;
    EXPECT_EQ(stream.BufferReadChar(), 'c');
    EXPECT_TRUE(stream.BufferReadBool());
    EXPECT_EQ(stream.BufferReadInt16(), -2);
    EXPECT_EQ(stream.BufferReadUint16(), 0xFFFE);
    EXPECT_EQ(stream.BufferReadInt32(), -3);
    EXPECT_EQ(stream.BufferReadUint32(), 0xFFFFFFFD);
    EXPECT_EQ(stream.BufferReadUint64(), ~0ULL);
    EXPECT_EQ(stream.BufferReadDouble(), 0.1);
    stream.bufferCursor = stream.bufferStart;
    std::array<char, 3> copy{};
    stream.BufferReadCharArray(2, copy.data());
    EXPECT_STREQ(copy.data(), "c\1");
    EXPECT_EQ(stream.bufferCursor - stream.bufferStart, 2);
}

TEST_F(FileBufferStreamTest, ReadsTheWholeFile) {
    const std::string bytes = counting(200);
    ASSERT_TRUE(openForReading(bytes));
    stream.StreamSeek(50);
    EXPECT_TRUE(stream.ReadFile2Buffer());
    EXPECT_EQ(stream.bufferCursor, stream.bufferStart);
    EXPECT_EQ(std::string(stream.bufferStart, stream.bufferSize), bytes);
    EXPECT_TRUE(stream.IsStreamGood());
}

TEST_F(FileBufferStreamTest, BlockReadsFillTheBufferWhichOnlyGrows) {
    ASSERT_TRUE(openForReading(counting(120)));
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(0, 100));
    EXPECT_EQ(stream.bufferSize, 100U);
    stream.BufferReadUint16();
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(10, 10));
    EXPECT_EQ(stream.bufferSize, 100U);
    EXPECT_EQ(stream.bufferCursor - stream.bufferStart, 2) << "the cursor stays";
    EXPECT_EQ(stream.bufferStart[0], 10);
    EXPECT_EQ(stream.bufferStart[99], 109) << "the whole buffer is filled";
    EXPECT_EQ(stream.LastBlockSize(), 100U);
    EXPECT_TRUE(stream.ReadFileBlock2Buffer(30, 100)) << "cut short";
    EXPECT_FALSE(stream.IsStreamGood());
    EXPECT_EQ(stream.LastBlockSize(), 90U);
    stream.CreateInternalBuffer(100);
    EXPECT_EQ(stream.LastBlockSize(), 0U) << "nothing was read into a new buffer";
    EXPECT_FALSE(stream.ReadFileBlock2Buffer(0, 110));
    EXPECT_EQ(stream.bufferSize, 110U) << "it grows before the stream is looked at";
    EXPECT_EQ(stream.bufferCursor, stream.bufferStart);
}

TEST_F(FileBufferStreamTest, WritesPartsOfTheBuffer) {
    const std::string bytes = counting(100);
    const struct {
        unsigned long long start;
        bool whole;
        unsigned long long count;
        std::string expected;
    } cases[] = {
        {0, false, 20, bytes.substr(0, 20)},
        {0, false, 200, bytes},
        {0, false, 100, bytes},
        {0, true, 3, bytes},
        {90, false, 5, bytes.substr(90, 5)},
        {90, true, 0, bytes.substr(90)},
        {101, true, 0, ""},
    };
    std::memcpy(stream.CreateInternalBuffer(100), bytes.data(), 100);
    stream.BufferReadUint64();
    for (const auto& c : cases) {
        ASSERT_TRUE(openForWriting());
        stream.WriteBuffer2File(c.start, c.whole, c.count);
        EXPECT_EQ(written(), c.expected) << c.start << ' ' << c.whole << ' ' << c.count;
        EXPECT_EQ(stream.bufferCursor - stream.bufferStart, 8);
    }
    ASSERT_TRUE(openForWriting());
    stream.WriteCharArray2File("hello", 5);
    EXPECT_EQ(written(), "hello");
    ASSERT_TRUE(stream.StreamOpen(toWx(file), FileModeRead));
    std::array<char, 6> back{};
    stream.ReadCharArray2File(back.data(), 5);
    EXPECT_STREQ(back.data(), "hello");
}

TEST_F(FileBufferStreamTest, AnExternalBufferStaysTheCallers) {
    std::array<char, 16> block{};
    {
        FileBufferStream borrower;
        borrower.CreateInternalBuffer(100);
        borrower.AttachExternalBuffer(block.data(), block.size());
        EXPECT_TRUE(borrower.externalBuffer);
        EXPECT_EQ(borrower.bufferSize, 16U);
        borrower.BufferWriteUint64(7);
    }
    EXPECT_EQ(block[0], 7);
    stream.AttachExternalBuffer(block.data(), block.size());
    stream.ReleaseBuffer();
    EXPECT_EQ(stream.bufferStart, nullptr);
    EXPECT_EQ(stream.bufferSize, 0U);
    EXPECT_FALSE(stream.externalBuffer);
}

}  // namespace
