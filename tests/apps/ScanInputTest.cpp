#include <filesystem>

#include "support/LasBuilder.h"
#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

namespace fs = std::filesystem;
using testing::AllOf;
using testing::HasSubstr;

constexpr const char* onePoint = "1\n1 2 3\n";

class ScanInputTest : public ProgramTest {
protected:
    ScanInputTest() {
        write("a.pts", onePoint);
        write("b.pts", "2\n4 5 6\n7 8 9\n");
    }
    std::string treeOf(const std::string& arguments) const {
        expectDone("prepare --quiet -o t.vpt " + arguments);
        return read("t.vpt");
    }
    static std::string las(int points, std::uint32_t claimed) {
        LasBuilder file;
        for (int i = 0; i < points; ++i) file.points.push_back({i, 2 * i, 7});
        file.legacyCount = claimed;
        return file.bytes();
    }
};

TEST_F(ScanInputTest, ContentDecidesWhatAFileIs) {
    const std::string scan = las(3, 3);
    write("s.las", scan);
    const std::string tree = treeOf("s.las");
    for (const char* name : {"s.Las", "s.pts", "s", "s.vpt"}) {
        write(name, scan);
        EXPECT_EQ(treeOf(name), tree) << name;
    }
    write("grid.pts",
          "1\n1\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n1 2 3 0.5\n");
    fs::copy(folder.file("grid.pts"), folder.file("grid.ptx"));
    EXPECT_EQ(treeOf("grid.pts"), treeOf("grid.ptx"));
    std::string laz = scan;
    laz[104] = static_cast<char>(laz[104] | 0x80);
    write("it's.laz", laz);
    write("a.e57", "ASTM-E57\1\0\0");
    write("a.pts.gz", "\x1f\x8b\x08");
    write("a.pcd", "# .PCD v0.7\nFIELDS x y z\n");
    write("a.ply", "ply\nformat ascii 1.0\n");
    write("a.bin", std::string("1 2 3\0\1\2", 8));
    write("wide.txt", std::string("\xff\xfe"
                                  "1\0 \0",
                                  6));
    treeOf("a.pts");
    const struct {
        const char* file;
        const char* is;
        const char* command;
    } kinds[] = {
        {"it's.laz", "is a compressed LAS file (LAZ)",
         "laszip -i 'it'\\''s.laz' -o 'it'\\''s.las'"},
        {"a.e57", "is an E57 file", "pdal translate a.e57 a.las"},
        {"a.pts.gz", "is compressed with gzip", "gunzip a.pts.gz"},
        {"a.pcd", "is a PCD file", "pdal translate a.pcd a.las"},
        {"a.ply", "is a PLY file", "pdal translate a.ply a.las"},
        {"wide.txt", "is a text in UTF-16", "iconv -f UTF-16 -t UTF-8 wide.txt -o wide.utf8.pts"},
        {"a.bin", "is a file of no kind that vpc knows", ""}};
    for (const auto& kind : kinds) {
        for (const std::string command : {"prepare -o o.vpt ", "info "}) {
            expectFailure(command + "\"" + kind.file + "\"", 1, kind.is);
            expectFailure(command + "\"" + kind.file + "\"", 1, kind.command);
        }
    }
    expectFailure("prepare -o o.vpt t.vpt", 1, "'t.vpt' is a point tree file");
    for (const char* command : {"info", "verify", "view", "pick --at 0,0,0", "export -o o.ply"}) {
        expectFailure(std::string(command) + " s.las", 1,
                      "is a LAS scan and no tree file; prepare it first: vpc prepare -o s.vpt");
        expectFailure(std::string(command) + " s.vpt", 1, "is a LAS scan");
        expectFailure(std::string(command) + " a.pts", 1, "vpc prepare -o a.vpt a.pts");
    }
    fs::rename(folder.file("t.vpt"), folder.file("t.tree"));
    expectFailure("info t.tree", 1, "rename it");
}

