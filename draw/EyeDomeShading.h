#pragma once

#include <vector>

#include "draw/Projection.h"
#include "draw/Surface.h"

namespace vpc::draw {

/// What the shading looks like. A shader of a graphics card that draws the same has the same
/// numbers.
namespace eye_dome {

/// How dark the bottom of a deep hollow is drawn.
constexpr float strength = 0.75F;
/// A neighbour that is nearer by this many pixels' sides counts half as much as a very near one.
constexpr float halfway = 2.0F;
/// Pixels between a pixel and those that it is compared with, in radii of its disc.
constexpr float reachInRadii = 2.0F;
constexpr int leastReach = 2;
constexpr int mostReach = 40;
/// Rises beyond this one are as good as endless.
constexpr float beyondAll = 1e30F;

}  // namespace eye_dome

/// How bright every pixel is drawn, 0 to 1: darker where what is around it comes nearer to the eye
/// than a plane through it would, as behind an edge and in a hollow. So a step in depth has a dark
/// outline on its far side, and a plane has none, however it is inclined and whether the projection
/// is parallel or not. What is not covered has 1.
std::vector<float> eyeDomeShading(const Surface& surface, const Projection& projection);

}  // namespace vpc::draw
