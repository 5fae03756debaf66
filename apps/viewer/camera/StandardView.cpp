#include "viewer/camera/StandardView.h"

#include <algorithm>
#include <cmath>

#include <glm/geometric.hpp>

#include "viewer/camera/CameraGuard.h"
#include "viewer/camera/CameraMotion.h"

namespace vpc::viewer {

namespace {

/// The share of the picture that a box fills.
constexpr double filled = 0.95;

/// A box's corners as seen along a view, from its centre.
struct Reach {
    double right = 0.0;
    double up = 0.0;
    double towards = 0.0;  ///< the eye

    Reach(const ViewCamera& camera, const Box& box) {
        for (const glm::dvec3& corner : box.Corners()) {
            const glm::dvec3 offset = corner - box.Centre();
            right = std::max(right, std::abs(glm::dot(offset, camera.Right())));
            up = std::max(up, std::abs(glm::dot(offset, camera.up)));
            towards = std::max(towards, -glm::dot(offset, camera.Ahead()));
        }
    }
};

/// How large a box is, for cameras: not 0, and not so small that doubles lose it.
double extentOf(const Box& box) {
    const double diagonal = box.Diagonal();
    const double least = 10.0 * leastDistance(box.Centre());
    return diagonal > 0.0 ? std::max(diagonal, least) : std::max(1.0, least);
}

double fittingDistance(const ViewCamera& camera, const Box& box, const draw::ImageSize& size) {
    const double upTangent = filled * camera.fieldHeight / 2.0 / camera.Distance();
    const double rightTangent = upTangent * size.width / size.height;
    double distance = 0.0;
    for (const glm::dvec3& corner : box.Corners()) {
        const glm::dvec3 offset = corner - box.Centre();
        const double side = std::max(std::abs(glm::dot(offset, camera.Right())) / rightTangent,
                                     std::abs(glm::dot(offset, camera.up)) / upTangent);
        distance = std::max(distance, side - glm::dot(offset, camera.Ahead()));
    }
    return distance;
}

struct Direction {
    const char* name;
    glm::dvec3 ahead;
    glm::dvec3 up;
};

const Direction& directionOf(StandardView view) {
    static const std::array<Direction, standardViews.size()> directions{{
        {"Top", {0.0, 0.0, -1.0}, {0.0, 1.0, 0.0}},
        {"Bottom", {0.0, 0.0, 1.0}, {0.0, 1.0, 0.0}},
        {"Front", {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}},
        {"Back", {0.0, -1.0, 0.0}, {0.0, 0.0, 1.0}},
        {"Left", {1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}},
        {"Right", {-1.0, 0.0, 0.0}, {0.0, 0.0, 1.0}},
        {"Isometric", glm::normalize(glm::dvec3(-1.0, 1.0, -1.0)), {0.0, 0.0, 1.0}},
    }};
    return directions[static_cast<std::size_t>(view)];
}

}  // namespace

const char* nameOf(StandardView view) {
    return directionOf(view).name;
}

ViewCamera fit(const ViewCamera& camera, const Box& box, const draw::ImageSize& size) {
    if (!isSound(box)) return camera;
    const double extent = extentOf(box);
    ViewCamera result = camera;
    double distance;
    if (camera.perspective) {
        // No nearer than the nearest corner, which matters where all corners lie in a line ahead.
        distance =
            std::max(fittingDistance(camera, box, size), Reach(camera, box).towards + 0.1 * extent);
        result.fieldHeight = camera.fieldHeight * (distance / camera.Distance());
    } else {
        const Reach reach(camera, box);
        const double field = 2.0 * std::max(reach.up, reach.right * size.height / size.width);
        result.fieldHeight = std::max(field / filled, 0.1 * extent);
        distance =
            std::max(result.fieldHeight / 2.0 / usualHalfAngle, reach.towards + 0.1 * extent);
    }
    result.target = box.Centre();
    result.eye = result.target - camera.Ahead() * distance;
    return guarded(result, camera);
}

ViewCamera clearOf(const ViewCamera& camera, const Box& box) {
    if (camera.perspective || !isSound(box)) return camera;
    const double toCentre = glm::dot(box.Centre() - camera.eye, camera.Ahead());
    const double back = Reach(camera, box).towards + 0.1 * extentOf(box) - toCentre;
    if (!(back > 0.0)) return camera;
    ViewCamera result = camera;
    result.eye -= camera.Ahead() * back;
    return guarded(result, camera);
}

ViewCamera standardView(StandardView view, const Box& box, const draw::ImageSize& size,
                        bool perspective) {
    const Box shown = isSound(box) ? box : Box{glm::dvec3(-0.5), glm::dvec3(0.5)};
    const Direction& direction = directionOf(view);
    const double extent = extentOf(shown);
    ViewCamera camera;
    camera.target = shown.Centre();
    camera.eye = camera.target - direction.ahead * extent;
    camera.up = direction.up;
    camera.fieldHeight = 2.0 * usualHalfAngle * extent;
    camera.perspective = perspective;
    return fit(guarded(camera, ViewCamera{}), shown, size);
}

}  // namespace vpc::viewer
