#include "host/PcDbPointCloudDefImplPE.h"

#include <dlfcn.h>
#include <stdlib.h>

#include <array>
#include <cstdio>
#include <memory>
#include <optional>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/OdError.h"
#include "platform/PcDbPointCloudDef.h"
#include "support/HostScene.h"

namespace vpc::test {

namespace {

namespace fs = std::filesystem;

/// Another home and another current folder for one test.
class SurroundingsGuard {
public:
    SurroundingsGuard(const fs::path& home, const fs::path& current) {
        setenv("HOME", home.c_str(), 1);
        fs::current_path(current);
    }
    SurroundingsGuard(const SurroundingsGuard&) = delete;
    SurroundingsGuard& operator=(const SurroundingsGuard&) = delete;
    ~SurroundingsGuard() {
        fs::current_path(current_);
        if (home_) setenv("HOME", home_->c_str(), 1);
        if (!home_) unsetenv("HOME");
    }

private:
    static std::optional<std::string> Home() {
        const char* home = std::getenv("HOME");
        return home == nullptr ? std::nullopt : std::optional<std::string>(home);
    }
    std::optional<std::string> home_ = Home();
    fs::path current_ = fs::current_path();
};

/// The name of the file that loading ended at; nothing where none was loaded.
std::optional<wxString> loadedName(PcDbPointCloudDefPE& extension, const std::string& fileName,
                                   const std::string& referencePath) {
    PcDbPointCloudDef definition;
    auto* set = static_cast<PcCorePointSet*>(
        extension.loadProject(&definition, toOd(fileName), toOd(referencePath)));
    if (set == nullptr) return std::nullopt;
    const wxString name = StringTools::FromOdString(set->fileName());
    extension.cleanPointSet(set);
    return name;
}

TEST(PcDbPointCloudDefImplPE, FindsFilesBesideTheReference) {
    const HostScene scene;
    const fs::path top = scene.folder.folder.path();
    fs::create_directories(top / "drawings/old");
    const std::string umlaut =
        "drawings/gr\xC3\xB6\xC3\x9F"
        "e.vpt";
    for (const char* copy : {"drawings/scan.vpt", "drawings/.hidden.vpt", umlaut.c_str()})
        fs::copy_file(scene.file, top / copy);
    const SurroundingsGuard surroundings(top / "drawings", top);
    const std::string in = top.string();
    const std::string drawing = in + "/drawings/a.drawing";
    const std::string inOld = in + "/drawings/old/a.drawing";
    const struct {
        std::string fileName;
        std::string reference;
        std::string found;
    } cases[] = {
        {"scan.vpt", drawing, in + "/drawings/scan.vpt"},
        {"./scan.vpt", drawing, in + "/drawings/scan.vpt"},
        {"../scan.vpt", inOld, in + "/drawings/scan.vpt"},
        {"../../scan.vpt", inOld, in + "/scan.vpt"},
        {"old/../scan.vpt", drawing, in + "/drawings/scan.vpt"},
        {".hidden.vpt", drawing, in + "/drawings/.hidden.vpt"},
        {umlaut.substr(9), drawing, in + "/" + umlaut},
        {"~/scan.vpt", inOld, in + "/drawings/scan.vpt"},
        // A reference whose folder is relative, or that has none: the current folder counts.
        {"scan.vpt", "a.drawing", in + "/scan.vpt"},
        {"drawings/scan.vpt", "", in + "/drawings/scan.vpt"},
        {"scan.vpt", "drawings/a.drawing", "drawings/scan.vpt"},
        // Used as they stand.
        {in + "/scan.vpt", drawing, in + "/scan.vpt"},
        {in + "/drawings/../scan.vpt", drawing, in + "/drawings/../scan.vpt"},
    };
    PcDbPointCloudDefImplPE extension;
    for (const auto& c : cases)
        EXPECT_EQ(loadedName(extension, c.fileName, c.reference), toWx(c.found)) << c.fileName;
    const std::array<std::string, 2> missing[] = {
        {"scan.vpt", inOld}, {"", drawing}, {in + "/no.vpt", drawing}, {"~nobody-at-all/a", ""}};
    for (const auto& [fileName, reference] : missing)
        EXPECT_EQ(loadedName(extension, fileName, reference), std::nullopt) << fileName;
}

TEST(PcDbPointCloudDefImplPE, PassesOnThatAVersionIsAnother) {
    const HostScene scene;
    PcDbPointCloudDefImplPE extension;
    extension.cleanPointSet(nullptr);
    scene.patch(0, 8);
    EXPECT_THROW(loadedName(extension, "scan.vpt", scene.file), OdError);
    scene.patch(0, 9);
    writeBytes(scene.file, readBytes(scene.file).substr(0, 500));
    EXPECT_EQ(loadedName(extension, "scan.vpt", scene.file), std::nullopt);
}

/// The plug-in, loaded as a host does it.
class Plugin {
public:
    Plugin() : handle_(dlopen(VPC_PLUGIN, RTLD_NOW | RTLD_LOCAL)) {}
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;
    ~Plugin() {
        if (handle_ != nullptr) dlclose(handle_);
    }

