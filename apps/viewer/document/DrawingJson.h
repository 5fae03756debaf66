#pragma once

#include <array>

#include <nlohmann/json.hpp>

#include "viewer/camera/ViewCamera.h"
#include "viewer/document/Clip.h"
#include "viewer/document/Entity.h"
#include "viewer/document/Section.h"
#include "viewer/document/ViewStyle.h"

namespace vpc::viewer {

// How parts of a drawing stand in JSON, in sessions and reports alike.

using OrderedJson = nlohmann::ordered_json;

/// In the order of PointSizing.
inline constexpr std::array sizingNames = {"automatic", "fixed", "by distance"};

OrderedJson toJson(const glm::dvec3& v);
OrderedJson toJson(const draw::Colour& colour);
OrderedJson toJson(const ViewCamera& camera);
/// Without its id, which means nothing to another run of the program.
OrderedJson toJson(const Entity& entity);
OrderedJson toJson(const Section& section);
OrderedJson toJson(const Clip& clip);
OrderedJson toJson(const ViewStyle& style);

}  // namespace vpc::viewer
