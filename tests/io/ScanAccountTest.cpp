#include "io/ScanAccount.h"

#include <gtest/gtest.h>

#include "io/FileIoFactory.h"
#include "support/LasBuilder.h"
#include "support/ReaderTools.h"

using namespace vpc::test;

namespace {

const std::string pose = "0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
const std::string cell = "1 2 3 .5 6 7 8\n";
const std::string noReturn = "0 0 0 .5 0 0 0\n";

std::string times(std::size_t n, const std::string& text) {
    std::string all;
    while (n-- > 0) all += text;
    return all;
}

/// The bytes of an extended record, which waveforms are, too.
std::string record(std::size_t length) {
    std::string bytes(60 + length, '\7');
    const auto word = static_cast<std::uint64_t>(length);
    std::memcpy(bytes.data() + 20, &word, sizeof word);
    return bytes;
}

/// A scan of three points with more behind them, whose start stands at `startAt` in the header.
std::string las(int minor, const std::string& behind = "", std::size_t startAt = 0,
                std::uint32_t records = 0) {
    LasBuilder file;
    file.versionMinor = minor;
    file.points.assign(3, {1, 2, 3, 4, 5, 6, 7});
    std::string bytes = file.bytes();
    const std::uint64_t start = bytes.size();
    if (startAt != 0) std::memcpy(bytes.data() + startAt, &start, sizeof start);
    if (records != 0) std::memcpy(bytes.data() + 243, &records, sizeof records);
    return bytes + behind;
}

class ScanAccountTest : public testing::Test {
protected:
    /// Measures a scan; returns its sentences, one a line, without the file's name.
    std::string sentences(const std::string& name, const std::string& bytes) {
        const wxString file = toWx(folder.path() / name);
        writeBytes(folder.path() / name, bytes);
        VpcBoundingBoxAxisAligned box;
        wxString message;
        summary = {};
        measured = FileIoFactory::DetermineMultipleBoundingBox(
            {file}, FileIoFactory::GetDataFormat(file), box, message, &summary);
        message += '\n';
        message.Replace(file + ": ", "");
        return message.utf8_string();
    }
    TempFolder folder;
    ScanSummary summary;
    bool measured = false;
};

TEST_F(ScanAccountTest, WholeScansNeedNoWords) {
    const std::pair<const char*, std::string> cases[] = {
        {"a.pts", "2\r\n1 2 3\r\n4 5 6\r\n\r\n  \r\n"},
        {"a.pts", " 2 \t\n1\t2  3 \n\n 4 5 6\t"},
        {"a.pts", "1\r-1.5 +2e3 .5 -1613 255 0 65535.5\r2\r1 2 3 4 5 6 7\r4 5 6 7 8 9 0"},
        {"a.pts", "2\n1 2 3\n4\n5 6\n"},
        {"a.ptx", "2\r\n1\r\n" + pose + cell + noReturn + "1\n1\n" + pose + "1 2 3 4 \n\n\t\n"},
        {"a.ptx", "1 2\n" + pose + cell + "1 2 3 4 5 6 7"},
        {"a.las", las(2)},
        {"a.las", las(3, record(500), 227)},
        {"a.las", las(4, record(5) + record(0), 235, 2)},
        // Values and blanks across the borders of the reader's blocks.
        {"a.pts", "80000\n" + times(80000, "1234.5678 234567.891 345.67 \t\r\n")}};
    for (const auto& [name, bytes] : cases) {
        EXPECT_EQ(sentences(name, bytes), "\n") << name << ' ' << bytes.substr(0, 300);
        EXPECT_TRUE(measured && summary.IsWhole() && summary.scans.size() == 1);
    }
}

TEST_F(ScanAccountTest, TellsOfEverythingThatDidNotBecomePoints) {
    const std::string grid = "4\n1\n" + pose;
    const std::string lacking = " points that it claims, and zeros stand for them\n";
    LasBuilder shortRecords;
    shortRecords.recordLength = 33;
    shortRecords.points.resize(3);
    const struct {
        const char* name;
        std::string bytes;
        unsigned long long points;
        std::string expected;
    } cases[] = {
        {"a.pts", "", 1, "it is empty, and one point was made up\n"},
        {"a.pts", " \r\nX Y Z\r\n1 2 3\r\n", 1,
         "line 2 ('X Y Z') is no count of points, so the scan was not read and one point was made "
         "up\n"},
        {"a.pts", "0\n1 2 3\n", 1,
         "line 1 ('0') is no count of points, so only one point was read\n"},
        {"a.pts", "5\n1 2 3\n4 5 6\n", 5, "its text lacks 3 of the 5" + lacking},
        {"a.pts", "1", 1, "its text lacks 1 of the 1" + lacking},
        {"a.pts", "2\n1 2 3\n4 5", 2,
         "1 point lacks some of its values, and zeros stand for them\n"},
        {"a.pts", "2\n1 2 3\n4 5 6\n-.7 8 9\n\n1 1 1", 2,
         "from line 4 ('-.7 8 9') on, 2 lines beyond the 2 points that it claims were not read\n"},
        {"a.pts", "1\n1 2 3\n2 5 6\n", 3,
         "line 3 ('2 5 6') stands where a count of points belongs, and was taken for one\n"
         "its text lacks 1 of the 3" +
             lacking + "1 point lacks some of its values, and zeros stand for them\n"},
        {"a.pts", "3\n1 2 3\r\n1,5 2,5 \t\xc3\xa4\r\n7 8 9\n", 3,
         "line 3 ('1,5 2,5  \xc3\xa4') holds a value that is no number\n"
         "1 of the 3 points that it claims could not be read, and zeros stand for them\n"
         "from line 3 ('1,5 2,5  \xc3\xa4') on, 2 lines were not read\n"
         "1 point lacks some of its values, and zeros stand for them\n"},
        {"a.pts", "3\n1 2 3\n4 5 6 # wall\n7 8 9\n", 3,
         "line 3 ('4 5 6 # wall') holds a value that is no number\n"
         "1 of the 3 points that it claims could not be read, and zeros stand for them\n"
         "from line 3 ('4 5 6 # wall') on, 2 lines were not read\n"},
        {"a.pts", "3\n1 2 3\n4 5\n6 7 8\n9\n", 3,
         "line 3 ('4 5') has more or fewer values than line 2, so points from there on are mixed "
         "up\n"},
        {"a.pts", "2\n.1 2 3 4 5\n.1 2 3 4 5\n", 2,
         "line 2 ('.1 2 3 4 5') holds 5 values, where a point has 3, 4, 6 or 7, so nothing was "
         "read and 2 points were made up\n"},
        {"a.pts", "2\n\n1 2 3\n4 5 6\n", 23,
         "line 2 ('') holds 0 values, where a point has 3, 4, 6 or 7, so nothing was read and 23 "
         "points were made up\n"},
        {"a.pts", "2\n1 2 nan 0 0 0\n1 2 3 -1 65536 1e30\n", 2,
         "3 reds, greens and blues lie beyond 0 to 65535, and their low 16 bits were kept\n"
         "1 points with a coordinate that is no finite number, or is out of all bounds, were left "
         "out\n"},
        // The line of a fault far behind, whose text is long.
        {"a.pts",
         "60000\n" + times(59999, "1234.5678 234567.891 345.67\r\n") +
             times(8,
                   "1 2 \xc3\xa4"
                   "34 5 "),
         60000,
         "line 60001 ('" +
             times(5,
                   "1 2 \xc3\xa4"
                   "34 5 ") +
             "1 2...') holds a value that is no number\n"
             "from line 60001 ('" +
             times(5,
                   "1 2 \xc3\xa4"
                   "34 5 ") +
             "1 2...') on, 1 line was not read\n"
             "1 point lacks some of its values, and zeros stand for them\n"},
        {"a.ptx", "", 0, "it holds no points\n"},
        {"a.ptx", grid + times(4, noReturn), 0, "it holds no points\n"},
        {"a.ptx", "0\n5\n" + pose, 0,
         "it holds no points\nline 1 ('0') does not begin a grid with cells, so nothing was "
         "read\n"},
        {"a.ptx", grid + cell + noReturn, 1, "its text lacks 2 of the 4 cells that it claims\n"},
        {"a.ptx", grid + cell + "1 2 3 4", 2,
         "its text lacks 2 of the 4 cells that it claims\n"
         "1 point lacks some of its values, and zeros stand for them\n"},
        {"a.ptx", grid + times(4, cell) + "notes\n\nof the crew", 4,
         "from line 15 ('notes') on, 2 lines behind the last grid were not read\n"},
        {"a.ptx", "1\n1\n" + pose + cell + cell, 1,
         "line 12 ('1 2 3 .5 6 7 8') stands where the columns and rows of a grid belong, and was "
         "taken for them\nits text lacks 2 of the 3 cells that it claims\n"},
        {"a.ptx", grid + cell + "1 2 3 4 0.5 0.5 0.5\n" + cell + cell, 4,
         "line 12 ('1 2 3 4 0.5 0.5 0.5') holds a value that is no number or, for a colour, no "
         "whole number\nfrom line 14 ('1 2 3 .5 6 7 8') on, 1 line was not read\n"
         "2 points lack some of their values, and zeros stand for them\n"},
        {"a.ptx", "2\n1\n" + pose + cell + "1 2 3 .5 6 7 8 0 0 1\n", 2,
         "line 12 ('1 2 3 .5 6 7 8 0 0 1') has more or fewer values than a cell, so points from "
         "there on are mixed up\n"
         "from line 12 ('1 2 3 .5 6 7 8 0 0 1') on, 1 line behind the last grid was not read\n"},
        {"a.las", las(2).substr(0, las(2).size() - 35), 1,
         "2 of the 3 points that the las header claims are missing\n"},
        {"a.las", las(2, std::string(34, 'x')), 3,
         "nothing in its header explains 34 bytes behind its points\n"},
        {"a.las", las(4, record(5) + "?", 235, 1), 3,
         "nothing in its header explains 1 byte behind its points\n"},
        {"a.las", shortRecords.bytes(), 3,
         "3 points lack some of their values, and zeros stand for them\n"},
        {"a.las", LasBuilder{}.bytes(), 0, "it holds no points\n"}};
    for (const auto& c : cases) {
        EXPECT_EQ(sentences(c.name, c.bytes), c.expected) << c.bytes.substr(0, 300);
        EXPECT_TRUE(measured && !summary.IsWhole());
        EXPECT_EQ(summary.points, c.points) << c.bytes.substr(0, 300);
    }
}

TEST_F(ScanAccountTest, ACountThatCannotBeTrueIsExplained) {
    EXPECT_EQ(sentences("a.pts", "1\n1 2 3\n636122.5 4 5\n"),
              "the point count 636122 cannot be true, the file has fewer bytes\n"
              "line 3 ('636122.5 4 5') stands where a count of points belongs, and was taken "
              "for one\n");
    EXPECT_FALSE(measured);
}

}  // namespace
