#include <filesystem>
#include <random>

#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

using testing::HasSubstr;
using Row = std::vector<std::string>;

/// The numbers of a text scan, with decimal points: the rows of a header and of points.
struct Scan {
    std::vector<std::vector<Row>> blocks;
    bool isGrid = false;
};

/// A way to write a scan.
struct Dialect {
    bool mark = false;
    /// 0: none; 1: comments and the names of the columns; 2: names of columns in another order,
    /// with one more.
    int header = 0;
    std::string between = " ";
    bool decimalComma = false;
    std::string lineEnd = "\n";
    bool count = true;

    std::string Name() const {
        return (mark ? "mark, header " : "header ") + std::to_string(header) + ", between '" +
               between + (decimalComma ? "', decimal comma, " : "', ") +
               (lineEnd == "\n"   ? "LF, "
                : lineEnd == "\r" ? "CR, "
                                  : "CRLF, ") +
               (count ? "count" : "no count");
    }
};

Scan makeScan(std::size_t columns, bool isGrid, unsigned seed) {
    std::mt19937 engine(seed);
    const auto number = [&](int decimals) {
        std::string digits = std::to_string(engine() % 4000000) + "." +
                             std::to_string(1000000000 + engine()).substr(1);
        if (engine() % 2 == 0) digits = "-" + digits;
        if (engine() % 8 == 0) digits += engine() % 2 == 0 ? "e-03" : "E+2";
        return decimals == 0 ? std::to_string(engine() % 256) : digits;
    };
    Scan scan;
    scan.isGrid = isGrid;
    for (int b = 0; b < 2; ++b) {
        std::vector<Row> rows;
        const std::size_t points = 2 + engine() % 6;
        if (isGrid) {
            rows = {{std::to_string(points)}, {"1"},
                    {"1.5", "2", "3"},        {"1", "0", "0"},
                    {"0", "1", "0"},          {"0", "0", "1"},
                    {"1", "0", "0", "0"},     {"0", "1", "0", "0"},
                    {"0", "0", "1", "0"},     {"0.5", "-2.25", "1e3", "1"}};
        } else {
            rows = {{std::to_string(points)}};
        }
        for (std::size_t i = 0; i < points; ++i) {
            Row row;
            for (std::size_t c = 0; c < columns; ++c)
                row.push_back(number(columns >= 6 && c + 3 >= columns ? 0 : 1));
            rows.push_back(row);
        }
        scan.blocks.push_back(rows);
    }
    return scan;
}

std::string textOf(const Scan& scan, const Dialect& dialect) {
    const std::size_t columns = scan.blocks[0].back().size();
    const Row names = columns == 3   ? Row{"X", "Y", "Z"}
                      : columns == 4 ? Row{"X", "Y", "Z", "Intensity"}
                      : columns == 6 ? Row{"X", "Y", "Z", "R", "G", "B"}
                                     : Row{"X_coord", "northing", "H", "I", "Red", "Green", "Blue"};
    const bool mixed = dialect.header == 2 && !scan.isGrid;
    std::string text = dialect.mark ? "\xef\xbb\xbf" : "";
    const auto add = [&](Row row, const std::string& extra, bool isPoint) {
        if (mixed && isPoint) {
            std::reverse(row.begin(), row.end());
            row.insert(row.begin() + 1, extra);
        }
        for (std::size_t i = 0; i < row.size(); ++i)
            text += (i == 0 ? "" : dialect.between) + row[i];
        text += dialect.lineEnd;
    };
    const auto addNames = [&](const std::string& quote, const std::string& unit) {
        Row quoted;
        for (const std::string& name : names) quoted.push_back(quote + name + unit + quote);
        add(quoted, quote + "Class" + quote, true);
    };
    if (dialect.header == 1) {
        text += "# made by a scanner, 3.5 m up" + dialect.lineEnd + "//";
        if (scan.isGrid)
            add({"a grid"}, "", false);
        else
            addNames("", "");
    } else if (mixed) {
        addNames("\"", dialect.between == " " ? "" : " [m]");
    }
    for (const auto& block : scan.blocks) {
        for (std::size_t i = scan.isGrid || dialect.count ? 0 : 1; i < block.size(); ++i) {
            Row row = block[i];
            if (dialect.decimalComma)
                for (std::string& value : row) std::replace(value.begin(), value.end(), '.', ',');
            add(row, "7", i != 0);
        }
        if (dialect.header != 0) text += dialect.lineEnd;  // a blank line
    }
    return text;
}

class TextDialectTest : public ProgramTest {
protected:
    std::string treeOf(const std::string& arguments) const {
        const ProgramResult result = run("prepare --max-points 20 -o t.vpt " + arguments);
        EXPECT_EQ(result.status, 0) << arguments << "\n" << result.err;
        return read("t.vpt");
    }
};

