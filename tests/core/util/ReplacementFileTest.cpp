#include "core/util/ReplacementFile.h"

#include <filesystem>
#include <map>
#include <string>

#include <gtest/gtest.h>

#include "core/util/IoError.h"
#include "io/TextFileWriter.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using vpc::test::readBytes;
using vpc::test::toWx;
using vpc::test::writeBytes;

class ReplacementFileTest : public ::testing::Test {
protected:
    void Replace(const std::string& name, const std::string& text) const {
        vpc::ReplacementFile file(toWx(folder.file(name)));
        file.Write("....");
        file.Rewind();
        file.Write(text);
        file.Commit();
    }
    std::size_t Files() const { return folder.names().size(); }

    vpc::test::TempFolder folder;
};

TEST_F(ReplacementFileTest, FollowsLinksAlsoToNamesThatDoNotExistYet) {
    writeBytes(folder.file("old"), "older");
    fs::create_symlink("old", folder.path() / "link");
    fs::create_symlink("link", folder.path() / "link to link");
    fs::create_symlink(folder.path() / "new", folder.path() / "dangling");
    Replace("link to link", "newer");
    Replace("dangling", "first");
    EXPECT_EQ(readBytes(folder.file("old")), "newer");
    EXPECT_EQ(readBytes(folder.file("new")), "first");
    EXPECT_TRUE(fs::is_symlink(folder.path() / "link to link"));
    EXPECT_TRUE(fs::is_symlink(folder.path() / "dangling"));
    vpc::ReplacementFile(toWx(folder.file("empty"))).Commit();
    EXPECT_EQ(Files(), 6U) << "nothing temporary is left";
}

/// The sentence of the failure that `work` ends with.
template <class Work>
std::string failureOf(const Work& work) {
    try {
        work();
    } catch (const vpc::IoError& error) {
        return error.what();
    }
    return "none";
}

TEST_F(ReplacementFileTest, TellsWhatCannotBeReplacedOrWrittenAndWhy) {
    fs::create_symlink("/dev/full", folder.path() / "device");
    fs::create_symlink("round", folder.path() / "round");
    const std::string base = folder.path().string() + "/";
    for (const auto& [name, sentence] : std::map<std::string, std::string>{
             {"device", "/dev/full is no regular file; choose another name"},
             {".", base + ". is no regular file; choose another name"},
             {"round", base + "round cannot be written (Too many levels of symbolic links)"},
             {"none/x", base + "none/x cannot be written (No such file or directory)"}})
        EXPECT_EQ(failureOf([&, target = name] { Replace(target, "text"); }), sentence);
    EXPECT_EQ(failureOf([] {
                  vpc::TextFileWriter file("/dev/full");
                  file << 1.5;
                  file.Close();
              }),
              "/dev/full cannot be written (No space left on device)");
}

}  // namespace
