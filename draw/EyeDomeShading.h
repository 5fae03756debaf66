#pragma once

#include <vector>

#include "draw/Projection.h"
#include "draw/Surface.h"

namespace vpc::draw {

/// How bright every pixel is drawn, 0 to 1: darker where what is around it comes nearer to the eye
/// than a plane through it would, as behind an edge and in a hollow. So a step in depth has a dark
/// outline on its far side, and a plane has none, however it is inclined and whether the projection
/// is parallel or not. What is not covered has 1.
std::vector<float> eyeDomeShading(const Surface& surface, const Projection& projection);

}  // namespace vpc::draw