    std::unique_ptr<PcDbPointCloudDefPE> extension() const {
        using Create = PcDbPointCloudDefPE* (*)();
        if (handle_ == nullptr) throw std::runtime_error(dlerror());
        auto* create = reinterpret_cast<Create>(dlsym(handle_, "vpcCreatePointCloudExtension"));
        if (create == nullptr) throw std::runtime_error(dlerror());
        return std::unique_ptr<PcDbPointCloudDefPE>(create());
    }

private:
    void* handle_;
};

TEST(VpcPlugin, LoadsAndDrawsForAHost) {
    const HostScene scene;
    const Plugin plugin;
    const std::unique_ptr<PcDbPointCloudDefPE> extension = plugin.extension();
    ASSERT_NE(extension, nullptr);
    GiPointSetDefinition* set = extension->loadProject(nullptr, "scan.vpt", scene.name());
    ASSERT_NE(set, nullptr);
    // The host's variables are the plug-in's.
    const PointMaxGuard pointMax(4321);
    EXPECT_EQ(viewFromAbove(*set, scene.name()), scene.points.size());
    EXPECT_EQ(set->maxNrPointsInBuffer(), 4321U);
    extension->cleanPointSet(set);

    scene.patch(0, 8);
    EXPECT_THROW(extension->loadProject(nullptr, "scan.vpt", scene.name()), OdError);
}

std::vector<std::string> exportedSymbols() {
    std::vector<std::string> symbols;
    const std::string command = std::string("nm -D -C --defined-only '") + VPC_PLUGIN + "'";
    const std::unique_ptr<FILE, int (*)(FILE*)> nm(popen(command.c_str(), "r"), pclose);
    std::array<char, 4096> line{};
    while (std::fgets(line.data(), line.size(), nm.get()) != nullptr) {
        const std::string text(line.data());
        // Address, kind and name.
        symbols.push_back(text.substr(19, text.size() - 20));
    }
    return symbols;
}

TEST(VpcPlugin, ExportsTheHostFacingObjectsAndNothingElse) {
    const std::vector<std::string> symbols = exportedSymbols();
    const auto isHostFacing = testing::MatchesRegex(
        "vpcCreatePointCloudExtension|vpcCreatePropertiesExtension|vpcPreparePointData|"
        "((vtable|typeinfo|typeinfo name) for )?"
        "(PcCorePointSet|PcDbPointCloudDefImplPE|OPMPointCloudProperties)(::.*)?");
    EXPECT_THAT(symbols, testing::Each(isHostFacing));
    const auto startsWith = [](const char* text) {
        return testing::Contains(testing::StartsWith(text));
    };
    for (const char* needed :
         {"vpcCreatePointCloudExtension", "vpcCreatePropertiesExtension",
          "PcCorePointSet::preparePointData", "PcCorePointSet::loadProjectFromFile",
          "vtable for PcCorePointSet", "PcDbPointCloudDefImplPE::loadProject"})
        EXPECT_THAT(symbols, startsWith(needed));
}

}  // namespace

}  // namespace vpc::test
