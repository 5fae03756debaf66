#pragma once

#include <string>
#include <vector>

#include <glm/vec3.hpp>

#include "draw/ColourRamp.h"
#include "draw/ImageSize.h"
#include "viewer/camera/Box.h"
#include "viewer/camera/ViewCamera.h"
#include "viewer/document/Drawing.h"

namespace vpc::viewer {

/// A view that the engine is to choose points for.
struct ViewRequest {
    ViewCamera camera;
    draw::ImageSize size;
    /// Its entities are brought to this state, its sections and clips applied, its budget kept.
    Drawing drawing;
};

/// What one entity shows after an update.
struct ShownEntity {
    int id = 0;
    unsigned long long shown = 0;
    unsigned long long inAll = 0;
    unsigned long long level = 0;
    unsigned long long levels = 0;
    /// A sentence: points that could not be read, a budget that found no memory. Empty where all
    /// is well.
    std::string problem;
    /// What the ramp's colours stand for; empty where the colours are the scan's.
    std::string legendTitle;
    draw::ColourRamp::Table ramp{};
    draw::ValueRange range;
};

/// What the engine has chosen for a view. The points stay with the engine until they are fetched.
struct ViewResult {
    std::vector<ShownEntity> entities;
    /// Of all visible entities.
    unsigned long long shown = 0;
    unsigned long long inAll = 0;
    /// The time that the updates took.
    double milliseconds = 0.0;
    /// A place near the points that floats may be relative to.
    glm::dvec3 origin{0.0, 0.0, 0.0};
    /// About how far apart neighbouring points are, in drawing units.
    double spacing = 0.0;
};

}  // namespace vpc::viewer
