#include "core/util/FileTools.h"

#include <filesystem>
#include <string>

#include <gtest/gtest.h>

#include "support/LocaleGuard.h"
#include "support/TempFolder.h"

namespace {

namespace fs = std::filesystem;
using vpc::test::TempFolder;
using vpc::test::toWx;
using vpc::test::writeBytes;

TEST(FileTools, ConvertsPathsInEveryLocale) {
    const std::string utf8 = "/data/Größe \u70b9\U0001F600.las";
    const wxString wide = wxString::FromUTF8(utf8);
    for (const char* name : {"C", "C.UTF-8", "de_DE.UTF-8"}) {
        const vpc::test::LocaleGuard locale(name);
        if (!locale.isSet()) continue;
        EXPECT_EQ(FileTools::ToNativePath(wide), utf8) << name;
        EXPECT_EQ(FileTools::FromNativePath(utf8), wide) << name;
        EXPECT_EQ(FileTools::FromNativePath("\xe4.las"), wxString(L"\u00e4.las")) << name;
    }
}

std::string utf16(const std::string& ascii, bool bigEndian) {
    std::string bytes = bigEndian ? "\xFE\xFF" : "\xFF\xFE";
    for (const char c : ascii) bytes += bigEndian ? std::string{'\0', c} : std::string{c, '\0'};
    return bytes;
}

TEST(FileTools, CountsTokensAndLines) {
    const std::string lines = "1 2\t 3 \r\n\r\nfour\rfive 5\n \t \nlast one";
    std::string giant;  // of many pieces that are read at a time
    for (int i = 0; i < 30; ++i) giant += std::string(65530, 'x') + " tab\ttorn ";
    const std::string utf32 = std::string("\xFF\xFE\0\0x\0\0\0 \0\0\0y\0\0\0\n\0\0\0", 20);
    const struct {
        std::string text;
        unsigned long long lines;
        std::vector<unsigned long long> tokens;
    } cases[] = {{"", 0, {0}},
                 {"a\n\n", 2, {1, 0, 0}},
                 {"a\r\rb\r", 3, {1, 0, 1, 0}},
                 {lines, 6, {3, 0, 1, 2, 0, 2, 0}},
                 {"\xEF\xBB\xBF" + lines, 6, {3, 0, 1, 2, 0, 2}},
                 {utf16(lines, false), 6, {3, 0, 1, 2, 0, 2}},
                 {utf16(lines, true), 6, {3, 0, 1, 2, 0, 2}},
                 {utf32, 1, {2, 0}},
                 {std::string("\0\0\xFE\xFF\0\0\n \0\0\0\r", 12), 1, {1}},
                 {"\xEF\xBB\xBF", 0, {0}},
                 {giant + "\r\nlast", 2, {90, 1}},
                 {"Gr\xF6\xDF\x65 \xE4\xC3\xA4\n", 1, {2}}};
    const TempFolder folder;
    const fs::path file = folder.path() / "text.txt";
    for (const auto& c : cases) {
        writeBytes(file, c.text);
        EXPECT_EQ(FileTools::CountLinesInFile(toWx(file)), c.lines) << c.text.substr(0, 40);
        for (std::size_t line = 0; line < c.tokens.size(); ++line)
            EXPECT_EQ(FileTools::CountTokensOnLine(toWx(file), line), c.tokens[line])
                << line << ": " << c.text.substr(0, 40);
    }
    const wxString missing = toWx(folder.path() / "none.txt");
    EXPECT_EQ(FileTools::CountLinesInFile(missing) + FileTools::CountTokensOnLine(missing, 0), 0U);
}

TEST(FileTools, CountsAndDeletesFilesInSubfoldersAndHiddenOnes) {
    using Files = std::set<std::string>;
    const std::tuple<VpcCleanFolderMode, std::vector<wxString>, Files> cases[] = {
        {CleanFolderDeleteByPrefix, {"none", "tmp_"}, {".dot", "data.bin", "sub/xtmp_3"}},
        {CleanFolderKeepListed,
         {"data", wxString::FromUTF8("tmp_ä"), "tmp_2.bin"},
         {"sub/.hidden/tmp_ä", "sub/tmp_2.bin"}},
        {static_cast<VpcCleanFolderMode>(9), {"tmp_2.bin"}, {}}};
    for (const auto& [mode, names, expected] : cases) {
        const TempFolder outside, folder;
        const wxString path = toWx(folder.path());
        fs::create_directories(folder.path() / "sub" / ".hidden");
        fs::create_directory_symlink(outside.path(), folder.path() / "link");
        for (const char* name : {"tmp_1.bin", "data.bin", ".dot", "sub/tmp_2.bin",
                                 "sub/.hidden/tmp_ä", "sub/xtmp_3", "link/tmp_outside"})
            writeBytes(folder.path() / name, "x");
        EXPECT_FALSE(FileTools::FileExists(path));
        FileTools::DeleteFilesInFolder(path + "/none", CleanFolderDeleteAll, {});
        FileTools::DeleteFilesInFolder(path, CleanFolderDeleteByPrefix, {});
        EXPECT_EQ(FileTools::GetNrFilesInDir(path), 6U);
        FileTools::DeleteFilesInFolder(path, mode, names);
        Files left;
        for (const std::string& name : folder.names())
            if (fs::is_regular_file(folder.path() / name)) left.insert(name);
        EXPECT_EQ(left, expected);
        EXPECT_TRUE(fs::exists(folder.path() / "sub/.hidden")) << "folders stay";
        EXPECT_TRUE(fs::exists(outside.path() / "tmp_outside")) << "links are not followed";
    }
}

}  // namespace
