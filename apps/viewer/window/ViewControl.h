#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "viewer/camera/CameraHistory.h"
#include "viewer/camera/StandardView.h"
#include "viewer/tools/NavigationTool.h"
#include "viewer/tools/PickTool.h"
#include "viewer/tools/ToolRouter.h"
#include "viewer/tools/WalkTool.h"
#include "viewer/window/FrameLoop.h"
#include "viewer/window/ToolKind.h"
#include "viewer/window/UpdateLoop.h"
#include "viewer/window/ViewPanel.h"
#include "viewer/window/Workspace.h"

namespace vpc::viewer {

/// The view's camera, and the tools that mouse and keys drive.
class ViewControl : public ToolHost, public ViewInput {
public:
    /// What the window is told.
    struct Window {
        std::function<void(const std::string&)> say;
        std::function<void()> shapesChanged;
        /// The tool, the place under the cursor, or what can be gone back to.
        std::function<void()> stateChanged;
        std::function<void()> cursorMoved;
        /// Draws points in another way, which the user wants to have from now on.
        std::function<void(const ViewStyle&)> chooseStyle;
    };

    ViewControl(Workspace& workspace, Engine& engine, FrameLoop& frames, UpdateLoop& updates,
                ViewPanel& panel, Window window);

    void UseTool(ToolKind kind);
    ToolKind Tool() const { return kind_; }
    /// Null while another tool is in use.
    const PickTool* Picking() const { return picking_; }
    void AddShapes(Shapes& shapes) const;
    /// The copy key's; does nothing where there is nothing to copy.
    void Copy();

    void Fit();
    void ShowFrom(StandardView view);
    void SetPerspective(bool perspective);
    void SetHorizon(Horizon horizon);
    Horizon GetHorizon() const { return navigation_.GetHorizon(); }
    void GoBack();
    void GoForward();
    bool CanGoBack() const { return history_.CanGoBack(); }
    bool CanGoForward() const { return history_.CanGoForward(); }
    /// Another drawing has come: shows it from a view, with nothing to go back to.
    void BeginWith(const ViewCamera& camera);
    /// The same for a first file: all of it, from above and the side.
    void BeginWithAll();
    /// Draws the view again.
    void Redraw();
    /// The place under the cursor.
    const std::optional<glm::dvec3>& CursorPlace() const { return cursorPlace_; }
    /// Looks again what is under the cursor: there is another picture.
    void LookUnderCursor();
    /// The camera has come to rest.
    void OnRest();

    const ViewCamera& Camera() const override { return camera_; }
    void SetCamera(const ViewCamera& camera) override;
    void KeepView() override;
    draw::ImageSize PictureSize() const override;
    std::optional<glm::dvec3> PlaceAt(const glm::ivec2& pixel) const override;
    Box ShownBox() const override { return workspace_.ShownBox(); }
    const Drawing& GetDrawing() const override { return workspace_.Kept(); }
    void Preview(const Drawing& drawing) override { workspace_.Preview(drawing); }
    void Change(const std::string& label, const Drawing& drawing) override;
    void PickAt(const glm::ivec2& pixel,
                std::function<void(const std::optional<Pick>&)> done) override;
    void CopyText(const std::string& text) override;
    void Say(const std::string& sentence) override { window_.say(sentence); }
    void RedrawShapes() override { window_.shapesChanged(); }
    void EndTool() override;

    void OnPress(const MouseInput& input) override;
    void OnRelease(const MouseInput& input) override;
    void OnMove(const MouseInput& input) override;
    void OnCancel() override;
    void OnWheel(const MouseInput& input, double steps, bool isHorizontal) override;
    void OnPinch(const MouseInput& input, double factor) override;
    bool OnKey(const wxKeyEvent& event) override;
    void OnLeave() override;
    void OnResized(const draw::ImageSize& size) override;

private:
    /// Keeps the view that wheel and keys led to.
    void Rest();
    /// Shows a view, as a step that the user can go back over.
    void Go(const ViewCamera& camera);
    std::unique_ptr<viewer::Tool> MakeTool(ToolKind kind);
    bool ToolTakesKey(int key);
    bool MoveByKey(const wxKeyEvent& event);
    bool WalkByKey(const wxKeyEvent& event);
    void ChangePointSize(double steps);

    Workspace& workspace_;
    Engine& engine_;
    FrameLoop& frames_;
    UpdateLoop& updates_;
    ViewPanel& panel_;
    Window window_;
    ViewCamera camera_;
    CameraHistory history_;
    NavigationTool navigation_;
    ToolRouter router_;
    ToolKind kind_ = ToolKind::Navigate;
    std::unique_ptr<viewer::Tool> tool_;
    PickTool* picking_ = nullptr;
    WalkTool* walking_ = nullptr;
    std::optional<glm::ivec2> cursor_;
    std::optional<glm::dvec3> cursorPlace_;
    wxEvtHandler mailbox_;
};

}  // namespace vpc::viewer
