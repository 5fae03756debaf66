#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "viewer/tools/Answers.h"
#include "viewer/tools/Tool.h"

namespace vpc::viewer {

/// Moves section planes along their normals, by their handle or outline, and makes them through
/// three picked places.
class SectionTool : public Tool {
public:
    enum class Mode { Move, ThreePicks };

    SectionTool(ToolHost& host, Mode mode);

    bool OnPress(const MouseInput& input) override;
    bool OnDrag(const MouseInput& input) override;
    bool OnRelease(const MouseInput& input) override;
    void OnCancel() override;
    bool OnMove(const MouseInput& input) override;
    void OnLeave() override;
    bool OnKey(ToolKey key) override;
    void AddShapes(Shapes& shapes) const override;

    Mode GetMode() const { return mode_; }
    /// The places picked so far.
    const std::vector<glm::dvec3>& Places() const { return places_; }

private:
    /// The section whose handle or outline is nearest to a pixel, and near enough to be meant.
    std::optional<std::size_t> SectionAt(const glm::ivec2& pixel) const;
    /// Where on the line through the handle a pixel points, as the distance from the handle.
    double AlongNormal(const glm::ivec2& pixel) const;
    Drawing DraggedTo(const glm::ivec2& pixel) const;
    void Remove(std::size_t index);
    void AddPlace(const glm::dvec3& place);
    void SayNext();
    /// As it is shown while a drag goes on.
    const Drawing& ShownDrawing() const { return dragged_ ? preview_ : host_.GetDrawing(); }

    ToolHost& host_;
    Mode mode_;
    glm::ivec2 press_{0, 0};
    std::optional<glm::ivec2> cursor_;
    std::optional<std::size_t> hovered_;
    std::optional<std::size_t> dragged_;
    Drawing start_;  // at the press
    Drawing preview_;
    glm::dvec3 handle_{0.0, 0.0, 0.0};  // of the dragged section, at the press
    double grabbed_ = 0.0;              // AlongNormal at the press
    double reach_ = 0.0;                // how far a drag may lead
    bool alongView_ = false;            // one looks along the normal, which then is a point
    std::vector<glm::dvec3> places_;
    Answers answers_;
};

/// The outlines of all enabled sections, which are shown while no tool moves them, too.
void addSectionShapes(Shapes& shapes, const Drawing& drawing, const Box& shown,
                      std::optional<std::size_t> highlighted = {});

}  // namespace vpc::viewer
