#pragma once

#include <vector>

#include "draw/DepthBuffer.h"
#include "draw/Projection.h"

namespace vpc::draw {

/// The radius in pixels that each point of a depth buffer needs as a disc, so that the surface that
/// it lies on has no holes: half a pixel where points are dense.
///
/// It comes from the picture alone, so it needs no knowledge of the scan: around every point a grid
/// is laid, of cells of 1, 2, 4... pixels, until the cells around the point's own have points of
/// the same surface, too. Points that no grid finds on a surface, as those of a wire, are drawn as
/// large in the world as most others are.
/// \return a radius for every pixel of the buffer; that of an empty one has no meaning
std::vector<float> closingRadii(const DepthBuffer& points, const Projection& projection);

}  // namespace vpc::draw
