#include <regex>

#include "support/ProgramRun.h"

namespace vpc::test {
namespace {

/// Runs the command lines that README and every command's help give as examples.
class ExamplesTest : public ProgramTest {
protected:
    ExamplesTest() {
        for (const std::string scan : {"east.las", "west.las", "east.pts", "west.pts", "east.ptx"})
            expectDone("sample " + scan + " --points 200000 --seed " +
                       (scan[0] == 'e' ? "1" : "2"));
        std::filesystem::create_directory(folder.file("scans"));
        std::filesystem::copy(folder.file("west.las"), folder.file("scans/west.las"));
        write("more.txt", "east.las\n");
        expectDone("prepare --quiet -o site.vpt east.las west.las");
        expectDone("prepare --quiet -o scan.vpt east.las");
    }

    /// The lines of `text` that begin with `indent` and the program's name, whole and without what
    /// stands beside them; those that only show the form of a command and those that open a window
    /// are left out.
    static std::vector<std::string> commands(std::string text, const std::string& indent) {
        text = std::regex_replace(text, std::regex("\\\\\n *"), "");
        const std::regex line("(^|\n)" + indent + "(?:script/run|vpc) (?!viewer)([a-z].*)");
        const std::regex form("\\b(OUT|FILE|SCAN)\\b|\\.\\.\\.");
        std::vector<std::string> found;
        for (std::sregex_iterator i(text.begin(), text.end(), line), end; i != end; ++i) {
            const std::string words = (*i)[2];
            if (!std::regex_search(words, form))
                found.push_back(words.substr(0, words.find("   ")));
        }
        return found;
    }
    /// Puts a file of its kind in place of each that a line reads and nothing has made before.
    void provide(const std::string& line) const {
        static const std::regex name("[\\w./-]+\\.(las|pts|ptx|vpt|ply|xyz|csv|txt)\\b");
        for (std::sregex_iterator i(line.begin(), line.end(), name), end; i != end; ++i) {
            const std::filesystem::path file = folder.file(i->str());
            // A line before may have written what this one writes, which --force alone replaces.
            if (isOutput(line, i->position())) std::filesystem::remove(file);
            if (isOutput(line, i->position()) || std::filesystem::exists(file)) continue;
            std::filesystem::create_directories(file.parent_path());
            const std::string like = (*i)[1] == "vpt" ? "site.vpt" : "east." + (*i)[1].str();
            std::filesystem::copy(folder.file(like), file);
        }
    }
    static bool isOutput(const std::string& line, std::ptrdiff_t at) {
        static const std::regex option("(-o|--output|--image|--points|^sample) *$");
        return std::regex_search(line.substr(0, static_cast<std::size_t>(at)), option);
    }
    /// Runs a line in a shell, as users do.
    void expectWorks(const std::string& line) const {
        provide(line);
        write("line.sh", "vpc() { '" VPC_PROGRAM "' \"$@\"; }\nset -e\nvpc " + line + "\n");
        const ProgramResult result =
            ProgramRun("line.sh", folder.path(), RLIM_INFINITY, "/bin/sh").wait();
        EXPECT_EQ(result.status, 0) << line << "\n" << result.err;
        EXPECT_EQ(result.err.find("none of"), std::string::npos) << line << "\n" << result.err;
    }
};

TEST_F(ExamplesTest, AllWork) {
    const std::string help = run("--help").out;
    std::vector<std::string> lines = commands(help, "  ");
    EXPECT_GT(lines.size(), 5U);
    static const std::regex subcommand("\n  ([a-z]+) {2,}[A-Z]");
    for (std::sregex_iterator i(help.begin(), help.end(), subcommand), end; i != end; ++i)
        for (const std::string& line : commands(run((*i)[1].str() + " --help").out, "  "))
            lines.push_back(line);
    EXPECT_GT(lines.size(), 12U) << "the examples of view, pick and export at least";
    for (const std::string& line : commands(readBytes(VPC_SOURCE "/README.md"), "    "))
        lines.push_back(line);
    EXPECT_GT(lines.size(), 16U);
    for (const std::string& line : lines) expectWorks(line);
}

}  // namespace
}  // namespace vpc::test
