#include "host/PcDbPointCloudDefImplPE.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <array>
#include <cstdio>
#include <map>
#include <memory>

#include <gmock/gmock.h>

#include "host/VpcPlugin.h"
#include "platform/OdError.h"
#include "platform/PcDbPointCloudDef.h"
#include "support/ViewFixture.h"

namespace vpc::test {

namespace {

namespace fs = std::filesystem;
using PcDbPointCloudDefImplPETest = ViewTest;
using VpcPluginTest = ViewTest;

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

TEST_F(VpcPluginTest, LoadsAndDrawsForAHost) {
    load(100);
    const std::unique_ptr<void, int (*)(void*)> plugin(dlopen(VPC_PLUGIN, RTLD_NOW | RTLD_LOCAL),
                                                       dlclose);
    ASSERT_NE(plugin, nullptr) << dlerror();
    using Create = PcDbPointCloudDefPE* (*)();
    auto* create = reinterpret_cast<Create>(dlsym(plugin.get(), "vpcCreatePointCloudExtension"));
    ASSERT_NE(create, nullptr) << dlerror();
    const std::unique_ptr<PcDbPointCloudDefPE> extension(create());
    GiPointSetDefinition* plugged = extension->loadProject(nullptr, "t.vpt", name());
    ASSERT_NE(plugged, nullptr);
    pointMax.set(4321);  // the host's variables are the plug-in's
    EXPECT_EQ(update(*plugged, overview), 100U);
    EXPECT_EQ(plugged->maxNrPointsInBuffer(), 4321U);
    extension->cleanPointSet(plugged);
    patch(0, 8);
    EXPECT_THROW(extension->loadProject(nullptr, "t.vpt", name()), OdError);
}

/// What a host's dialog notes, and whether it goes on once the scans are measured.
struct Dialog : PrepareObserver {
    bool onProgress(const PrepareProgress& progress) override {
        done[progress.stage] = progress.pointsDone;
        return true;
    }
    bool onScansMeasured(const ScanSummary& measured, const wxString&) override {
        summary = measured;
        return goesOn;
    }
    std::map<PrepareStage, Word> done;
    ScanSummary summary;
    bool goesOn = true;
};

TEST_F(VpcPluginTest, TellsTheHostsObserverAboutEveryScanBeforeItGoesOn) {
    const std::unique_ptr<void, int (*)(void*)> plugin(dlopen(VPC_PLUGIN, RTLD_NOW | RTLD_LOCAL),
                                                       dlclose);
    ASSERT_NE(plugin, nullptr) << dlerror();
    auto* const prepareObserved = reinterpret_cast<decltype(&vpcPreparePointDataObserved)>(
        dlsym(plugin.get(), "vpcPreparePointDataObserved"));
    ASSERT_NE(prepareObserved, nullptr) << dlerror();
    writeBytes(folder.file("whole.pts"), "2\n1 2 3\n4 5 6\n");
    writeBytes(folder.file("short.pts"), "5\n7 8 9\n");
    TreePreparePars pars{6,  toWx(folder.work()),  {}, toWx(folder.output()), Tree_Octree,
                         50, static_cast<Word>(10)};
    for (const char* scan : {"whole.pts", "none.pts", "short.pts"})
        pars.inputFiles.push_back(toWx(folder.file(scan)));
    for (const bool goesOn : {false, true}) {
        Dialog dialog;
        dialog.goesOn = goesOn;
        TreePrepareResult result;
        EXPECT_EQ(prepareObserved(pars, dialog, result), goesOn);
        ASSERT_EQ(dialog.summary.scans.size(), 3U);
        wxString sentences;
        for (const ScanAccount& scan : dialog.summary.scans)
            for (const wxString& sentence : scan.sentences) sentences += "\n" + sentence;
        EXPECT_TRUE(dialog.summary.scans[0].IsWhole() && !dialog.summary.scans[1].opened);
        EXPECT_EQ(dialog.summary.scans[2].pointsWithoutValues, 4U);
        EXPECT_EQ('\n' + result.message,
                  goesOn ? sentences : wxString("\nPoint cloud preprocessing was cancelled"));
        EXPECT_EQ(fs::exists(folder.output()), goesOn);
        EXPECT_EQ(dialog.done[PrepareStage::MeasureScans], 7U);
        EXPECT_EQ(dialog.done.count(PrepareStage::WriteFile), goesOn ? 1U : 0U);
    }
}

TEST(VpcPlugin, ExportsTheHostFacingObjectsAndNothingElse) {
    std::vector<std::string> symbols;
    const std::string command = std::string("nm -D -C --defined-only '") + VPC_PLUGIN + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(command.c_str(), "r"), pclose);
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), line.size(), nm.get()) != nullptr) {
        const std::string text(line.data());
        // Address, kind and name.
        symbols.push_back(text.substr(19, text.size() - 20));
    }
    const auto isHostFacing = testing::MatchesRegex(
        "vpcCreatePointCloudExtension|vpcCreatePropertiesExtension|vpcPreparePointData(Observed)?|"
        "((vtable|typeinfo|typeinfo name) for )?"
        "(PcCorePointSet|PcDbPointCloudDefImplPE|OPMPointCloudProperties)(::.*)?");
    EXPECT_THAT(symbols, testing::Each(isHostFacing));
    for (const char* needed : {"vpcCreatePointCloudExtension", "vpcCreatePropertiesExtension",
                               "vpcPreparePointDataObserved", "PcCorePointSet::preparePointData",
                               "PcCorePointSet::loadProjectFromFile", "vtable for PcCorePointSet",
                               "PcDbPointCloudDefImplPE::loadProject"})
        EXPECT_THAT(symbols, testing::Contains(testing::StartsWith(needed)));
    EXPECT_THAT(symbols, testing::Contains("vpcPreparePointData"));
}

}  // namespace

}  // namespace vpc::test
