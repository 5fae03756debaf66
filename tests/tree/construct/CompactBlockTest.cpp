#include "tree/construct/CompactBlock.h"

#include <bit>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace vpc::test {
namespace {

class CompactBlockTest : public testing::Test {
protected:
    unsigned drawn(unsigned from, unsigned to) {
        return std::uniform_int_distribution<unsigned>(from, to)(engine_);
    }
    char drawnByte() { return static_cast<char>(drawn(0, 255)); }

    /// A block whose records differ in the bytes that `varying` has a bit for.
    const RecordBlock& fill(unsigned stride, unsigned count, std::uint64_t varying) {
        RecordBlock& block = *block_;
        block.firstArrival = engine_();
        block.format = 3;
        block.stride = static_cast<std::uint16_t>(stride);
        block.count = static_cast<std::uint16_t>(count);
        for (unsigned i = 0; i < count * stride; ++i) {
            const unsigned at = i % stride;
            const bool varies = i < stride || (varying >> at & 1) != 0;
            block.records[i] = varies ? drawnByte() : block.records[at];
        }
        return block;
    }
    std::string written(const RecordBlock& block, bool isCompact) {
        std::string bytes(CompactBlock::mostBytes, '\0');
        const char* const end = CompactBlock::Write(block, isCompact, bytes.data());
        bytes.resize(static_cast<std::size_t>(end - bytes.data()));
        return bytes;
    }
    void expectBack(const RecordBlock& block, const std::string& bytes) {
        const char* const end = bytes.data() + bytes.size();
        ASSERT_EQ(CompactBlock::Read(bytes.data(), end, *read_), end);
        EXPECT_EQ(read_->firstArrival, block.firstArrival);
        EXPECT_EQ(read_->format, block.format);
        ASSERT_EQ(read_->stride, block.stride);
        ASSERT_EQ(read_->count, block.count);
        const auto size = std::size_t{block.count} * block.stride;
        EXPECT_EQ(std::memcmp(read_->records, block.records, size), 0);
    }

    std::mt19937 engine_{1};
    std::unique_ptr<RecordBlock> block_ = std::make_unique<RecordBlock>();
    std::unique_ptr<RecordBlock> read_ = std::make_unique<RecordBlock>();
};

TEST_F(CompactBlockTest, GivesEveryBlockBack) {
    for (unsigned stride = 14; stride <= 58; ++stride) {
        const std::uint64_t all = (1ULL << stride) - 1;
        const std::uint64_t some = (std::uint64_t{engine_()} << 32 | engine_()) & all;
        for (const std::uint64_t varying : {std::uint64_t{0}, all, some, all ^ 1, all >> 1})
            for (const unsigned count : {1U, 2U, drawn(3, 60), RecordBlock::Capacity(stride)}) {
                SCOPED_TRACE(testing::Message() << stride << " " << varying << " " << count);
                const RecordBlock& block = fill(stride, count, varying);
                for (const bool isCompact : {false, true})
                    expectBack(block, written(block, isCompact));
                if (count < 60 || varying == all) continue;
                // Many random bytes differ somewhere.
                const auto kept = static_cast<unsigned>(std::popcount(varying));
                EXPECT_EQ(written(block, true).size(),
                          sizeof(CompactBlock::Header) + stride + count * kept);
            }
    }
}

// What a disk gives back may be anything.
TEST_F(CompactBlockTest, RefusesBytesThatWereNotWrittenSo) {
    for (unsigned i = 0; i < 20000; ++i) {
        const unsigned stride = drawn(14, 58);
        const RecordBlock& block = fill(stride, drawn(1, 5), engine_() & ((1ULL << stride) - 1));
        std::string bytes = written(block, i % 2 == 0);
        if (i % 3 == 0) {
            bytes.resize(drawn(0, static_cast<unsigned>(bytes.size()) - 1));
            // Of its own size, for a reading beyond the end to be noticed.
            const std::vector<char> part(bytes.begin(), bytes.end());
            EXPECT_EQ(CompactBlock::Read(part.data(), part.data() + part.size(), *read_), nullptr);
            continue;
        }
        for (unsigned change = 0; change < 3; ++change)
            bytes[drawn(0, sizeof(CompactBlock::Header) - 1)] = drawnByte();
        const char* const end = bytes.data() + bytes.size();
        const char* const next = CompactBlock::Read(bytes.data(), end, *read_);
        if (next == nullptr) continue;
        EXPECT_LE(next, end);
        EXPECT_LE(read_->count, RecordBlock::Capacity(read_->stride));
    }
    const std::string zeros(4096, '\0');
    EXPECT_EQ(CompactBlock::Read(zeros.data(), zeros.data() + zeros.size(), *read_), nullptr);
}

}  // namespace
}  // namespace vpc::test
