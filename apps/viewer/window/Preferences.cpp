#include "viewer/window/Preferences.h"

#include <algorithm>

#include <wx/fileconf.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/stdpaths.h>

#include "viewer/panels/Text.h"

namespace vpc::viewer {

namespace {

constexpr std::size_t mostRecentFiles = 10;

wxString configFile() {
    wxStandardPaths& paths = wxStandardPaths::Get();
    paths.SetFileLayout(wxStandardPaths::FileLayout_XDG);
    return paths.GetUserConfigDir() + "/vpc-viewer/settings.ini";
}

wxString recentKey(std::size_t index) {
    return wxString::Format("/recent/%zu", index);
}

long packed(const draw::Colour& colour) {
    return (static_cast<long>(colour.red) << 16U) | (static_cast<long>(colour.green) << 8U) |
           static_cast<long>(colour.blue);
}

draw::Colour unpacked(long value) {
    const auto channel = [value](unsigned shift) {
        return static_cast<std::uint8_t>((value >> shift) & 0xFF);
    };
    return {channel(16), channel(8), channel(0)};
}

}  // namespace

Preferences::Preferences() {
    const wxLogNull quiet;  // a missing or unreadable file means that nothing is remembered
    config_ = std::make_unique<wxFileConfig>(wxString(), wxString(), configFile(), wxString(),
                                             wxCONFIG_USE_LOCAL_FILE);
}

Preferences::~Preferences() = default;

ViewStyle Preferences::Style() const {
    ViewStyle style;
    const long sizing = config_->ReadLong("/style/sizing", static_cast<long>(style.sizing));
    if (sizing >= 0 && sizing <= static_cast<long>(PointSizing::ByDistance))
        style.sizing = static_cast<PointSizing>(sizing);
    // A size in drawing units belongs to one drawing.
    if (style.sizing == PointSizing::ByDistance) style.sizing = PointSizing::Automatic;
    style.pointSize =
        std::clamp(config_->ReadDouble("/style/pointSize", style.pointSize), 1.0, 64.0);
    style.roundPoints = config_->ReadBool("/style/round", style.roundPoints);
    style.shaded = config_->ReadBool("/style/shaded", style.shaded);
    style.background = unpacked(config_->ReadLong("/style/background", packed(style.background)));
    style.axes = config_->ReadBool("/style/axes", style.axes);
    style.scaleBar = config_->ReadBool("/style/scaleBar", style.scaleBar);
    style.legend = config_->ReadBool("/style/legend", style.legend);
    return style;
}

void Preferences::SetStyle(const ViewStyle& from, const ViewStyle& to) {
    const auto write = [this](const char* key, auto before, auto after) {
        if (before != after) config_->Write(wxString("/style/") + key, after);
    };
    // A size means something together with its kind only.
    if (from.sizing != to.sizing || from.pointSize != to.pointSize) {
        config_->Write("/style/sizing", static_cast<long>(to.sizing));
        config_->Write("/style/pointSize", to.pointSize);
    }
    write("round", from.roundPoints, to.roundPoints);
    write("shaded", from.shaded, to.shaded);
    write("background", packed(from.background), packed(to.background));
    write("axes", from.axes, to.axes);
    write("scaleBar", from.scaleBar, to.scaleBar);
    write("legend", from.legend, to.legend);
    Flush();
}

bool Preferences::LevelHorizon() const {
    return config_->ReadBool("/view/levelHorizon", true);
}

void Preferences::SetLevelHorizon(bool level) {
    config_->Write("/view/levelHorizon", level);
    Flush();
}

wxRect Preferences::WindowPlace() const {
    const auto read = [this](const char* key) {
        return static_cast<int>(
            std::clamp(config_->ReadLong(wxString("/window/") + key, 0L), -30'000L, 30'000L));
    };
    return {read("x"), read("y"), read("width"), read("height")};
}

void Preferences::SetWindowPlace(const wxRect& place) {
    config_->Write("/window/x", static_cast<long>(place.x));
    config_->Write("/window/y", static_cast<long>(place.y));
    config_->Write("/window/width", static_cast<long>(place.width));
    config_->Write("/window/height", static_cast<long>(place.height));
    Flush();
}

std::vector<std::string> Preferences::RecentFiles() const {
    std::vector<std::string> files;
    for (std::size_t i = 0; i < mostRecentFiles; ++i) {
        const wxString file = config_->Read(recentKey(i), wxString());
        if (!file.empty()) files.push_back(toUtf8(file));
    }
    return files;
}

void Preferences::AddRecentFile(const std::string& file) {
    std::vector<std::string> files = RecentFiles();
    std::erase(files, file);
    files.insert(files.begin(), file);
    files.resize(std::min(files.size(), mostRecentFiles));
    for (std::size_t i = 0; i < files.size(); ++i) config_->Write(recentKey(i), fromUtf8(files[i]));
    Flush();
}

void Preferences::Flush() {
    const wxLogNull quiet;  // on a full disk nothing is remembered
    const wxString folder = wxFileName(configFile()).GetPath();
    if (!wxFileName::DirExists(folder))
        wxFileName::Mkdir(folder, wxS_DIR_DEFAULT, wxPATH_MKDIR_FULL);
    config_->Flush();
}

}  // namespace vpc::viewer