TEST_F(ScanInputTest, TakesFoldersAndLists) {
    fs::create_directories(folder.file("scans/deeper"));
    fs::create_directories(folder.file("empty"));
    write("scans/2.PTS", read("b.pts"));
    write("scans/1.xyz", "1 2 3\n");
    write("scans/.hidden.pts", "no scan");
    write("scans/notes.md", "no scan");
    write("scans/3.laz", "no scan");
    write("scans/deeper/4.pts", "no scan");
    const std::string tree = treeOf("a.pts b.pts");
    EXPECT_EQ(treeOf("scans"), tree);
    EXPECT_THAT(run("prepare -o t.vpt scans/").err, HasSubstr("also holds '3.laz', left out"));
    write("scans/all.list", "\xef\xbb\xbf# east\r\n\r\n  ../a.pts \r\n" + folder.file("b.pts"));
    EXPECT_EQ(treeOf("@scans/all.list"), tree);
    write("folder.list", "scans\n");
    EXPECT_EQ(treeOf("@folder.list"), tree);
    // What is there twice is read once.
    fs::create_symlink("a.pts", folder.file("link.pts"));
    const ProgramResult twice = run("prepare -o t.vpt a.pts link.pts scans/../b.pts b.pts a.pts");
    EXPECT_EQ(read("t.vpt"), tree);
    EXPECT_THAT(twice.err, AllOf(HasSubstr("'a.pts' and 'link.pts' are the same file"),
                                 HasSubstr("'scans/../b.pts' and 'b.pts' are the same file"),
                                 HasSubstr("'a.pts' is given twice")));
    write("none.list", "# nothing\n");
    expectFailure("prepare -o t.vpt @none.list", 1, "the list 'none.list' names no scan");
    expectFailure("prepare -o t.vpt @missing.list", 1, "the list 'missing.list' cannot be read (");
    expectFailure("prepare -o t.vpt empty", 1, "the folder 'empty' holds no scan");
}

TEST_F(ScanInputTest, NamesAllBadScansAndCanLeaveThemOut) {
    write("bad.pts", "3\n1 2 3\n");
    write("word.csv", "1;2;3\n1;x;3\n");
    write("empty.pts", "");
    write("s.las", las(3, 3));
    const std::string tree = treeOf("a.pts b.pts");
    const std::string scans = "a.pts none.pts bad.pts empty.pts word.csv s.las b.pts";
    const ProgramResult refused = run("prepare --quiet -o o.vpt " + scans);
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(
        refused.err,
        "vpc prepare: 5 of 7 scans cannot be used\n"
        "  'none.pts' does not exist; check the name\n"
        "  'bad.pts' claims 3 points in line 1 and has 1; get a complete copy\n"
        "  'empty.pts' is empty; get a complete copy or leave it out\n"
        "  'word.csv' holds '1;x;3' in line 2, where 'x' is no number; correct it\n"
        "  's.las' is of another format (LAS) than 'a.pts' (PTS); prepare scans of one format "
        "at a time\n"
        "--allow-incomplete takes the points that are there and --skip-bad leaves out such "
        "scans; 'o.vpt' was not touched\n");
    const ProgramResult skipped = run("prepare --quiet --skip-bad -o t.vpt " + scans);
    EXPECT_EQ(skipped.status, 0);
    EXPECT_EQ(read("t.vpt"), tree);
    EXPECT_THAT(
        skipped.err,
        AllOf(HasSubstr("warning: left out: 'bad.pts' claims 3"),
              HasSubstr("warning: the points' scan indices count the scans that are read (2)")));
    expectFailure("prepare --skip-bad -o o.vpt none.pts bad.pts", 1, "2 of 2 scans cannot be used");
    EXPECT_FALSE(fs::exists(folder.file("o.vpt")));
}

TEST_F(ScanInputTest, RefusesALasThatIsNotWhole) {
    write("whole.las", las(3, 3));
    write("short.las", las(3, 5));
    write("none.las", las(0, 0));
    expectFailure("prepare -o t.vpt whole.las short.las", 1, "'short.las' lacks 2 of the 5 points");
    expectFailure("prepare -o t.vpt whole.las none.las", 1, "holds no points; get a complete copy");
    const ProgramResult result =
        run("prepare --allow-incomplete -o t.vpt none.las whole.las short.las");
    EXPECT_EQ(result.status, 0);
    EXPECT_THAT(result.err, AllOf(HasSubstr("left out: 'none.las'"), HasSubstr("2 of the 5")));
    EXPECT_THAT(result.out, HasSubstr("points  6\n"));
}

}  // namespace
}  // namespace vpc::test
