#include "viewer/window/ViewerRun.h"

#include <algorithm>
#include <cmath>

namespace vpc::test {

namespace {

/// The program as a user starts it, with a home of its own. `env` becomes the program.
std::string commandLine(const std::string& display, const std::filesystem::path& report,
                        const std::string& arguments, const ViewerRun::Environment& more) {
    const std::string home = (report.parent_path() / "home").string();
    ViewerRun::Environment variables = {
        {"DISPLAY", display},
        {"GDK_BACKEND", "x11"},
        // The accessibility bus is not there, and its absence would be told.
        {"NO_AT_BRIDGE", "1"},
        // Nor is the daemon that keeps GTK's settings.
        {"GSETTINGS_BACKEND", "memory"},
        {"HOME", home},
        {"XDG_CONFIG_HOME", home + "/.config"},
        {"XDG_CACHE_HOME", home + "/.cache"},
        {"XDG_DATA_HOME", home + "/.local/share"},
        {"XDG_RUNTIME_DIR", home + "/run"},
        {"LSAN_OPTIONS",
         "suppressions=" VPC_SOURCE "/tests/leaks-of-others.supp:print_suppressions=0"},
    };
    for (const auto& [name, value] : more) variables[name] = value;
    std::string line;
    for (const auto& [name, value] : variables) line += " \"" + name + "=" + value + "\"";
    return line + " " VPC_VIEWER " --window 1200x800 --report \"" + report.string() + "\" " +
           arguments;
}

std::filesystem::path prepareHome(const std::filesystem::path& folder) {
    std::filesystem::create_directories(folder / "home/run");
    std::filesystem::permissions(folder / "home/run", std::filesystem::perms::owner_all);
    std::filesystem::remove(folder / "report.json");
    return folder / "report.json";
}

glm::dvec3 vectorOf(const nlohmann::json& numbers) {
    return {numbers.at(0), numbers.at(1), numbers.at(2)};
}

}  // namespace

ViewerRun::ViewerRun(const std::string& display, const std::filesystem::path& folder,
                     const std::string& arguments, const Environment& more)
    : screen_(display),
      reportFile_(prepareHome(folder)),
      program_(commandLine(display, reportFile_, arguments, more), folder, RLIM_INFINITY,
               "/usr/bin/env") {
    WaitUntil([&] { return screen_.TopWindow().has_value(); }, "a window");
    window_ = screen_.TopWindow();
    Report();
}

ViewerRun::~ViewerRun() {
    if (!hasEnded_) program_.send(SIGKILL);
}

void ViewerRun::Fail(const std::string& what) {
    if (!hasEnded_) program_.send(SIGKILL);
    hasEnded_ = true;
    const ProgramResult result = program_.wait();
    report_.erase("controls");
    throw std::runtime_error(what + "; status " + std::to_string(result.status) + "\n" +
                             result.err + "\nlast report: " + report_.dump(1));
}

void ViewerRun::WaitUntil(const std::function<bool()>& condition, const std::string& what) {
    bool isEnded = false;
    const auto isDone = [&] { return condition() || (isEnded = program_.hasEnded()); };
    if (!ProgramRun::waitUntil(isDone)) Fail("the viewer does not come to " + what);
    if (isEnded) Fail("the viewer ended before " + what);
}

const nlohmann::json& ViewerRun::Report() {
    screen_.Key("Control_L+Shift_L+F12");
    const auto before = report_.at("serial").get<long>();
    const auto hasCome = [&] {
        // The program puts a whole file in the place of the older one.
        const auto read = nlohmann::json::parse(readBytes(reportFile_), nullptr, false);
        if (read.is_discarded() || read.at("serial").get<long>() <= before) return false;
        report_ = read;
        return true;
    };
    WaitUntil(hasCome, "a report");
    return report_;
}

const nlohmann::json& ViewerRun::ReportWhen(
    const std::function<bool(const nlohmann::json&)>& isWanted) {
    WaitUntil([&] { return isWanted(Report()); }, "the wanted state");
    return report_;
}

draw::Image ViewerRun::Picture() const {
    return screen_.Picture(OnScreen({0, 0}), Size());
}

draw::Image ViewerRun::PictureWhen(const std::function<bool(const draw::Image&)>& isWanted) const {
    draw::Image picture = Picture();
    ProgramRun::waitUntil([&] { return isWanted(picture) || (picture = Picture(), false); });
    return picture;
}

viewer::ViewCamera ViewerRun::Camera() const {
    const auto& camera = report_.at("camera");
    return {vectorOf(camera.at("eye")), vectorOf(camera.at("target")), vectorOf(camera.at("up")),
            camera.at("fieldHeight"), camera.at("perspective")};
}

draw::ImageSize ViewerRun::Size() const {
    return {report_.at("canvas").at("width"), report_.at("canvas").at("height")};
}

Pixel ViewerRun::PixelOf(const glm::dvec3& place, const draw::ImageSize& size) const {
    const auto found = Camera().ProjectionTo(size).Of({place.x, place.y, place.z});
    return {static_cast<int>(std::floor(found.column)), static_cast<int>(std::floor(found.row))};
}

glm::ivec2 ViewerRun::OnScreen(const Pixel& pixel) const {
    const auto& canvas = report_.at("canvas");
    return Pixel(canvas.at("x"), canvas.at("y")) + pixel;
}

void ViewerRun::Move(const Pixel& pixel) {
    screen_.Move(OnScreen(pixel));
}

void ViewerRun::Click(const Pixel& pixel, int button) {
    Drag(pixel, pixel, button);
}

void ViewerRun::Drag(const Pixel& from, const Pixel& to, int button) {
    Move(from);
    screen_.Press(button);
    for (int step = 1; from != to && step <= 8; ++step) Move(from + (to - from) * step / 8);
    screen_.Release(button);
}

void ViewerRun::Wheel(const Pixel& pixel, int steps) {
    Move(pixel);
    for (int i = 0; i < std::abs(steps); ++i) {
        screen_.Press(steps > 0 ? 4 : 5);
        screen_.Release(steps > 0 ? 4 : 5);
    }
}

void ViewerRun::CloseDialog(const std::string& button) {
    const auto dialog = screen_.TopWindow();
    ClickControl(button);
    WaitUntil([&] { return screen_.TopWindow() != dialog; }, "the end of a dialog");
}

void ViewerRun::AcceptSystemDialog() {
    WaitUntil([&] { return screen_.TopWindow() != window_; }, "a system dialog");
    const auto dialog = screen_.TopWindow();
    Key("Return");
    WaitUntil([&] { return screen_.TopWindow() != dialog; }, "the end of a system dialog");
}

const nlohmann::json& ViewerRun::Control(const std::string& name) const {
    for (const auto& control : report_.at("controls"))
        if (control.at("name") == name) return control;
    throw std::runtime_error("no control " + name + " in " + report_.at("controls").dump());
}

void ViewerRun::ClickControl(const std::string& name, double share) {
    const auto& c = Control(name);
    screen_.Move({c.at("x").get<int>() + static_cast<int>(c.at("width").get<int>() * share),
                  c.at("y").get<int>() + c.at("height").get<int>() / 2});
    screen_.Press(1);
    screen_.Release(1);
}

void ViewerRun::Enter(const std::string& control, const std::string& text,
                      const std::string& last) {
    ClickControl(control);
    Report();  // only then the keyboard goes to the field
    Key("Control_L+a");
    Type(text);
    Key(last);
}

std::vector<pid_t> ViewerRun::Children() const {
    std::vector<pid_t> children;
    std::istringstream list;
    for (const auto& thread :
         std::filesystem::directory_iterator("/proc/" + std::to_string(Id()) + "/task")) {
        list = std::istringstream(readBytes(thread.path() / "children"));
        for (pid_t child = 0; list >> child;) children.push_back(child);
    }
    return children;
}

void ViewerRun::WaitForEnd() {
    if (!ProgramRun::waitUntil([&] { return program_.hasEnded(); })) Fail("the viewer stays");
    hasEnded_ = true;
    const ProgramResult result = program_.wait();
    if (result.status != 0 || !result.err.empty())
        throw std::runtime_error("the viewer ended with status " + std::to_string(result.status) +
                                 "\n" + result.err);
}

double difference(const draw::Image& a, const draw::Image& b) {
    if (!(a.Size() == b.Size())) return 1.0;
    const auto far = [](std::uint8_t x, std::uint8_t y) { return std::abs(x - y) > 24; };
    std::size_t count = 0;
    for (std::size_t i = 0; i < a.Size().Pixels(); ++i)
        if (far(a[i].red, b[i].red) || far(a[i].green, b[i].green) || far(a[i].blue, b[i].blue))
            ++count;
    return static_cast<double>(count) / static_cast<double>(a.Size().Pixels());
}

}  // namespace vpc::test
