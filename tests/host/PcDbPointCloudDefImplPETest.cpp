#include "host/PcDbPointCloudDefImplPE.h"

#include <stdlib.h>

#include <memory>

#include <gtest/gtest.h>

#include "support/ViewFixture.h"

namespace vpc::test {

namespace {

namespace fs = std::filesystem;
using PcDbPointCloudDefImplPETest = ViewTest;

/// The name of the file that loading ended at; empty where none was loaded.
wxString loadedName(PcDbPointCloudDefPE& extension, const std::string& fileName,
                    const std::string& referencePath) {
    PcDbPointCloudDef definition;
    auto* set = static_cast<PcCorePointSet*>(
        extension.loadProject(&definition, toOd(fileName), toOd(referencePath)));
    if (set == nullptr) return {};
    const wxString name = StringTools::FromOdString(set->fileName());
    extension.cleanPointSet(set);
    return name;
}

TEST_F(PcDbPointCloudDefImplPETest, FindsFilesBesideTheReference) {
    load(100);
    const fs::path top = folder.path();
    fs::create_directories(top / "drawings/old");
    for (const char* copy :
         {"scan.vpt", "drawings/scan.vpt", "drawings/.hidden.vpt", "drawings/gr\u00f6\u00dfe.vpt"})
        fs::copy_file(folder.output(), top / copy);
    // Another home and another current folder for this test.
    const char* const homeBefore = std::getenv("HOME");
    const std::string home = homeBefore == nullptr ? "" : homeBefore;
    const fs::path currentBefore = fs::current_path();
    setenv("HOME", (top / "drawings").c_str(), 1);
    fs::current_path(top);
    const std::string in = top.string();
    const std::string drawing = in + "/drawings/a.drawing";
    const std::string inOld = in + "/drawings/old/a.drawing";
    const struct {
        std::string fileName;
        std::string reference;
        std::string found;
    } cases[] = {
        {"scan.vpt", drawing, in + "/drawings/scan.vpt"},
        {"../../scan.vpt", inOld, in + "/scan.vpt"},
        {"old/../scan.vpt", drawing, in + "/drawings/scan.vpt"},
        {".hidden.vpt", drawing, in + "/drawings/.hidden.vpt"},
        {"gr\u00f6\u00dfe.vpt", drawing, in + "/drawings/gr\u00f6\u00dfe.vpt"},
        {"~/scan.vpt", inOld, in + "/drawings/scan.vpt"},
        // A reference whose folder is relative, or that has none: the current folder counts.
        {"scan.vpt", "a.drawing", in + "/scan.vpt"},
        {"drawings/scan.vpt", "", in + "/drawings/scan.vpt"},
        {"scan.vpt", "drawings/a.drawing", "drawings/scan.vpt"},
        // Used as they stand.
        {in + "/drawings/../scan.vpt", drawing, in + "/drawings/../scan.vpt"},
        // Not there.
        {"scan.vpt", inOld, ""},
        {"scan", drawing, ""},
        {"", drawing, ""},
        {in + "/no.vpt", drawing, ""},
        {"~nobody-at-all/a", "", ""}};
    PcDbPointCloudDefImplPE extension;
    for (const auto& c : cases)
        EXPECT_EQ(loadedName(extension, c.fileName, c.reference), toWx(c.found)) << c.fileName;
    fs::current_path(currentBefore);
    setenv("HOME", home.c_str(), 1);
}

}  // namespace

}  // namespace vpc::test
