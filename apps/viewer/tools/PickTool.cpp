#include "viewer/tools/PickTool.h"

#include <algorithm>
#include <cstdio>
#include <utility>

#include <glm/geometric.hpp>

#include "viewer/document/Labels.h"
#include "viewer/tools/Click.h"

namespace vpc::viewer {

namespace {

constexpr draw::Colour pickColour{255, 220, 60};
constexpr draw::Colour snapColour{90, 235, 255};

std::string hexText(const draw::Colour& colour) {
    char text[8];
    std::snprintf(text, sizeof text, "#%02x%02x%02x", colour.red, colour.green, colour.blue);
    return text;
}

std::string tabbed(const glm::dvec3& v) {
    return exactText(v.x) + "\t" + exactText(v.y) + "\t" + exactText(v.z);
}

std::string offsetText(const glm::dvec3& offset, double extent) {
    return "dx " + coordinateText(offset.x, extent) + ", dy " + coordinateText(offset.y, extent) +
           ", dz " + coordinateText(offset.z, extent);
}

}  // namespace

PickTool::PickTool(ToolHost& host) : host_(host) {
    SayPicks();
}

bool PickTool::OnPress(const MouseInput& input) {
    DropSnap();
    if (input.button != MouseButton::Left || input.shift) return false;
    press_ = input;
    return true;
}

bool PickTool::OnDrag(const MouseInput& input) {
    return isClick(press_.place, input.place);
}

bool PickTool::OnRelease(const MouseInput&) {
    const auto add = [this, isDouble = press_.isDouble](const std::optional<Pick>& pick) {
        if (pick)
            Add(*pick, isDouble);
        else
            host_.Say("There is no point there. Click on a point, or zoom in first.");
    };
    host_.PickAt(press_.place, answers_.Expect<std::optional<Pick>>(add));
    return true;
}

bool PickTool::OnMove(const MouseInput& input) {
    snapPixel_ = input.place;
    AskSnap();
    return false;
}

void PickTool::OnLeave() {
    DropSnap();
}

bool PickTool::OnKey(ToolKey key) {
    switch (key) {
        case ToolKey::Escape:
            if (picks_.empty())
                host_.EndTool();  // and this tool may be gone
            else
                Clear();
            return true;
        case ToolKey::Copy:
            if (picks_.empty()) {
                host_.Say("There is nothing to copy yet. Click on a point first.");
            } else {
                host_.CopyText(Text());
                host_.Say("Copied.");
            }
            return true;
        case ToolKey::Backspace:
        case ToolKey::Delete:
            if (picks_.empty()) return false;
            picks_.pop_back();
            SayPicks();
            host_.RedrawShapes();
            return true;
        case ToolKey::Enter:
            break;
    }
    return false;
}

void PickTool::AddShapes(Shapes& shapes) const {
    if (snap_ && snapCamera_ == host_.Camera()) shapes.marks.push_back({*snap_, snapColour});
    const double extent = host_.ShownBox().Diagonal();
    for (const Pick& pick : picks_) {
        shapes.marks.push_back({pick.place, pickColour});
        shapes.labels.push_back(
            {pick.place,
             placeText(pick.place, extent) + "  " + hexText(pick.colour) + "  " + FileOf(pick),
             pickColour});
    }
    if (const auto measure = Measured()) {
        const glm::dvec3 from = picks_.front().place;
        shapes.lines.push_back({from, picks_.back().place, pickColour});
        shapes.labels.push_back({from + measure->offset * 0.5,
                                 lengthText(measure->distance) + "  (" +
                                     offsetText(measure->offset, measure->distance) + ")",
                                 pickColour});
    }
}

std::optional<PickTool::Measure> PickTool::Measured() const {
    if (picks_.size() != 2) return std::nullopt;
    const glm::dvec3 offset = picks_[1].place - picks_[0].place;
    return Measure{glm::length(offset), offset};
}

std::string PickTool::Text() const {
    std::string text;
    for (const Pick& pick : picks_) text += TextOf(pick) + "\n";
    if (const auto measure = Measured())
        text += exactText(measure->distance) + "\t" + tabbed(measure->offset) + "\n";
    return text;
}

void PickTool::Clear() {
    answers_.Drop();
    picks_.clear();
    SayPicks();
    host_.RedrawShapes();
}

void PickTool::AskSnap() {
    if (isSnapAsked_ || !snapPixel_) return;
    isSnapAsked_ = true;
    const glm::ivec2 pixel = *std::exchange(snapPixel_, std::nullopt);
    const auto show = [this, camera = host_.Camera()](const std::optional<Pick>& pick) {
        isSnapAsked_ = false;
        const auto place = pick ? std::optional(pick->place) : std::nullopt;
        const bool isNew = place != snap_ || !(camera == snapCamera_);
        snap_ = place;
        snapCamera_ = camera;
        if (isNew) host_.RedrawShapes();
        AskSnap();
    };
    host_.PickAt(pixel, snapAnswers_.Expect<std::optional<Pick>>(show));
}

void PickTool::DropSnap() {
    snapAnswers_.Drop();
    isSnapAsked_ = false;
    snapPixel_.reset();
    if (std::exchange(snap_, std::nullopt)) host_.RedrawShapes();
}

void PickTool::Add(const Pick& pick, bool isDouble) {
    // Who double-clicks means one point.
    if (isDouble && picks_.size() == 1 && picks_.front().place == pick.place) return;
    if (picks_.size() == 2) picks_.clear();
    picks_.push_back(pick);
    SayPicks();
    host_.RedrawShapes();
}

void PickTool::SayPicks() {
    if (picks_.empty()) {
        host_.Say("Click on a point to see where it is. A drag turns the view. Escape ends.");
    } else if (const auto measure = Measured()) {
        host_.Say("Distance " + lengthText(measure->distance) + ", " +
                  offsetText(measure->offset, measure->distance) +
                  ". Ctrl+C copies, Escape clears.");
    } else {
        const Pick& pick = picks_.front();
        host_.Say(placeText(pick.place, host_.ShownBox().Diagonal()) + ", colour " +
                  hexText(pick.colour) + ", " + FileOf(pick) +
                  ". Click on a second point to measure. Ctrl+C copies, Escape clears.");
    }
}

std::string PickTool::FileOf(const Pick& pick) const {
    const Entity* entity = host_.GetDrawing().Find(pick.entity);
    return entity ? entity->name : std::string("a file that is closed");
}

std::string PickTool::TextOf(const Pick& pick) const {
    std::string file = FileOf(pick);
    const auto breaksTable = [](char c) { return c == '\t' || c == '\n' || c == '\r'; };
    std::replace_if(file.begin(), file.end(), breaksTable, ' ');
    return tabbed(pick.place) + "\t" + std::to_string(pick.colour.red) + "\t" +
           std::to_string(pick.colour.green) + "\t" + std::to_string(pick.colour.blue) + "\t" +
           file;
}

}  // namespace vpc::viewer
