#pragma once

#include <nlohmann/json.hpp>

#include "viewer/camera/ViewCamera.h"
#include "viewer/document/Clip.h"
#include "viewer/document/Section.h"
#include "viewer/document/ViewStyle.h"

namespace vpc::viewer {

// How parts of a drawing stand in JSON, in sessions and reports alike.

using OrderedJson = nlohmann::ordered_json;

OrderedJson toJson(const glm::dvec3& v);
OrderedJson toJson(const draw::Colour& colour);
OrderedJson toJson(const ViewCamera& camera);
OrderedJson toJson(const Section& section);
OrderedJson toJson(const Clip& clip);

}  // namespace vpc::viewer
