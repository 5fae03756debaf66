#include "viewer/drawing/ScreenLines.h"

#include <algorithm>
#include <cmath>

#include <glm/common.hpp>
#include <glm/geometric.hpp>

namespace vpc::viewer {

namespace {

/// In distances of the target.
constexpr double nearestShare = 1e-4;
/// How far beside the picture lines go on, in pixels: more than any is wide.
constexpr double beside = 256.0;

bool isFinite(const glm::dvec2& v) {
    return std::isfinite(v.x) && std::isfinite(v.y);
}

}  // namespace

ScreenLines::ScreenLines(const ViewCamera& camera, const draw::ImageSize& size)
    : projection_(camera.ProjectionTo(size)),
      eye_(camera.eye),
      ahead_(camera.Ahead()),
      perspective_(camera.perspective),
      nearest_(camera.Distance() * nearestShare) {
}

double ScreenLines::DepthOf(const glm::dvec3& place) const {
    return glm::dot(place - eye_, ahead_);
}

glm::dvec2 ScreenLines::PixelOf(const glm::dvec3& place) const {
    const draw::Projection::Place at = projection_.Of({place.x, place.y, place.z});
    return {at.column, at.row};
}

std::optional<ScreenLines::Line> ScreenLines::Between(const glm::dvec3& from,
                                                      const glm::dvec3& to) const {
    const double depth = DepthOf(from);
    const double toDepth = DepthOf(to);
    if (!std::isfinite(depth) || !std::isfinite(toDepth)) return std::nullopt;
    if (!IsBefore(depth) && !IsBefore(toDepth)) return std::nullopt;
    // Where only one end is before the eye, the line begins or ends at the least depth.
    const glm::dvec3 cut = from + (to - from) * ((nearest_ - depth) / (toDepth - depth));
    return OnScreen(PixelOf(IsBefore(depth) ? from : cut), PixelOf(IsBefore(toDepth) ? to : cut));
}

std::optional<ScreenLines::Line> ScreenLines::OnScreen(glm::dvec2 from, glm::dvec2 to) const {
    const glm::dvec2 way = to - from;
    if (!isFinite(from) || !isFinite(way)) return std::nullopt;
    const glm::dvec2 low(-beside);
    const glm::dvec2 high(projection_.Size().width + beside, projection_.Size().height + beside);
    // The share of the way at which the line comes into the picture, and leaves it.
    double in = 0.0;
    double out = 1.0;
    for (int i = 0; i < 2; ++i) {
        if (way[i] == 0.0) {
            if (from[i] < low[i] || from[i] > high[i]) return std::nullopt;
            continue;
        }
        const double a = (low[i] - from[i]) / way[i];
        const double b = (high[i] - from[i]) / way[i];
        in = std::max(in, std::min(a, b));
        out = std::min(out, std::max(a, b));
    }
    if (!(in <= out)) return std::nullopt;
    // What rounding leaves of numbers that are far too large is held at the edge.
    return Line{glm::vec2(glm::clamp(from + way * in, low, high)),
                glm::vec2(glm::clamp(from + way * out, low, high))};
}

std::optional<glm::vec2> ScreenLines::At(const glm::dvec3& place) const {
    const auto point = Between(place, place);
    if (!point) return std::nullopt;
    return point->from;
}

}  // namespace vpc::viewer