TEST_F(TextDialectTest, EveryDialectGivesTheTreeOfThePlainText) {
    std::vector<Dialect> dialects;
    for (const bool mark : {false, true})
        for (const int header : {0, 1, 2})
            for (const char* between : {" ", "\t", " \t ", ",", ", ", ";", " ; "})
                for (const bool comma : {false, true})
                    for (const char* lineEnd : {"\n", "\r\n", "\r"})
                        for (const bool count : {true, false})
                            if (!comma || std::string(between).find(',') == std::string::npos)
                                dialects.push_back({mark, header, between, comma, lineEnd, count});
    const std::pair<std::size_t, bool> forms[] = {{3, false}, {4, false}, {6, false},
                                                  {7, false}, {4, true},  {7, true}};
    for (const auto& [columns, isGrid] : forms) {
        // All dialects go into one run, and only where that fails into one each.
        std::string plain, others;
        for (std::size_t i = 0; i < dialects.size(); ++i) {
            Scan scan = makeScan(columns, isGrid, static_cast<unsigned>(i));
            if (!dialects[i].count && !isGrid) scan.blocks.pop_back();
            const std::string name = std::to_string(i);
            write("plain" + name + (isGrid ? ".ptx" : ".pts"), textOf(scan, {}));
            write("other" + name + ".txt", textOf(scan, dialects[i]));
            plain += " plain" + name + (isGrid ? ".ptx" : ".pts");
            others += " other" + name + ".txt";
        }
        const std::string expected = treeOf("--text strict" + plain);
        EXPECT_GT(expected.size(), 54 * 2 * dialects.size());
        if (treeOf(others) == expected) continue;
        for (std::size_t i = 0; i < dialects.size(); ++i) {
            const std::string name = std::to_string(i);
            EXPECT_EQ(treeOf("plain" + name + (isGrid ? ".ptx" : ".pts")),
                      treeOf("other" + name + ".txt"))
                << columns << (isGrid ? " of PTX, " : " of PTS, ") << dialects[i].Name();
        }
        ADD_FAILURE() << "the trees of all scans together differ";
    }
}

TEST_F(TextDialectTest, SaysWhatItReads) {
    write("a.csv",
          "\xef\xbb\xbf"
          "\"Class\";\"Y [m]\";\"X [m]\";\"Z [m]\"\r\n"
          "2;1,5;4;5\r\n# half\r\n2;1,5D+1;.5e0;1\r\n");
    expectFailure("prepare -o t.vpt a.csv", 1,
                  "holds '2;1,5D+1;.5e0;1' in line 4, where '.5e0' is");
    write("a.csv",
          "\xef\xbb\xbf"
          "\"Class\";\"Y [m]\";\"X [m]\";\"Z [m]\"\r\n"
          "2;1,5;4;5\r\n# half\r\n2;1,5D+1;-7;1;\r\n");
    EXPECT_THAT(run("prepare -o t.vpt a.csv").err,
                HasSubstr("'a.csv': a byte order mark, 2 header or comment lines skipped, columns "
                          "taken by their names, 'class' left out, semicolons between values, a "
                          "decimal comma, no count line: 2 points\n"));
    EXPECT_EQ(run("prepare --quiet -o t.vpt a.csv").err, "");
    write("b.pts", "2\n4 1.5 5\n-7 15 1\n");
    EXPECT_EQ(treeOf("a.csv"), treeOf("b.pts"));
    EXPECT_TRUE(folder.holdsOnly({"a.csv", "b.pts", "t.vpt"}));
    expectFailure("prepare --text strict -o t.vpt a.csv", 1, "'a.csv' is not plain text (a byte");
    write("c.pts", "2\n4 1.5 5\n# half\n-7 15 1\n");
    EXPECT_EQ(treeOf("c.pts"), treeOf("b.pts"));
    expectFailure("prepare --text strict -o t.vpt c.pts", 1,
                  "plain text: it holds '# half' in line 3");
}

