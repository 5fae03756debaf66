#include "viewer/window/PluginFile.h"

#include <filesystem>
#include <vector>

#include <wx/stdpaths.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

constexpr const char* fileName = "libvpc_plugin.so";

/// The folders that hold libraries: one for each kind of processor on some systems.
std::vector<std::filesystem::path> libraryFolders(const std::filesystem::path& prefix) {
    std::vector<std::filesystem::path> folders{prefix / "lib", prefix / "lib64"};
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(prefix / "lib", error))
        if (entry.is_directory(error)) folders.push_back(entry.path());
    return folders;
}

}  // namespace

std::string findPlugin() {
    const std::filesystem::path program = toUtf8(wxStandardPaths::Get().GetExecutablePath());
    const std::filesystem::path prefix = program.parent_path().parent_path();
    const std::filesystem::path inBuild = prefix / "lib" / fileName;
    std::error_code error;
    if (std::filesystem::exists(inBuild, error)) return inBuild.string();
    for (const std::filesystem::path& folder : libraryFolders(prefix)) {
        const std::filesystem::path installed = folder / "vpc" / fileName;
        if (std::filesystem::exists(installed, error)) return installed.string();
    }
    return inBuild.string();
}

}  // namespace vpc::viewer
