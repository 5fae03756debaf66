#include "viewer/camera/CameraGuard.h"

#include <algorithm>
#include <cmath>

#include <glm/geometric.hpp>

namespace vpc::viewer {

namespace {

// Beyond it, doubles cannot tell neighbouring points apart.
constexpr double largest = 1e15;

bool isSmallEnough(const glm::dvec3& v) {
    // A number that is none is not below anything.
    return std::abs(v.x) <= largest && std::abs(v.y) <= largest && std::abs(v.z) <= largest;
}

double largestShare(const glm::dvec3& v) {
    return std::max({std::abs(v.x), std::abs(v.y), std::abs(v.z)});
}

}  // namespace

double leastDistance(const glm::dvec3& place) {
    return std::max(1e-12, 1e-11 * largestShare(place));
}

bool isSound(const ViewCamera& camera) {
    if (!isSmallEnough(camera.eye) || !isSmallEnough(camera.target) || !isSmallEnough(camera.up))
        return false;
    const double least = std::max(leastDistance(camera.eye), leastDistance(camera.target));
    return camera.Distance() >= least && camera.fieldHeight >= least &&
           camera.fieldHeight <= largest && std::abs(glm::length(camera.up) - 1.0) <= 1e-6 &&
           std::abs(glm::dot(camera.up, camera.Ahead())) <= 1e-4;
}

ViewCamera guarded(const ViewCamera& wanted, const ViewCamera& before) {
    ViewCamera camera = wanted;
    const glm::dvec3 ahead = camera.Ahead();
    camera.up = glm::normalize(camera.up - ahead * glm::dot(camera.up, ahead));
    return isSound(camera) ? camera : before;
}

bool isSound(const Box& box) {
    return !box.IsEmpty() && box.min.y <= box.max.y && box.min.z <= box.max.z &&
           isSmallEnough(box.min) && isSmallEnough(box.max);
}

}  // namespace vpc::viewer
