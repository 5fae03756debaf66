#include "viewer/camera/CameraMotion.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <glm/geometric.hpp>

#include "viewer/camera/CameraGuard.h"
#include "viewer/camera/Ray.h"

namespace vpc::viewer {

namespace {

constexpr glm::dvec3 sky(0.0, 0.0, 1.0);
/// How far from the vertical a pitch ends.
constexpr double poleMargin = 0.005;

struct Frame {
    glm::dvec3 right;
    glm::dvec3 up;
    glm::dvec3 ahead;

    static Frame Of(const ViewCamera& camera) {
        const glm::dvec3 right = camera.Right();
        const glm::dvec3 ahead = camera.Ahead();
        return {right, glm::cross(right, ahead), ahead};
    }
};

/// A direction of view over a level horizon. It has a right side even at the poles, where the
/// direction itself has none.
struct Heading {
    glm::dvec3 right;
    double elevation;

    static Heading Of(const Frame& frame) {
        const bool isLevel = std::abs(frame.right.z) < 1e-3 && frame.up.z > -1e-3;
        const glm::dvec3 right =
            isLevel ? glm::dvec3(frame.right.x, frame.right.y, 0.0) : glm::cross(frame.ahead, sky);
        const Heading heading{glm::normalize(right), 0.0};
        return {heading.right, std::atan2(frame.ahead.z, glm::dot(frame.ahead, heading.Forward()))};
    }
    /// Level.
    glm::dvec3 Forward() const { return glm::cross(sky, right); }
    Heading Turned(double yaw, double pitch) const {
        // A view that is at the pole already, as the one from above, does not jump.
        const double limit = std::numbers::pi / 2.0 - poleMargin;
        const double c = std::cos(yaw);
        const double s = std::sin(yaw);
        return {
            {c * right.x - s * right.y, s * right.x + c * right.y, 0.0},
            std::clamp(elevation + pitch, std::min(-limit, elevation), std::max(limit, elevation))};
    }
    Frame ToFrame() const {
        const double c = std::cos(elevation);
        const double s = std::sin(elevation);
        return {right, c * sky - s * Forward(), c * Forward() + s * sky};
    }
};

/// A vector turned about an axis of length 1.
glm::dvec3 turned(const glm::dvec3& v, const glm::dvec3& axis, double angle) {
    return v * std::cos(angle) + glm::cross(axis, v) * std::sin(angle) +
           axis * (glm::dot(axis, v) * (1.0 - std::cos(angle)));
}

Frame turnedFreely(const Frame& frame, double yaw, double pitch) {
    const glm::dvec3 turn = yaw * frame.up - pitch * frame.right;
    const double angle = glm::length(turn);
    if (angle == 0.0) return frame;
    const glm::dvec3 axis = turn / angle;
    return {turned(frame.right, axis, angle), turned(frame.up, axis, angle),
            turned(frame.ahead, axis, angle)};
}

/// The camera with other axes; a pivot keeps its place in the picture.
ViewCamera reframed(const ViewCamera& camera, const glm::dvec3& pivot, const Frame& before,
                    const Frame& after) {
    const glm::dvec3 toEye = camera.eye - pivot;
    ViewCamera result = camera;
    result.eye = pivot + after.right * glm::dot(toEye, before.right) +
                 after.up * glm::dot(toEye, before.up) +
                 after.ahead * glm::dot(toEye, before.ahead);
    result.target = result.eye + after.ahead * camera.Distance();
    result.up = after.up;
    return guarded(result, camera);
}

ViewCamera shifted(const ViewCamera& camera, const glm::dvec3& shift) {
    ViewCamera result = camera;
    result.eye += shift;
    result.target += shift;
    return result;
}

/// What a distance becomes. Steps are counted along a scale that is logarithmic for long distances
/// and linear for short ones, and smooth between.
double zoomedDistance(double distance, double steps, double leastStep) {
    const double rate = -std::log(zoomShare);
    if (!(leastStep > 0.0)) return distance * std::exp(-rate * steps);
    const double change = leastStep / rate;  // where a step by share is as long as the least one
    const double position =
        distance > change ? std::log(distance / change) / rate : (distance - change) / leastStep;
    const double wanted = position - steps;
    return wanted > 0.0 ? change * std::exp(rate * wanted) : change + wanted * leastStep;
}

ViewCamera zoomParallel(const ViewCamera& camera, const glm::dvec3& towards, double steps) {
    const double share = std::pow(zoomShare, steps);
    const glm::dvec3 ahead = camera.Ahead();
    const glm::dvec3 offset = towards - camera.eye;
    ViewCamera result = shifted(camera, (offset - ahead * glm::dot(offset, ahead)) * (1.0 - share));
    result.fieldHeight *= share;
    return guarded(result, camera);
}

}  // namespace

ViewCamera orbit(const ViewCamera& camera, const glm::dvec3& pivot, double yaw, double pitch,
                 Horizon horizon) {
    const Frame before = Frame::Of(camera);
    // An eye that rises looks down more.
    const Frame after = horizon == Horizon::Level
                            ? Heading::Of(before).Turned(yaw, -pitch).ToFrame()
                            : turnedFreely(before, yaw, pitch);
    return reframed(camera, pivot, before, after);
}

ViewCamera levelled(const ViewCamera& camera) {
    const Frame before = Frame::Of(camera);
    return reframed(camera, camera.eye, before, Heading::Of(before).ToFrame());
}

ViewCamera pan(const ViewCamera& camera, const draw::ImageSize& size, const glm::dvec3& grabbed,
               const glm::dvec2& from, const glm::dvec2& to) {
    const glm::dvec2 way = (from - to) * pixelSideAt(camera, size, grabbed);
    return guarded(shifted(camera, camera.Right() * way.x - camera.up * way.y), camera);
}

ViewCamera zoom(const ViewCamera& camera, const glm::dvec3& towards, double steps,
                double leastStep) {
    if (!camera.perspective) return zoomParallel(camera, towards, steps);
    const glm::dvec3 way = towards - camera.eye;
    const double distance = glm::length(way);
    if (!(distance > 0.0)) return camera;
    const double left = zoomedDistance(distance, steps, leastStep);
    const ViewCamera result =
        guarded(shifted(camera, way * ((distance - left) / distance)), camera);
    const double least = std::max(leastStep, 2.0 * leastDistance(towards));
    return retarget(result, std::max(depthOf(result, towards), least));
}

ViewCamera withPerspective(const ViewCamera& camera, bool perspective) {
    ViewCamera result = camera;
    result.perspective = perspective;
    if (perspective && !camera.perspective)
        result.eye = camera.target - camera.Ahead() * (camera.fieldHeight / 2.0 / usualHalfAngle);
    return guarded(result, camera);
}

ViewCamera retarget(const ViewCamera& camera, double depth) {
    if (!(depth > 0.0)) return camera;
    ViewCamera result = camera;
    result.target = camera.eye + camera.Ahead() * depth;
    if (camera.perspective) result.fieldHeight *= depth / camera.Distance();
    return guarded(result, camera);
}

ViewCamera walk(const ViewCamera& camera, const WalkStep& step) {
    const Frame before = Frame::Of(camera);
    const Heading heading = Heading::Of(before).Turned(step.yaw, step.pitch);
    const ViewCamera turnedCamera = reframed(camera, camera.eye, before, heading.ToFrame());
    const glm::dvec3 way =
        heading.Forward() * step.ahead + heading.right * step.right + sky * step.up;
    return guarded(shifted(turnedCamera, way), camera);
}

}  // namespace vpc::viewer
