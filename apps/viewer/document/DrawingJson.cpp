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

OrderedJson toJson(const Entity& entity) {
    const Placement& placement = entity.placement;
    return {{"file", entity.file},
            {"name", entity.name},
            {"visible", entity.visible},
            {"location", toJson(placement.location)},
            {"rotation", placement.rotation},
            {"scale", placement.scale},
            {"stylization", entity.stylization},
            {"colourScheme", entity.colourScheme},
            {"cropped", entity.cropped},
            {"locked", entity.locked}};
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

OrderedJson toJson(const ViewStyle& style) {
    return {{"sizing", sizingNames[static_cast<std::size_t>(style.sizing)]},
            {"pointSize", style.pointSize},
            {"roundPoints", style.roundPoints},
            {"shaded", style.shaded},
            {"background", toJson(style.background)},
            {"axes", style.axes},
            {"scaleBar", style.scaleBar},
            {"legend", style.legend}};
}

}  // namespace vpc::viewer
