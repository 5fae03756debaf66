#include "core/util/DirectWriter.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <iterator>
#include <list>
#include <random>
#include <string>
#include <utility>

#include <gtest/gtest.h>
#include <sys/resource.h>

#include "core/util/DirectRanges.h"
#include "core/util/IoError.h"
#include "support/TempFolder.h"

namespace vpc::test {
namespace {

// Ranges of all lengths lie side by side, and some are open at the same time. They come faster than
// a disk takes them, so that parts go to the cache, too.
TEST(DirectWriter, WritesEveryByteOfEveryRangeToItsPlace) {
    const TempFolder folder;
    const std::string path = folder.file("whole");
    std::mt19937 engine(1);
    std::string expected(200ULL << 20U, '\0');
    for (std::size_t i = 0; i + 4 <= expected.size(); i += 4) {
        const auto value = engine();
        std::memcpy(expected.data() + i, &value, 4);
    }
    writeBytes(path, "");
    auto writer = DirectWriter::Open(path, expected.size(), "whole");
    if (writer == nullptr) GTEST_SKIP() << "no direct writing here";
    DirectRanges ranges(std::move(writer));
    struct Open {
        DirectRange range;
        std::size_t at, end;
    };
    std::list<Open> open;
    const std::size_t lengths[] = {1, 16, 4095, 4096, 4097, 9000, 70000, 1U << 20U, 3000000};
    const auto drawn = [&](std::size_t from) { return std::size_t{engine()} % from; };
    for (std::size_t next = 0; next != expected.size() || !open.empty();) {
        if (next != expected.size() && open.size() < 5) {
            // Some end where a part does.
            const auto toPart = DirectWriter::partSize - next % DirectWriter::partSize;
            const auto wanted =
                drawn(5) == 0 ? toPart : lengths[drawn(std::size(lengths))] + drawn(30);
            const auto length = std::min(wanted, expected.size() - next);
            open.push_back({ranges.Begin(next), next, next + length});
            next += length;
        }
        const auto chosen =
            std::next(open.begin(), static_cast<std::ptrdiff_t>(drawn(open.size())));
        const auto some = std::min(drawn(400000), chosen->end - chosen->at);
        chosen->range.Append(expected.data() + chosen->at, some);
        chosen->at += some;
        if (chosen->at != chosen->end) continue;
        ranges.End(std::move(chosen->range));
        open.erase(chosen);
    }
    ranges.Finish();
    EXPECT_TRUE(readBytes(path) == expected);
}

TEST(DirectWriter, TellsOnceWhyAPartCannotBeWritten) {
    const TempFolder folder;
    const std::string path = folder.file("limited");
    writeBytes(path, "");
    constexpr std::size_t parts = 20;
    const auto writer = DirectWriter::Open(path, parts * DirectWriter::partSize, "limited");
    if (writer == nullptr) GTEST_SKIP() << "no direct writing here";
    rlimit whole{};
    getrlimit(RLIMIT_FSIZE, &whole);
    const rlimit half{parts / 2 * DirectWriter::partSize, whole.rlim_max};
    std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &half);
    int reason = 0;
    try {
        for (std::size_t i = 0; i < parts; ++i) {
            DirectWriter::PartHandle part = writer->Take();
            std::fill_n(part->bytes.get(), DirectWriter::partSize, 'x');
            part->size = DirectWriter::partSize;
            part->position = i * DirectWriter::partSize;
            writer->Write(std::move(part));
        }
        writer->Finish();
    } catch (const IoError& error) {
        reason = error.SystemReason();
        EXPECT_EQ(error.File(), "limited");
    }
    setrlimit(RLIMIT_FSIZE, &whole);
    EXPECT_EQ(reason, EFBIG);
}

}  // namespace
}  // namespace vpc::test
