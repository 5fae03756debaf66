#include "viewer/tools/SectionTool.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include <glm/geometric.hpp>

#include "viewer/camera/CameraGuard.h"
#include "viewer/camera/Ray.h"
#include "viewer/document/Refusal.h"
#include "viewer/document/SectionMaker.h"
#include "viewer/tools/Click.h"

namespace vpc::viewer {

namespace {

constexpr draw::Colour planeColour{80, 170, 255};
constexpr draw::Colour highlightColour{255, 200, 60};
constexpr double grabPixels = 12.0;
/// The arrow that shows the normal, as a share of what is shown.
constexpr double arrowShare = 0.08;
/// The sine of the angle between view and normal below which the normal looks like a point.
constexpr double leastSine = 0.1;

/// A little larger, so that a plane on one of its sides has an outline.
Box outlineBox(const Box& shown) {
    if (!isSound(shown)) return shown;
    const glm::dvec3 more(0.01 * shown.Diagonal() + leastDistance(shown.Centre()));
    return {shown.min - more, shown.max + more};
}

/// Where a section is taken hold of: the middle of its outline, or beside what is shown.
glm::dvec3 handleOf(const Section& section, const Box& shown) {
    if (!isSound(shown)) return section.point;
    const glm::dvec3 inside = shown.Centre();
    const std::vector<glm::dvec3> outline = sectionOutline(section, outlineBox(shown));
    if (outline.empty())
        return inside - section.normal * glm::dot(inside - section.point, section.normal);
    glm::dvec3 middle(0.0);
    for (const glm::dvec3& corner : outline) middle += corner - inside;
    return inside + middle / static_cast<double>(outline.size());
}

glm::dvec3 arrowTip(const Section& section, const Box& shown) {
    return handleOf(section, shown) + section.normal * (arrowShare * shown.Diagonal());
}

std::vector<Shapes::Line> outlineOf(const Section& section, const Box& shown,
                                    const draw::Colour& colour) {
    const std::vector<glm::dvec3> corners = sectionOutline(section, outlineBox(shown));
    std::vector<Shapes::Line> lines;
    for (std::size_t i = 0; i < corners.size(); ++i)
        lines.push_back({corners[i], corners[(i + 1) % corners.size()], colour});
    return lines;
}

double distanceToLine(const glm::dvec2& place, const glm::dvec2& from, const glm::dvec2& to) {
    const glm::dvec2 way = to - from;
    const double squared = glm::dot(way, way);
    const double share =
        squared > 0.0 ? std::clamp(glm::dot(place - from, way) / squared, 0.0, 1.0) : 0.0;
    return glm::distance(place, from + way * share);
}

}  // namespace

SectionTool::SectionTool(ToolHost& host, Mode mode) : host_(host), mode_(mode) {
    SayNext();
}

bool SectionTool::OnPress(const MouseInput& input) {
    if (input.button != MouseButton::Left || input.shift) return false;
    press_ = input.place;
    cursor_ = input.place;
    if (mode_ == Mode::ThreePicks) return true;
    dragged_ = SectionAt(input.place);
    if (!dragged_) return false;
    hovered_ = dragged_;
    start_ = preview_ = host_.GetDrawing();
    const Section& section = start_.sections[*dragged_];
    const Box shown = host_.ShownBox();
    handle_ = handleOf(section, shown);
    reach_ =
        2.0 * shown.Diagonal() + std::abs(glm::dot(handle_ - host_.Camera().eye, section.normal));
    const Ray ray = rayThrough(host_.Camera(), host_.PictureSize(), middleOf(press_));
    alongView_ = glm::length(glm::cross(ray.direction, section.normal)) < leastSine;
    grabbed_ = AlongNormal(press_);
    return true;
}

bool SectionTool::OnDrag(const MouseInput& input) {
    if (mode_ == Mode::ThreePicks) return isClick(press_, input.place);
    if (!dragged_) return true;
    preview_ = DraggedTo(input.place);
    host_.Preview(preview_);
    return true;
}

bool SectionTool::OnRelease(const MouseInput& input) {
    if (mode_ == Mode::ThreePicks) {
        host_.PickAt(press_, answers_.Expect<std::optional<Pick>>([this](const auto& pick) {
            if (pick)
                AddPlace(pick->place);
            else
                host_.Say("There is no point there. Click on a point, or zoom in first.");
        }));
        return true;
    }
    if (!dragged_) return false;
    const Drawing drawing = DraggedTo(input.place);
    if (drawing == start_) {
        OnCancel();
        return true;
    }
    dragged_.reset();
    cursor_ = input.place;
    host_.Change("move section", drawing);
    host_.RedrawShapes();
    return true;
}

void SectionTool::OnCancel() {
    if (!dragged_) return;
    dragged_.reset();
    if (!(preview_ == start_)) host_.Preview(host_.GetDrawing());
    host_.RedrawShapes();
}

bool SectionTool::OnMove(const MouseInput& input) {
    const auto before = hovered_;
    cursor_ = input.place;
    hovered_ = mode_ == Mode::Move ? SectionAt(input.place) : std::nullopt;
    if (hovered_ != before) host_.RedrawShapes();
    return hovered_.has_value();
}

void SectionTool::OnLeave() {
    cursor_.reset();
    hovered_.reset();
    host_.RedrawShapes();
}

bool SectionTool::OnKey(ToolKey key) {
    switch (key) {
        case ToolKey::Escape:
            if (dragged_) {
                OnCancel();
            } else if (!places_.empty()) {
                answers_.Drop();
                places_.clear();
                SayNext();
            } else {
                host_.EndTool();  // and this tool may be gone
                return true;
            }
            host_.RedrawShapes();
            return true;
        case ToolKey::Backspace:
            if (places_.empty()) return false;
            places_.pop_back();
            SayNext();
            host_.RedrawShapes();
            return true;
        case ToolKey::Delete:
            if (dragged_) return false;
            // Sections and view may have changed since the mouse moved.
            hovered_ = cursor_ && mode_ == Mode::Move ? SectionAt(*cursor_) : std::nullopt;
            if (!hovered_) return false;
            Remove(*hovered_);
            return true;
        case ToolKey::Enter:
        case ToolKey::Copy:
            break;
    }
    return false;
}

void SectionTool::AddShapes(Shapes& shapes) const {
    const Drawing& drawing = ShownDrawing();
    const Box shown = host_.ShownBox();
    addSectionShapes(shapes, drawing, shown, hovered_);
    for (std::size_t i = 0; mode_ == Mode::Move && i < drawing.sections.size(); ++i) {
        const Section& section = drawing.sections[i];
        if (!section.enabled) continue;
        const draw::Colour colour = hovered_ == i ? highlightColour : planeColour;
        const glm::dvec3 handle = handleOf(section, shown);
        shapes.marks.push_back({handle, colour});
        shapes.lines.push_back({handle, arrowTip(section, shown), colour, 3.0F});
    }
    for (std::size_t i = 0; i < places_.size(); ++i) {
        shapes.marks.push_back({places_[i], highlightColour});
        if (i > 0) shapes.lines.push_back({places_[i - 1], places_[i], highlightColour});
    }
}

std::optional<std::size_t> SectionTool::SectionAt(const glm::ivec2& pixel) const {
    const ViewCamera& camera = host_.Camera();
    const draw::ImageSize size = host_.PictureSize();
    const Box shown = host_.ShownBox();
    const std::vector<Section>& sections = host_.GetDrawing().sections;
    std::optional<std::size_t> nearest;
    double least = grabPixels;
    for (std::size_t i = 0; i < sections.size(); ++i) {
        if (!sections[i].enabled) continue;
        std::vector<Shapes::Line> lines = outlineOf(sections[i], shown, planeColour);
        lines.push_back({handleOf(sections[i], shown), arrowTip(sections[i], shown), planeColour});
        for (const Shapes::Line& line : lines) {
            const auto from = placeOf(camera, size, line.from);
            const auto to = placeOf(camera, size, line.to);
            if (!from || !to) continue;
            const double distance = distanceToLine(middleOf(pixel), *from, *to);
            if (distance >= least) continue;
            least = distance;
            nearest = i;
        }
    }
    return nearest;
}

double SectionTool::AlongNormal(const glm::ivec2& pixel) const {
    const glm::dvec3 normal = start_.sections[*dragged_].normal;
    const ViewCamera& camera = host_.Camera();
    const double towards = glm::dot(normal, camera.Ahead()) < 0.0 ? -1.0 : 1.0;
    if (alongView_)  // upwards is away from the eye
        return -towards * pixel.y * pixelSideAt(camera, host_.PictureSize(), handle_);
    // Where the normal's line comes nearest to the ray: with n the normal, d the ray's direction,
    // w the way from the handle to the ray's origin and b = n * d,
    //     t = (n * w - b (d * w)) / (1 - b * b).
    const Ray ray = rayThrough(camera, host_.PictureSize(), middleOf(pixel));
    const glm::dvec3 way = ray.origin - handle_;
    const double b = glm::dot(normal, ray.direction);
    const double across = std::max(1.0 - b * b, std::numeric_limits<double>::epsilon());
    const double along = (glm::dot(normal, way) - b * glm::dot(ray.direction, way)) / across;
    const double ahead = along * b - glm::dot(way, ray.direction);
    // Beyond the place where the line vanishes, it comes nearest behind the eye.
    return camera.perspective && ahead <= 0.0 ? 2.0 * towards * reach_ : along;
}

Drawing SectionTool::DraggedTo(const glm::ivec2& pixel) const {
    if (pixel == press_) return start_;
    const double distance = std::clamp(AlongNormal(pixel) - grabbed_, -reach_, reach_);
    Drawing drawing = start_;
    Section& section = drawing.sections[*dragged_];
    section = moved(section, distance);
    return drawing;
}

void SectionTool::Remove(std::size_t index) {
    Drawing drawing = host_.GetDrawing();
    drawing.sections.erase(drawing.sections.begin() + static_cast<std::ptrdiff_t>(index));
    hovered_.reset();
    host_.Change("remove section", drawing);
    host_.RedrawShapes();
}

void SectionTool::AddPlace(const glm::dvec3& place) {
    // A double click means one place.
    if (mode_ != Mode::ThreePicks || (!places_.empty() && places_.back() == place)) return;
    places_.push_back(place);
    if (places_.size() == 3) {
        try {
            const Section section =
                sectionThrough(places_[0], places_[1], places_[2], host_.Camera().Ahead());
            places_.clear();
            mode_ = Mode::Move;
            host_.Change("add section", withSection(host_.GetDrawing(), section));
            SayNext();
        } catch (const Refusal& refusal) {
            places_.pop_back();
            host_.Say(refusal.what());
        }
    } else {
        SayNext();
    }
    host_.RedrawShapes();
}

void SectionTool::SayNext() {
    static constexpr const char* picks[] = {
        "Click on the first of three points of the section plane. Escape ends.",
        "Click on the second point. Backspace takes the first one back.",
        "Click on the third point. Backspace takes the second one back.",
    };
    if (mode_ == Mode::ThreePicks)
        host_.Say(picks[std::min<std::size_t>(places_.size(), 2)]);
    else
        host_.Say(
            "Drag a section's handle or outline to move it, press Delete to remove it. "
            "Escape ends.");
}

void addSectionShapes(Shapes& shapes, const Drawing& drawing, const Box& shown,
                      std::optional<std::size_t> highlighted) {
    for (std::size_t i = 0; i < drawing.sections.size(); ++i) {
        if (!drawing.sections[i].enabled) continue;
        const auto lines =
            outlineOf(drawing.sections[i], shown, highlighted == i ? highlightColour : planeColour);
        shapes.lines.insert(shapes.lines.end(), lines.begin(), lines.end());
    }
}

}  // namespace vpc::viewer