TEST_F(TextDialectTest, RefusesWhatIsDoubtfulWithItsLine) {
    std::string lines = "1000\n";
    for (int i = 0; i < 999; ++i) lines += "1 2 3\n";
    const std::string grid =
        "1\n2\n0 0 0\n1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
    const struct {
        std::string text;
        const char* sentence;
    } cases[] = {
        {"2\n1 2 3\n1 2 x3\n",
         "holds '1 2 x3' in line 3, where 'x3' is no number; correct it; --allow"},
        {lines + "4 5\x1b[m 6\n", "holds '4 5\\x1b[m 6' in line 1001, where '5\\x1b[m' is"},
        {"2\n1 2 3\n1 2 3 4\n", "'1 2 3 4' in line 3, which has 4 values where the lines before"},
        {"1,2,3,4,5,6\n1,2,3,4,5,6\n", "in line 1, where commas may separate"},
        {"1,5, 2,5, 3,5, 4\n", "holds '1,5, 2,5, 3,5, 4' in line 1, where commas may separate"},
        {"1,234 5.678 2\n1,234 5.678 2\n", "in line 1, which mixes points and commas"},
        {"1,234,5 5,678 2\n", "'1,234,5 5,678 2' in line 1, which is no line of numbers"},
        {"1\n1 2 3 4 5\n",
         "holds 5 values in line 2 ('1 2 3 4 5'), where a point has 3, 4, 6 or 7"},
        {"//X Y Z R G B\n1 2 3\n", "holds 3 values in line 2 ('1 2 3'), where line 1 names 6"},
        {"3\n1 2 3\n1 2 3\n", "claims 3 points in line 1 and has 2; get a complete copy; --allow"},
        {"1\n1 2 3\n1 2 3\n1\n1 2 3\n", "claims 1 point in line 1 and has 2"},
        {"1\n1 2 3\n99999999999999999999\n1 2 3\n", "in line 3, which is too large for a count"},
        {"12.5\n1 2 3\n", "holds '12.5' in line 1, which is no line of numbers"},
        {"0x10 2 3\n", "holds '0x10 2 3' in line 1"},
        {"5\n", "holds a count in line 1 and no points"},
        {"\n \n", "holds nothing but blank lines"},
        {"Id;X;Y;Z\nP1;1;2;3\n",
         "holds 'P1;1;2;3' in line 2, which may be a point whose first value is no number"},
        {"x;y;z\n;2;3\n7;8;9\n", "holds ';2;3' in line 2, which may be a point whose first"},
        {"1 2 3 0.1 -0.5 0.9\n", "whose last three values are no colours from 0 to 65535"},
        {"1,5,2,5,3,5,100\n", "where commas may separate numbers or be decimal"},
        {"Dear all\n", "holds 'Dear all' in line 1, which is no line of a scan"},
        {"1\n1 2 3\n" + std::string(2000000, '\0'), "no end of line in 1048576 bytes after line 2"},
        {grid + "1 2 3 0.5\n", "claims 2 points in line 1 and has 1"},
        {grid + "1 2 3 0.5\n1 2 3 0.5\n1 2 3 0.5\n", "claims 2 points in line 1 and has 3"},
        {grid + "1 2 3\n", "'1 2 3' in line 11, which has 3 values where a point has 4 or 7"},
        {grid + "1 2 3 1 0 0 0\n1 2 3 1 0 0.5 0\n",
         "in line 12, where a colour is no whole number"},
        {"1\n2\n0 0 0\n1 0\n", "holds '1 0' in line 4, where the scanner's X axis is expected"},
        {"1\n2\n0 0 0\n", "ends where the scanner's X axis is expected"}};
    for (const auto& c : cases) {
        write("a.txt", c.text);
        expectFailure("prepare -o t.vpt a.txt", 1, c.sentence);
    }
    EXPECT_TRUE(folder.holdsOnly({"a.txt"}));
}

TEST_F(TextDialectTest, AllowIncompleteTakesThePointsThatAreThere) {
    const std::string points = "1 2 3 9 9 9\n4 5 6 9 9 9\n-7 8 9 9 9 9\n";
    write("good.pts", "3\n" + points);
    const std::string grid = "1 0 0\n0 1 0\n0 0 1\n1 0 0 0\n0 1 0 0\n0 0 1 0\n0 0 0 1\n";
    const std::string cells = "1 2 3 0.5\n4 5 6 0.5\n-7 8 9 0.5\n";
    write("good.ptx", "3\n1\n0 0 0\n" + grid + cells);
    const struct {
        std::string text;
        const char* warning;
        const char* good;
    } cases[] = {
        {"5\n" + points, "lacks 2 points", "good.pts"},
        {"1\n" + points, "has 2 points more", "good.pts"},
        {"5\n1 2 3 9 9 9\nfoo\n1 2\n0\n" + points.substr(12),
         "has 2 lines left out that cannot be read: 'foo' in line 3, which is no", "good.pts"},
        {"2\n5\n0 0 0\n" + grid + "1 2 3 0.5 7\n" + cells, "lacks 6 points", "good.ptx"},
        {"2\n1\n0 0 0\n" + grid + cells + "2\n2\n0 0 0\n1 0 0\n", "has 1 point more", "good.ptx"},
        {"3\n1\n0 0 0\n" + grid + cells + "2\n2\n0 0 0\n", "lacks 4 points", "good.ptx"}};
    for (const auto& c : cases) {
        write("bad.txt", c.text);
        expectFailure("prepare -o t.vpt bad.txt", 1, "--allow-incomplete");
        const ProgramResult result =
            run("prepare --max-points 20 --quiet --allow-incomplete -o t.vpt bad.txt");
        EXPECT_THAT(result.err, HasSubstr(std::string("warning: 'bad.txt' ") + c.warning));
        const std::string tree = read("t.vpt");
        EXPECT_TRUE(tree == treeOf(c.good)) << c.warning;
    }
    // Colours that the tree file cannot hold as they are.
    write("odd.pts", "3\n4 5 6 255.0 65535 7e1\n1 2 3 0.5 0.25 1\n7 8 9 -1 0 0\n");
    EXPECT_THAT(run("prepare -o t.vpt odd.pts").err,
                HasSubstr("colours that are no whole numbers from 0 to 65535 in 2 lines, line 3"));
}

}  // namespace
}  // namespace vpc::test
