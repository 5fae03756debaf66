#pragma once

#include <optional>

#include "viewer/camera/CameraMotion.h"
#include "viewer/camera/Pivot.h"
#include "viewer/tools/Tool.h"

namespace vpc::viewer {

/// Turns, slides and zooms the view.
///
/// Left drag: turns around the place under the cursor. Middle or Shift+left drag: slides. Right
/// drag or wheel: zooms to the place under the cursor. Double click: holds the pivot at a place,
/// until a double click over empty space or Escape gives it back to the cursor.
class NavigationTool : public Tool {
public:
    explicit NavigationTool(ToolHost& host) : host_(host) {}

    bool OnPress(const MouseInput& input) override;
    bool OnDrag(const MouseInput& input) override;
    bool OnRelease(const MouseInput& input) override;
    /// The view stays where the drag has brought it.
    void OnCancel() override;
    bool OnKey(ToolKey key) override;
    void AddShapes(Shapes& shapes) const override;

    /// The wheel, a pinch, or a key that zooms. \param steps towards the place
    void Zoom(const glm::ivec2& place, double steps);
    /// Keys that turn and slide, as a drag by so many pixels would from the picture's middle.
    void TurnBy(const glm::ivec2& pixels);
    void SlideBy(const glm::ivec2& pixels);
    /// Keeps the view that zooms and keys led to. The window calls it when the camera has come to
    /// rest, so that a turn of the wheel is one step to go back over.
    void Rest();

    void SetHorizon(Horizon horizon);
    Horizon GetHorizon() const { return horizon_; }
    /// Forgets pivots: another drawing has come.
    void Forget();

private:
    enum class Motion { None, Turn, Slide, Zoom };

    /// The camera of a motion that has come to a place.
    ViewCamera MovedTo(const glm::ivec2& place) const;
    /// Shows a camera that was moved, its eye clear of what is shown.
    void Show(const ViewCamera& camera);
    void Hold(const glm::ivec2& pixel);
    /// A motion from the picture's middle, by a key.
    void MoveBy(Motion motion, const glm::ivec2& pixels);
    void Begin(Motion motion, const glm::ivec2& place);
    /// What a motion that starts at a pixel turns around, slides or zooms to.
    glm::dvec3 PivotAt(const glm::ivec2& pixel);
    double LeastStep() const;

    ToolHost& host_;
    Horizon horizon_ = Horizon::Level;
    Pivot pivot_;
    std::optional<glm::dvec3> held_;
    Motion motion_ = Motion::None;
    glm::ivec2 press_{0, 0};
    bool dragged_ = false;
    ViewCamera start_;  // the camera at the press: every drag is computed from there
    std::optional<glm::dvec3> zoomedTo_;  // by the wheel, until the view is kept
    glm::dvec3 grabbed_{0.0, 0.0, 0.0};
    bool moved_ = false;  // zoomed or moved by keys since the view was kept
};

}  // namespace vpc::viewer
