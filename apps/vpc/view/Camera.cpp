#include "vpc/view/Camera.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include <CLI/CLI.hpp>

#include "vpc/common/Command.h"
#include "vpc/common/NumberList.h"

namespace vpc {

namespace {

bool scanSide(const char*& cursor, const char* end, int& side) {
    const auto result = std::from_chars(cursor, end, side);
    cursor = result.ptr;
    return result.ec == std::errc() && side >= 1 && side <= Viewport::largestSide;
}

}  // namespace

Viewport Viewport::Parse(const std::string& text, const std::string& option) {
    Viewport viewport;
    const char* cursor = text.data();
    const char* const end = cursor + text.size();
    const auto separator = [&] { return cursor != end && (*cursor == 'x' || *cursor == ','); };
    if (scanSide(cursor, end, viewport.width) && separator() &&
        scanSide(++cursor, end, viewport.height) && cursor == end)
        return viewport;
    throw CommandUsageError(option + " takes a width and a height in pixels, each from 1 to " +
                            std::to_string(largestSide) + "; '" + text + "' is not that");
}

namespace {
/// Below this sine two directions count as the same one.
constexpr double parallelSine = 1e-9;
}  // namespace

CameraAxes::CameraAxes(const ViewCamera& camera)
    : eye_(camera.eye), forward_(camera.target - camera.eye) {
    forward_.Normalize();
    up_ = UprightTo(forward_, camera.up);
    right_ = forward_.Cross(up_);
}

CameraAxes::Place CameraAxes::Of(const VpcVector3D& p) const {
    const VpcVector3D offset = p - eye_;
    return {offset.Dot(right_), offset.Dot(up_), offset.Dot(forward_)};
}

VpcVector3D CameraAxes::UprightTo(const VpcVector3D& direction, const VpcVector3D& up) {
    VpcVector3D unit = direction;
    unit.Normalize();
    for (VpcVector3D candidate : {up, VpcVector3D(0, 1, 0), VpcVector3D(1, 0, 0)}) {
        candidate.Normalize();
        VpcVector3D upright = candidate - unit * candidate.Dot(unit);
        if (!(upright.Magnitude() > parallelSine)) continue;
        upright.Normalize();
        return upright;
    }
    return up;
}

namespace {

/// Where the eye is by default as seen from the cloud: south-west of it and above.
const VpcVector3D obliqueFromAbove{-0.45, -0.75, 0.65};
/// How far the eye is by default, in radii of the cloud: a moderate perspective.
constexpr double eyeDistance = 3.0;
/// Leaves a rim around the cloud.
constexpr double rim = 1.04;
/// The field for an eye within the cloud, which cannot see all of it, in distances of the target.
constexpr double wideField = 1.2;
/// Corners nearer to the eye's plane than this share of the target's distance cannot be seen.
constexpr double leastDepth = 0.02;

/// Where corners appear in the field of view.
struct SeenRange {
    double left = std::numeric_limits<double>::max();
    double right = std::numeric_limits<double>::lowest();
    double bottom = std::numeric_limits<double>::max();
    double top = std::numeric_limits<double>::lowest();
    bool allAhead = true;

