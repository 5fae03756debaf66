#include "tree/construct/SpillFile.h"

#include <filesystem>
#include <string>
#include <system_error>
#include <vector>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/TempFolder.h"

namespace vpc::test {
namespace {

/// The room that the files of a folder take which have no name any more.
unsigned long long roomOfNameless(const std::string& folder) {
    unsigned long long room = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry, gone).string();
        struct stat status = {};
        if (target.find(folder) == 0 && stat(entry.path().c_str(), &status) == 0)
            room += static_cast<unsigned long long>(status.st_blocks) * 512;
    }
    return room;
}

TEST(SpillFile, GivesBackWhatIsFreedAndNothingElse) {
    const TempFolder folder;
    if (!SpillFile::GivesRoomBack(folder.path().string())) GTEST_SKIP() << "no holes here";
    SpillFile file(folder.file("spill"));
    struct Piece {
        unsigned long long position;
        std::string bytes;
        unsigned zone;
    };
    std::vector<Piece> pieces;
    // Of two zones in turn, more than a stretch each, one piece larger than that.
    for (unsigned i = 0; i < 200; ++i) {
        const std::size_t size = i == 60 ? 20U << 20U : 200000 + 400 * i;
        Piece piece{0, std::string(size, static_cast<char>(i)), i % 2};
        piece.position = file.Reserve(size, piece.zone);
        file.Write(piece.position, piece.bytes.data(), size);
        pieces.push_back(piece);
    }
    const unsigned long long whole = roomOfNameless(folder.path().string());
    EXPECT_GT(whole, 16ULL << 20);
    unsigned long long freed = 0;
    for (unsigned i = 0; i < 200; i += 2) {  // in another order than they were written
        const Piece& piece = pieces[i * 37 % 200];
        file.Free(piece.position, piece.bytes.size(), piece.zone);
        freed += SpillFile::Aligned(piece.bytes.size());
        EXPECT_LE(roomOfNameless(folder.path().string()) + freed, whole + whole / 8);
    }
    for (const Piece& piece : pieces) {
        if (piece.zone == 0) continue;
        std::string bytes(piece.bytes.size(), ' ');
        file.Read(piece.position, bytes.data(), bytes.size());
        EXPECT_TRUE(bytes == piece.bytes) << piece.position;
    }
}

// A disk takes its time for every hole.
TEST(SpillFile, MakesNoSmallHolesWhereALargeOneWillCome) {
    const TempFolder folder;
    if (!SpillFile::GivesRoomBack(folder.path().string())) GTEST_SKIP() << "no holes here";
    SpillFile file(folder.file("spill"));
    const std::string bytes(16384, 'x');
    constexpr unsigned pieces = 1280;
    for (unsigned i = 0; i < pieces; ++i)
        file.Write(file.Reserve(bytes.size(), 0), bytes.data(), bytes.size());
    const unsigned long long whole = file.BytesOnDisk();
    // Every second piece of the first two megabytes, and then the others.
    for (unsigned i = 0; i < 128; i += 2) file.Free(i * bytes.size(), bytes.size(), 0);
    file.Free(pieces / 2 * bytes.size(), bytes.size(), 1);
    EXPECT_EQ(file.BytesOnDisk(), whole);
    for (unsigned i = 1; i < 128; i += 2) file.Free(i * bytes.size(), bytes.size(), 0);
    file.Free(pieces / 2 * bytes.size() + bytes.size(), bytes.size(), 1);
    EXPECT_EQ(file.BytesOnDisk(), whole - (2U << 20U));
    EXPECT_LE(roomOfNameless(folder.path().string()), whole - (2U << 20U));
}

}  // namespace
}  // namespace vpc::test
