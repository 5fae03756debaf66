#include "viewer/document/DrawingJson.h"

namespace vpc::viewer {

OrderedJson toJson(const glm::dvec3& v) {
    return {v.x, v.y, v.z};
}

OrderedJson toJson(const draw::Colour& colour) {
    return {colour.red, colour.green, colour.blue};
}

OrderedJson toJson(const ViewCamera& camera) {
    return {{"eye", toJson(camera.eye)},
            {"target", toJson(camera.target)},
            {"up", toJson(camera.up)},
            {"fieldHeight", camera.fieldHeight},
            {"perspective", camera.perspective}};
}

OrderedJson toJson(const Section& section) {
    return {{"name", section.name},
            {"point", toJson(section.point)},
            {"normal", toJson(section.normal)},
            {"enabled", section.enabled}};
}

OrderedJson toJson(const Clip& clip) {
    OrderedJson corners = OrderedJson::array();
    for (const glm::dvec2& corner : clip.corners)
        corners.push_back(OrderedJson::array({corner.x, corner.y}));
    return {{"name", clip.name},
            {"origin", toJson(clip.origin)},
            {"xAxis", toJson(clip.xAxis)},
            {"yAxis", toJson(clip.yAxis)},
            {"corners", std::move(corners)},
            {"keepsInside", clip.keepsInside},
            {"enabled", clip.enabled}};
}

}  // namespace vpc::viewer