    void Add(double x, double y) {
        left = std::min(left, x);
        right = std::max(right, x);
        bottom = std::min(bottom, y);
        top = std::max(top, y);
    }
};

double targetDistance(const ViewCamera& camera) {
    return (camera.target - camera.eye).Magnitude();
}

SeenRange seen(const ViewCamera& camera, const CameraOptions::Corners& corners) {
    const CameraAxes axes(camera);
    const double distance = targetDistance(camera);
    SeenRange range;
    for (const VpcVector3D& corner : corners) {
        const CameraAxes::Place place = axes.Of(corner);
        if (!camera.perspective) {
            range.Add(place.right, place.above);
        } else if (place.depth < leastDepth * distance) {
            range.allAhead = false;
        } else {
            const double scale = distance / place.depth;
            range.Add(place.right * scale, place.above * scale);
        }
    }
    return range;
}

VpcVector3D centreOf(const CameraOptions::Corners& corners) {
    VpcVector3D sum;
    for (const VpcVector3D& corner : corners) sum = sum + corner / 8.0;
    return sum;
}

/// Half the box's diagonal; a cloud of one point is as wide as what is shown of it.
double radiusOf(const CameraOptions::Corners& corners) {
    const VpcVector3D centre = centreOf(corners);
    double radius = 0.0;
    for (const VpcVector3D& corner : corners)
        radius = std::max(radius, (corner - centre).Magnitude());
    return radius > 0.0 ? radius : 1.0;
}

VpcVector3D requireVector(const std::string& text, const std::string& option) {
    const auto n = NumberList::Require(text, 3, option, "X,Y,Z");
    return {n[0], n[1], n[2]};
}

}  // namespace

CameraOptions::CameraOptions(CLI::App& options) {
    const auto add = [&](const char* name, std::string& text, const char* type, const char* help) {
        options.add_option(name, text, help)->type_name(type)->group("Camera");
    };
    add("--eye", eyeText_, "X,Y,Z", "Where the camera is, default: outside, obliquely above");
    add("--target", targetText_, "X,Y,Z", "What it looks at, default: the middle of the cloud");
    add("--up", upText_, "X,Y,Z", "What is up in the picture, default: 0,0,1");
    add("--field", fieldText_, "W,H",
        "Width and height of what is seen at the target's distance, default: all that the cuts "
        "leave");
    add("--viewport", viewportText_, "W,H", "Pixels of the window, default: 1280,800");
    auto* perspective = options.add_flag("--perspective", perspective_,
                                         "Things further away look smaller (the default)");
    auto* parallel = options.add_flag("--parallel", parallel_, "Parallel projection");
    perspective->group("Camera")->excludes(parallel);
    parallel->group("Camera");
}

void CameraOptions::Read() {
    if (!eyeText_.empty()) eye_ = requireVector(eyeText_, "--eye");
    if (!targetText_.empty()) target_ = requireVector(targetText_, "--target");
    if (!upText_.empty()) up_ = requireVector(upText_, "--up");
    if (up_ && up_->Magnitude() == 0.0)
        throw CommandUsageError("--up needs a direction, and 0,0,0 is none");
    if (!fieldText_.empty()) {
        const auto n = NumberList::Require(fieldText_, 2, "--field", "W,H");
        if (n[0] < 0.0 || n[1] < 0.0)
            throw CommandUsageError("--field takes a width and a height that are not below 0");
        camera_.fieldWidth = n[0];
        camera_.fieldHeight = n[1];
    }
    if (!viewportText_.empty()) camera_.viewport = Viewport::Parse(viewportText_, "--viewport");
    camera_.perspective = !parallel_;
}

ViewCamera CameraOptions::Choose(const Corners& corners) const {
    ViewCamera camera = camera_;
    ChooseEyeAndTarget(camera, corners);
    ChooseUp(camera);
    if (!eye_ && !target_) Centre(camera, corners);
    if (fieldText_.empty()) ChooseField(camera, corners);
    return camera;
}

ViewCamera CameraOptions::Seeing(const Corners& corners) {
    const double radius = radiusOf(corners);
    ViewCamera camera;
    camera.target = centreOf(corners);
    camera.eye = camera.target + VpcVector3D(0, 0, eyeDistance * radius);
    camera.up = VpcVector3D(0, 1, 0);
    camera.fieldWidth = camera.fieldHeight = 2.0 * rim * radius;
    camera.perspective = false;
    return camera;
}

void CameraOptions::ChooseEyeAndTarget(ViewCamera& camera, const Corners& corners) const {
    VpcVector3D direction = obliqueFromAbove;
    direction.Normalize();
    camera.target = target_.value_or(centreOf(corners));
    camera.eye = eye_.value_or(camera.target + direction * (eyeDistance * radiusOf(corners)));
    // An eye in the very middle of the cloud looks north.
    const bool looksNowhere = !target_ && (camera.target - camera.eye).Magnitude() == 0.0;
    if (looksNowhere) camera.target = camera.target + VpcVector3D(0, radiusOf(corners), 0);
}

void CameraOptions::ChooseUp(ViewCamera& camera) const {
    // A camera's up vector is at right angles to its direction: the view's frustum counts on it.
    const VpcVector3D direction = camera.target - camera.eye;
    if (direction.Magnitude() == 0.0) return;
    camera.up = CameraAxes::UprightTo(direction, up_.value_or(VpcVector3D(0, 0, 1)));
}

void CameraOptions::Centre(ViewCamera& camera, const Corners& corners) const {
    // In perspective the middle of the picture is not that of the box; few steps bring it there.
    for (int step = 0; step < 8; ++step) {
        const SeenRange range = seen(camera, corners);
        const CameraAxes axes(camera);
        const VpcVector3D shift = axes.Right() * ((range.left + range.right) / 2.0) +
                                  axes.Up() * ((range.bottom + range.top) / 2.0);
        camera.target = camera.target + shift;
        camera.eye = camera.eye + shift;
    }
}

void CameraOptions::ChooseField(ViewCamera& camera, const Corners& corners) const {
    const double distance = targetDistance(camera);
    if (distance == 0.0) return;
    const double aspect = static_cast<double>(camera.viewport.width) / camera.viewport.height;
    const SeenRange range = seen(camera, corners);
    double width = wideField * distance;
    if (range.allAhead) {
        const double halfWidth = std::max(range.right, -range.left);
        const double halfHeight = std::max(range.top, -range.bottom);
        width = 2.0 * rim * std::max(halfWidth, halfHeight * aspect);
    }
    if (!(width > 0.0)) width = wideField * distance;  // a single point in the middle
    camera.fieldWidth = width;
    camera.fieldHeight = width / aspect;
}

}  // namespace vpc
