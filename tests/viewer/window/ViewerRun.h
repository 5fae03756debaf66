#pragma once

#include <functional>
#include <map>
#include <string>

#include <glm/vec2.hpp>
#include <glm/vec3.hpp>
#include <nlohmann/json.hpp>

#include "support/ProgramRun.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/window/XScreen.h"

namespace vpc::test {

/// Where a person may click: a pixel of the picture of the points.
using Pixel = glm::ivec2;

/// One run of vpc-viewer, started and driven as a person does, and asked for its report. Throws
/// std::runtime_error where the program does not do what is waited for, or says something on its
/// standard error.
class ViewerRun {
public:
    using Environment = std::map<std::string, std::string>;

    /// Waits for the first report. The window has 1200 by 800 pixels; the program runs in `folder`
    /// and keeps its settings there.
    ViewerRun(const std::string& display, const std::filesystem::path& folder,
              const std::string& arguments, const Environment& more = {});
    /// Kills the program where it still runs.
    ~ViewerRun();

    /// Waits until the program has nothing to do and tells its state.
    const nlohmann::json& Report();
    /// Asks again and again until the state is as wanted.
    const nlohmann::json& ReportWhen(const std::function<bool(const nlohmann::json&)>& isWanted);
    const nlohmann::json& Last() const { return report_; }
    /// What the points' part of the window shows, where the last report saw it.
    draw::Image Picture() const;
    /// Waits for that to be as wanted: the X server may get a picture a little after the report.
    draw::Image PictureWhen(const std::function<bool(const draw::Image&)>& isWanted) const;

    viewer::ViewCamera Camera() const;
    draw::ImageSize Size() const;
    /// The pixel of the last report's view that shows a place of the drawing.
    Pixel PixelOf(const glm::dvec3& place) const { return PixelOf(place, Size()); }
    /// The same in a picture of that size.
    Pixel PixelOf(const glm::dvec3& place, const draw::ImageSize& size) const;

    void Click(const Pixel& pixel, int button = 1);
    void Drag(const Pixel& from, const Pixel& to, int button = 1);
    /// Positive steps turn the wheel away from the person.
    void Wheel(const Pixel& pixel, int steps);
    void Move(const Pixel& pixel);
    void Key(const std::string& keys) { screen_.Key(keys); }
    void Type(const std::string& text) { screen_.Type(text); }
    /// Clicks on what the report names so; `share` says where in its width.
    void ClickControl(const std::string& name, double share = 0.5);
    /// Clicks on a button of the program's dialog, which closes it.
    void CloseDialog(const std::string& button);
    /// Waits for a dialog of GTK's own, which sees no report's key, and takes what it proposes.
    void AcceptSystemDialog();
    /// Clicks into a field, replaces its text and ends with a key.
    void Enter(const std::string& control, const std::string& text,
               const std::string& last = "Return");

    /// Processes that the program has started.
    std::vector<pid_t> Children() const;
    pid_t Id() const { return program_.id(); }
    /// Asks the window on top to close and does not wait.
    void CloseTop() { screen_.CloseTop(); }
    /// Waits until the program ends by itself; it has to end well and to have said nothing.
    void WaitForEnd();
    void Close() {
        CloseTop();
        WaitForEnd();
    }

private:
    [[noreturn]] void Fail(const std::string& what);
    void WaitUntil(const std::function<bool()>& condition, const std::string& what);
    const nlohmann::json& Control(const std::string& name) const;
    glm::ivec2 OnScreen(const Pixel& pixel) const;

    XScreen screen_;
    std::filesystem::path reportFile_;
    ProgramRun program_;
    std::optional<unsigned long> window_;
    bool hasEnded_ = false;
    nlohmann::json report_ = {{"serial", 0}};
};

/// The share of pixels that differ by more than a little.
double difference(const draw::Image& a, const draw::Image& b);

}  // namespace vpc::test
