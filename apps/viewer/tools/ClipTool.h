#pragma once

#include <optional>
#include <vector>

#include "viewer/document/ClipMaker.h"
#include "viewer/tools/Tool.h"

namespace vpc::viewer {

/// Draws a region to be kept or removed: a box by a drag, a polygon by clicks.
class ClipTool : public Tool {
public:
    enum class Shape { Box, Polygon };

    /// Shows the view in parallel where it is not, and says so.
    ClipTool(ToolHost& host, Shape shape, bool keepsInside);

    bool OnPress(const MouseInput& input) override;
    bool OnDrag(const MouseInput& input) override;
    bool OnRelease(const MouseInput& input) override;
    void OnCancel() override;
    bool OnMove(const MouseInput& input) override;
    bool OnKey(ToolKey key) override;
    void AddShapes(Shapes& shapes) const override;

    void SetKeepsInside(bool keepsInside);
    bool KeepsInside() const { return keepsInside_; }
    /// Of the polygon or box so far, in drawing coordinates.
    std::vector<glm::dvec3> Corners() const;

private:
    /// Whether the view is parallel already; shows it so otherwise.
    bool IsParallel();
    /// Begins a region where none is begun.
    std::optional<glm::dvec2> CornerAt(const glm::ivec2& pixel);
    void Close();
    void Clear();
    void SayNext();

    ToolHost& host_;
    Shape shape_;
    bool keepsInside_;
    glm::ivec2 press_{0, 0};
    bool closes_ = false;  // the press was the second of a double click
    ClipPlane plane_;      // of the view in which the first corner was set
    std::vector<glm::dvec2> corners_;
    std::optional<glm::dvec2> cursor_;  // where the next corner would be
};

}  // namespace vpc::viewer
