#pragma once

#include <optional>
#include <string>
#include <vector>

#include "viewer/tools/Answers.h"
#include "viewer/tools/Tool.h"

namespace vpc::viewer {

/// Tells where a point lies, and how far it is from a second one. The point that a click would take
/// is marked.
class PickTool : public Tool {
public:
    /// From the first to the second pick.
    struct Measure {
        double distance = 0.0;
        glm::dvec3 offset{0.0, 0.0, 0.0};
    };

    explicit PickTool(ToolHost& host);

    bool OnPress(const MouseInput& input) override;
    bool OnDrag(const MouseInput& input) override;
    bool OnRelease(const MouseInput& input) override;
    bool OnMove(const MouseInput& input) override;
    void OnLeave() override;
    bool OnKey(ToolKey key) override;
    void AddShapes(Shapes& shapes) const override;

    /// None, one or two; a third click begins anew.
    const std::vector<Pick>& Picks() const { return picks_; }
    std::optional<Measure> Measured() const;
    /// What Copy copies: a line for each pick with x, y, z, red, green, blue and file, then one
    /// with distance, dx, dy, dz; tabs between, numbers exact and with a point. Empty without
    /// picks.
    std::string Text() const;

private:
    void Clear();
    /// Asks for the point at the newest place of the mouse, one question at a time.
    void AskSnap();
    void DropSnap();
    void Add(const Pick& pick, bool isDouble);
    void SayPicks();
    std::string FileOf(const Pick& pick) const;
    std::string TextOf(const Pick& pick) const;

    ToolHost& host_;
    MouseInput press_;
    std::vector<Pick> picks_;
    Answers answers_;
    /// What a click would take, in the view of snapCamera_.
    std::optional<glm::dvec3> snap_;
    ViewCamera snapCamera_;
    /// Where to ask next.
    std::optional<glm::ivec2> snapPixel_;
    bool isSnapAsked_ = false;
    Answers snapAnswers_;
};

}  // namespace vpc::viewer
