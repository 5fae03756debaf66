#include "viewer/document/ClipMaker.h"

#include <cmath>
#include <utility>

#include <glm/geometric.hpp>

#include "viewer/camera/Box.h"
#include "viewer/document/FreeName.h"
#include "viewer/document/Refusal.h"

namespace vpc::viewer {

namespace {

double cross(const glm::dvec2& a, const glm::dvec2& b) {
    return a.x * b.y - a.y * b.x;
}

/// The length of the box around the corners, from corner to corner.
double extentOf(const std::vector<glm::dvec2>& corners) {
    Box box;
    for (const glm::dvec2& corner : corners) box.Add(glm::dvec3(corner, 0.0));
    return box.Diagonal();
}

std::vector<glm::dvec2> withoutRepeats(const std::vector<glm::dvec2>& corners) {
    const double same = 1e-9 * extentOf(corners);
    std::vector<glm::dvec2> kept;
    for (const glm::dvec2& corner : corners)
        if (kept.empty() || glm::distance(kept.back(), corner) > same) kept.push_back(corner);
    while (kept.size() > 1 && glm::distance(kept.back(), kept.front()) <= same) kept.pop_back();
    return kept;
}

/// Whether all corners lie on a line.
bool isThin(const std::vector<glm::dvec2>& corners) {
    double area = 0.0;
    for (std::size_t i = 2; i < corners.size(); ++i)
        area += std::abs(cross(corners[i - 1] - corners[0], corners[i] - corners[0]));
    const double extent = extentOf(corners);
    return !(area > 1e-9 * extent * extent);
}

/// On which side of the line from a to b a corner lies: 1, -1, or 0 for on it.
int sideOf(const glm::dvec2& a, const glm::dvec2& b, const glm::dvec2& corner) {
    const double turn = cross(b - a, corner - a);
    const double touching = 1e-12 * (glm::length(b - a) * glm::length(corner - a));
    if (std::abs(turn) <= touching) return 0;
    return turn > 0.0 ? 1 : -1;
}

/// Whether a corner that lies on the line through a and b lies between them.
bool isBetween(const glm::dvec2& a, const glm::dvec2& b, const glm::dvec2& corner) {
    return glm::dot(a - corner, b - corner) <= 0.0;
}

bool doTouch(const glm::dvec2& a, const glm::dvec2& b, const glm::dvec2& c, const glm::dvec2& d) {
    const int ac = sideOf(a, b, c);
    const int ad = sideOf(a, b, d);
    const int ca = sideOf(c, d, a);
    const int cb = sideOf(c, d, b);
    if (ac * ad < 0 && ca * cb < 0) return true;
    return (ac == 0 && isBetween(a, b, c)) || (ad == 0 && isBetween(a, b, d)) ||
           (ca == 0 && isBetween(c, d, a)) || (cb == 0 && isBetween(c, d, b));
}

/// Whether two edges meet but for the corner that neighbours share.
bool crossesItself(const std::vector<glm::dvec2>& corners) {
    const std::size_t n = corners.size();
    const auto at = [&](std::size_t i) { return corners[i % n]; };
    for (std::size_t i = 0; i < n; ++i) {
        const glm::dvec2 in = at(i + 1) - at(i);
        const glm::dvec2 out = at(i + 2) - at(i + 1);
        if (sideOf(at(i), at(i + 1), at(i + 2)) == 0 && glm::dot(in, out) < 0.0) return true;
        for (std::size_t k = i + 2; k < n && k < i + n - 1; ++k)
            if (doTouch(at(i), at(i + 1), at(k), at(k + 1))) return true;
    }
    return false;
}

}  // namespace

ClipPlane ClipPlane::Of(const ViewCamera& camera) {
    const glm::dvec3 right = camera.Right();
    return {camera.target, right, glm::cross(right, camera.Ahead())};
}

std::optional<glm::dvec2> ClipPlane::Meet(const Ray& ray) const {
    const glm::dvec3 normal = glm::cross(xAxis, yAxis);
    const double slope = glm::dot(ray.direction, normal);
    if (std::abs(slope) < 1e-3) return std::nullopt;
    const glm::dvec3 offset =
        ray.origin - origin + ray.direction * (glm::dot(origin - ray.origin, normal) / slope);
    return glm::dvec2(glm::dot(offset, xAxis), glm::dot(offset, yAxis));
}

Clip makeClip(const ClipPlane& plane, const std::vector<glm::dvec2>& corners, bool keepsInside) {
    Clip clip{"",          plane.origin, plane.xAxis, plane.yAxis, withoutRepeats(corners),
              keepsInside, true};
    if (clip.corners.size() < 3) throw Refusal("A clip needs at least three corners.");
    if (isThin(clip.corners))
        throw Refusal("The corners lie on a line, so that the clip would have no area.");
    if (crossesItself(clip.corners))
        throw Refusal("The border of the clip crosses itself. Remove corners with Backspace.");
    return clip;
}

std::vector<glm::dvec2> rectangleBetween(const glm::dvec2& a, const glm::dvec2& b) {
    return {a, {b.x, a.y}, b, {a.x, b.y}};
}

Drawing withClip(const Drawing& drawing, const Clip& clip) {
    Drawing result = drawing;
    result.clips.push_back(clip);
    if (clip.name.empty()) result.clips.back().name = freeName("Clip", drawing.clips);
    return result;
}

}  // namespace vpc::viewer
