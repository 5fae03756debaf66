#include "viewer/document/SectionMaker.h"

#include <algorithm>
#include <cmath>

#include <glm/geometric.hpp>

#include "viewer/camera/CameraGuard.h"
#include "viewer/document/FreeName.h"
#include "viewer/document/Refusal.h"

namespace vpc::viewer {

namespace {

/// How thin a triangle is that counts as a line, as its height's share of its longest side.
constexpr double thinnest = 1e-6;

/// Any direction at a right angle to a normal.
glm::dvec3 across(const glm::dvec3& normal) {
    const glm::dvec3 other =
        std::abs(normal.z) < 0.9 ? glm::dvec3(0.0, 0.0, 1.0) : glm::dvec3(1.0, 0.0, 0.0);
    return glm::normalize(glm::cross(other, normal));
}

/// Where a plane meets the edges and corners of a box, in no order, each place once.
std::vector<glm::dvec3> cutPlaces(const Section& section, const Box& box) {
    const auto corners = box.Corners();
    const double touching = 1e-9 * box.Diagonal();
    const auto height = [&section](const glm::dvec3& place) {
        return glm::dot(place - section.point, section.normal);
    };
    std::vector<glm::dvec3> places;
    for (unsigned i = 0; i < corners.size(); ++i) {
        const double from = height(corners[i]);
        if (std::abs(from) <= touching) {
            places.push_back(corners[i]);
            continue;
        }
        for (unsigned bit = 1; bit < corners.size(); bit *= 2) {
            if ((i & bit) != 0) continue;
            const double to = height(corners[i | bit]);
            if (std::abs(to) > touching && (from < 0.0) != (to < 0.0))
                places.push_back(glm::mix(corners[i], corners[i | bit], from / (from - to)));
        }
    }
    return places;
}

}  // namespace

Section sectionAcross(Axis axis, const Box& box) {
    if (!isSound(box)) throw Refusal("There is nothing to cut: no points are shown.");
    Section section;
    section.point = box.Centre();
    section.normal = glm::dvec3(0.0);
    section.normal[static_cast<int>(axis)] = 1.0;
    return section;
}

Section sectionThrough(const glm::dvec3& a, const glm::dvec3& b, const glm::dvec3& c,
                       const glm::dvec3& ahead) {
    const double side = std::max({glm::distance(a, b), glm::distance(b, c), glm::distance(c, a)});
    const glm::dvec3 normal = glm::cross(b - a, c - a);
    const double area = glm::length(normal);
    if (!(area > thinnest * side * side))
        throw Refusal(
            "The three points lie on a line, which leaves the plane open. Pick a third "
            "point beside it.");
    return {"", a, normal / (glm::dot(normal, ahead) < 0.0 ? -area : area), true};
}

Section moved(const Section& section, double distance) {
    Section result = section;
    result.point += result.normal * distance;
    return isSound(Box{result.point, result.point}) ? result : section;
}

Section flipped(const Section& section) {
    Section result = section;
    // Not -normal, which would make zeros negative.
    result.normal = glm::dvec3(0.0) - result.normal;
    return result;
}

std::vector<glm::dvec3> sectionOutline(const Section& section, const Box& box) {
    if (!isSound(box)) return {};
    std::vector<glm::dvec3> places = cutPlaces(section, box);
    if (places.size() < 3) return {};
    const glm::dvec3 inside = box.Centre();
    glm::dvec3 middle(0.0);
    for (const glm::dvec3& place : places)
        middle += (place - inside) / static_cast<double>(places.size());
    const glm::dvec3 x = across(section.normal);
    const glm::dvec3 y = glm::cross(section.normal, x);
    const auto angle = [&](const glm::dvec3& place) {
        const glm::dvec3 offset = place - inside - middle;
        return std::atan2(glm::dot(offset, y), glm::dot(offset, x));
    };
    std::sort(places.begin(), places.end(),
              [&](const glm::dvec3& a, const glm::dvec3& b) { return angle(a) < angle(b); });
    return places;
}

Drawing withSection(const Drawing& drawing, const Section& section) {
    Drawing result = drawing;
    result.sections.push_back(section);
    if (section.name.empty()) result.sections.back().name = freeName("Section", drawing.sections);
    return result;
}

}  // namespace vpc::viewer
